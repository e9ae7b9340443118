#include "text/Format.h"

#include <gtest/gtest.h>

#include "text/eString.h"

namespace rvf {
namespace {

template <class... Arguments>
eString formatted(const char16_t* format, const Arguments&... arguments) {
  eString text;
  text.Format(format, arguments...);
  return text;
}

TEST(Format, Conversions) {
  struct Row {
    eString text;
    std::u16string_view expected;
  };
  const eString blob(u"blob");
  const Row rows[] = {
      {formatted(u"QZ%06ld%lc (%ld) ", 1903, u'S', 2), u"QZ001903S (2) "},
      {formatted(u"%06ld|%06ld", -12, 1234567), u"-00012|1234567"},
      {formatted(u"[%7i]", 129), u"[    129]"},
      {formatted(u"[%7i][%-7i]", -1, 5), u"[     -1][5      ]"},
      {formatted(u"%d/%d/%d   %.2d:%.2d:%.2d", 1, 2, 2024, 3, 14, 0), u"1/2/2024   03:14:00"},
      {formatted(u"[%*d][%-*d][%*d]", 4, 7, 4, 7, -4, 7), u"[   7][7   ][7   ]"},
      {formatted(u"[%.*d][%*.*d]", 3, 7, 5, 3, 7), u"[007][  007]"},
      {formatted(u"%ls,%s,%S,%ls", u"wide", blob, u"x", u""), u"wide,blob,x,"},
      {formatted(u"[%6ls][%-6ls][%.2ls]", u"abc", u"abc", u"abc"), u"[   abc][abc   ][ab]"},
      {formatted(u"%c%C%lc", u'a', u'\u00E9', u'c'), u"a\u00E9c"},
      {formatted(u"%x %X %#x %o %u", 255, 255, 255, 8, -1), u"ff FF 0xff 10 4294967295"},
      {formatted(u"%hd %hu", 65537 + 32768, 65537), u"-32767 1"},
      // "l" is 32 bits wide; only I64 takes more.
      {formatted(u"%ld %I64d", 0x100000005LL, 0x100000005LL), u"5 4294967301"},
      {formatted(u"%1.0f %f %.2e %g", 2.5, 0.5, 12345.0, 0.25), u"2 0.500000 1.23e+04 0.25"},
      {formatted(u"100%% %d", 7), u"100% 7"},
      {formatted(u"%+d % d", 7, 7), u"+7  7"},
      {formatted(u"%ls", static_cast<const char16_t*>(nullptr)), u""},
      // Texts that are no formats, and conversions without an argument: nothing is read that is
      // not there.
      {formatted(u"%"), u""},
      {formatted(u"%d|%ls|"), u"0||"},
      {formatted(u"%ls|%d", 5, u"text"), u"|0"},
      {formatted(u"%k%d", 7), u"k7"},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(row.text.view(), row.expected);
  }
}

TEST(Format, EmptyFormatTakesABufferAllTheSame) {
  eString text(u"old");
  text = eString();
  text.Format(u"");
  EXPECT_EQ(text.length(), 0);
  EXPECT_EQ(text.capacity(), 128);
  EXPECT_FALSE(text.sharesBufferWith(eString()));
}

// A text argument counts 1024 characters, whatever it has. The print is done again with 1024 more,
// until the room has passed twice the estimate and 4: what is longer than that is cut.
TEST(Format, LongTextsAreCut) {
  for (const i32 length : {1024, 1025, 2048, 2049, 3071, 3072}) {
    const eString argument(u'x', length);
    EXPECT_EQ(formatted(u"%ls", argument), argument) << length;
  }
  EXPECT_EQ(formatted(u"%ls", eString(u'x', 3073)), eString(u'x', 3072));
  EXPECT_EQ(formatted(u"%ls", eString(u'x', 100000)), eString(u'x', 3072));
  EXPECT_EQ(formatted(u"<%ls>", eString(u'x', 3072)).length(), 3074);
}

}  // namespace
}  // namespace rvf
