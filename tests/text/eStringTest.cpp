#include "text/eString.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "base/Sizes.h"
#include "text/NativeText.h"

namespace rvf {
namespace {

using namespace std::string_view_literals;

// Each edit with the resulting content and capacity; a handle that shared the buffer keeps its
// text.
TEST(eString, Edits) {
  const std::pair<void (*)(eString&), std::string> edits[] = {
      {[](eString& s) { EXPECT_EQ(s.Delete(-1, 2), 4); }, "cd 4"},
      {[](eString& s) { EXPECT_EQ(s.Delete(4, 1), 4); }, "abcd 4"},
      {[](eString& s) { EXPECT_EQ(s.Delete(1, 0), 4); }, "abcd 4"},
      {[](eString& s) { EXPECT_EQ(s.Delete(1, 2), 4); }, "ad 4"},
      {[](eString& s) { s.Insert(4, u"x"), s.Insert(6, u"x"), s.Insert(-1, u"x"); }, "abcdx 128"},
      {[](eString& s) { s.Insert(0, u'x'); }, "xabcd 128"},
      {[](eString& s) { s.Assign(u"xy"); }, "xy 4"},
      {[](eString& s) { s.Assign(u"vwxyz"); }, "vwxyz 5"},
      {[](eString& s) { s.Assign(static_cast<const char16_t*>(nullptr)); }, " 4"},
      {[](eString& s) { s.Assign(s), s.Assign(eString(s)); }, "abcd 4"},
      {[](eString& s) { s.Append(u""), s.Append(eString()); }, "abcd 4"},
      {[](eString& s) { s.Append(eString(u'x', 61)); }, "abcd" + std::string(61, 'x') + " 130"},
      {[](eString& s) { s.GetBuffer(5)[2] = 0, s.ReleaseBuffer(-1); }, "ab 128"},
      {[](eString& s) { s.GetBuffer(2)[2] = u'x', s.ReleaseBuffer(3); }, "abx 4"},
      {[](eString& s) { s.getBufferSetLength(0); }, " 4"},
      {[](eString& s) { s.getBufferSetLength(1)[0] = u'y'; }, "y 4"},
      {[](eString& s) { s.Empty(), s.MakeUpper(), s.MakeLower(), s.ReleaseBuffer(-1); }, " 0"},
      {[](eString& s) { s.ReleaseBuffer(0), s.Empty(); }, " 4"},  // already empty
      {[](eString& s) { s.Empty(), s.Format(u""); }, " 128"},
      {[](eString& s) { s.SetAt(1, u'X'), s.TrimLeft(), s.TrimRight(); }, "aXcd 4"},
      {[](eString& s) { s.MakeUpper(); }, "ABCD 4"}};
  for (const auto& [edit, state] : edits) {
    eString text(u"abcd"), original(u"abcd"), copy = original;
    edit(text);
    EXPECT_EQ(toNative(text.view()) + " " + std::to_string(text.capacity()), state);
    EXPECT_EQ(text.c_str()[text.length()], 0);
    edit(copy);
    EXPECT_EQ(copy, text);
    EXPECT_EQ(original.view(), u"abcd");
  }
}

TEST(eString, PartsAndSearches) {
  constexpr std::u16string_view kText = u"abca";
  const eString text(kText);
  for (i32 start = -2; start <= 6; ++start) {
    const std::u16string_view tail = kText.substr(asSize(std::clamp(start, 0, 4)));
    EXPECT_EQ(text.Mid(start).view(), tail);
    EXPECT_EQ(text.Find(u'a', start), start <= 0 ? 0 : start <= 3 ? 3 : -1);
    EXPECT_EQ(text.Find(0, start), -1);
    EXPECT_EQ(eString(u'a', start).length(), std::max(start, 0));
    for (i32 count = -2; count <= 6; ++count) {
      const eString part = text.Mid(start, count);
      EXPECT_EQ(part.view(), tail.substr(0, static_cast<std::size_t>(std::max(count, 0))));
      EXPECT_EQ(part.capacity(), part.length());
      EXPECT_EQ(part.sharesBufferWith(text), part.length() == 4);
      EXPECT_EQ(text.Left(count), text.Mid(0, count));
    }
  }
  using Row = std::tuple<const char16_t*, const char16_t*, int>;
  for (const auto& [left, right, order] :
       {Row{u"aB", u"Ab", 0}, {u"a", u"B", -1}, {u"ab", u"A", 1}, {u"Z", u"[", 1}}) {
    EXPECT_EQ(eString(left).CompareNoCase(right), order);
  }
}

TEST(eString, OwnTextMovesWithTheBuffer) {
  eString text = eString(u"0123456789");
  const eString other = text;
  text.AssignCounted(4, text.c_str() + 3);
  for (int i = 0; i < 6; ++i) text.Append(text.c_str() + 1);
  EXPECT_EQ(text.view().substr(0, 12), u"345645645645");
  EXPECT_EQ(other.view(), u"0123456789");
}

TEST(eString, WidenTrimAndCase) {
  EXPECT_EQ(eString("a\x7F\x80\xE9").view(), u"a\x7F\xFF80\xFFE9"sv);  // by sign extension
  EXPECT_EQ(eString("abc").c_str()[3], 0);
  eString text(u" \tx \t ");
  text.TrimLeft();
  text.TrimRight();
  EXPECT_EQ(text.view(), u"\tx");  // quirk: a leading tab stays
  text.Insert(1, u"azAZ@[`{\u00E9\u00C9");
  text.MakeUpper();
  EXPECT_EQ(text.view(), u"\tAZAZ@[`{\u00E9\u00C9X");
  text.MakeLower();
  EXPECT_EQ(text.view(), u"\tazaz@[`{\u00E9\u00C9x");
}

template <class... Arguments>
eString formatted(const char16_t* format, const Arguments&... arguments) {
  eString text;
  text.Format(format, arguments...);
  return text;
}

TEST(eString, FormatConversions) {
  const std::pair<eString, std::u16string_view> rows[] = {
      {formatted(u"QZ%06ld%lc (%ld) %06ld", 1903, u'S', 2, -12), u"QZ001903S (2) -00012"},
      {formatted(u"[%7i][%-7i]%.2d %+d % d", -1, 5, 3, 7, 7), u"[     -1][5      ]03 +7  7"},
      {formatted(u"[%*d][%-*d][%*d]", 4, 7, 4, 7, -4, 7), u"[   7][7   ][7   ]"},
      {formatted(u"[%.*d][%*.*d]", 3, 7, 5, 3, 7), u"[007][  007]"},
      {formatted(u"[%6ls][%-6S][%*s]%.2ls", u"a", eString(u"b"), -6, u"c", u"def"),
       u"[     a][b     ][c     ]de"},
      {formatted(u"[%.0ls][%1ls]%-2cx", u"ab", u"ab", u'c'), u"[][ab]c x"},
      {formatted(u"%c%C%lc 100%%", u'a', u'\u00E9', u'c'), u"a\u00E9c 100%"},
      {formatted(u"%x %X %#x %o %u", 255, 255, 255, 8, -1), u"ff FF 0xff 10 4294967295"},
      // "l" is 32 bits wide; only I64 takes more.
      {formatted(u"%hd %hu %ld %I64d", 98305, 65537, 0x100000005LL, 0x100000005LL),
       u"-32767 1 5 4294967301"},
      {formatted(u"%1.0f %f %.2e %g", 2.5, 0.5, 12345.0, 0.25), u"2 0.500000 1.23e+04 0.25"},
      // Conversions without an argument read nothing out of bounds.
      {formatted(u"%ls|%d|%ls|%d%k%", 5, u"text"), u"|0||0k"},
  };
  for (const auto& [text, expected] : rows) EXPECT_EQ(text.view(), expected);
}

// A text argument is estimated at 1024 characters, whatever its length. Printing is repeated with
// 1024 more until the size exceeds twice the estimate plus 4: anything longer is cut.
TEST(eString, LongFormattedTextsAreCut) {
  for (const i32 length : {1024, 1025, 2048, 2049, 3071, 3072, 3073, 100000}) {
    const eString text(u'x', length);
    EXPECT_EQ(formatted(u"%ls", text).length(), std::min(length, 3072));
    EXPECT_EQ(formatted(u"<%ls>", text).length(), std::min(length + 2, 3074));
  }
  const std::u16string format = std::u16string(1023, u'y') + u"%ls";
  EXPECT_EQ(formatted(format.c_str(), eString(u'x', 9000)).length(), 5119);
  EXPECT_EQ(formatted(u"%100000s|", u"x").length(), 4097);  // the widest that a format can request
  const FormatArgument widths[] = {FormatArgument(3000), FormatArgument(0)};
  for (const auto& [text, estimate] : {std::pair{u"ab%%c", 4},
                                       {u"%c", 2},
                                       {u"%5C", 5},
                                       {u"%.7hc", 7},
                                       {u"%s%S", 2048},
                                       {u"%2000ls", 2000},
                                       {u"%.1500ls", 1500},
                                       {u"%*ls", 3000},
                                       {u"%d%i%o%p%u%x%X", 224},
                                       {u"%#x%##d", 70},
                                       {u"%f", 64},
                                       {u"%e%g%G", 384},
                                       {u"%k%", 0},
                                       {u"%.*s", 3000}}) {
    EXPECT_EQ(estimateFormattedLength(text, widths), estimate) << toNative(text);
  }
}

}  // namespace
}  // namespace rvf
