#include "text/eString.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <utility>
#include <vector>

namespace rvf {
namespace {

using namespace std::string_view_literals;

TEST(eString, NarrowTextIsWidenedBySignExtension) {
  const eString text("a\x7F\x80\xE9");
  EXPECT_EQ(text.view(), u"a\x7F\xFF80\xFFE9"sv);
}

TEST(eString, InPlaceEditsLeaveTheSharedEmptyBufferAlone) {
  eString text;
  text.MakeUpper();
  text.MakeLower();
  text.TrimLeft();
  text.TrimRight();
  text.Append(u"");
  text.Append(static_cast<const char16_t*>(nullptr));
  text.AssignCounted(0, u"abc");
  text.ReleaseBuffer(-1);
  text.Empty();
  EXPECT_TRUE(text.sharesBufferWith(eString()));
}

TEST(eString, EditsLeaveTheOtherHandleAlone) {
  const std::pair<void (*)(eString&), std::u16string_view> edits[] = {
      {[](eString& s) { s.Append(u"X"); }, u"a bX"},
      {[](eString& s) { s.AppendChar(u'X'); }, u"a bX"},
      {[](eString& s) { s.SetAt(1, u'X'); }, u"aXb"},
      {[](eString& s) { s.MakeUpper(); }, u"A B"},
      {[](eString& s) { s.Delete(0, 2); }, u"b"},
      {[](eString& s) { s.Insert(1, u"X"); }, u"aX b"},
      {[](eString& s) { s.Assign(u"X"); }, u"X"},
      {[](eString& s) { s.GetBuffer(0)[0] = u'X'; }, u"X b"},
      {[](eString& s) { s.GetBufferSetLength(2)[0] = s.GetBufferSetLength(2)[1] = u'X'; }, u"XX"},
      {[](eString& s) { s.Format(u"%d", 7); }, u"7"},
      {[](eString& s) { s.Empty(); }, u""},
  };
  for (const auto& [edit, result] : edits) {
    const eString original(u"a b");
    eString edited = original;
    ASSERT_TRUE(edited.sharesBufferWith(original));
    edit(edited);
    EXPECT_EQ(edited.view(), result);
    EXPECT_EQ(original.view(), u"a b");
  }
}

TEST(eString, EditedBuffersDoubleFrom128) {
  const eString exact(u"abc");
  eString shared = exact;
  shared.AppendChar(u'd');
  EXPECT_EQ(shared.capacity(), 128);

  eString text;
  std::vector<i32> capacities;
  for (int i = 0; i < 1000; ++i) {
    text.AppendChar(u'x');
    if (capacities.empty() || capacities.back() != text.capacity()) {
      capacities.push_back(text.capacity());
    }
  }
  EXPECT_EQ(capacities, (std::vector<i32>{128, 258, 518, 1038}));
  EXPECT_EQ(text, eString(u'x', 1000));
}

TEST(eString, TextOfItsOwnBufferMayBeAssignedAndAppended) {
  eString text(u"0123456789");
  text.AssignCounted(4, text.c_str() + 3);
  EXPECT_EQ(text.view(), u"3456");
  for (int i = 0; i < 6; ++i) {  // past the capacity, so the source moves
    text.Append(text);
    text.Append(text.c_str() + text.length() - 1);
  }
  EXPECT_EQ(text.length(), 319);
  EXPECT_EQ(text.view().substr(0, 10), u"3456345663");
}

TEST(eString, MidAndLeft) {
  struct Row {
    i32 start, count;
    std::u16string_view result;
    bool shares;
  };
  const Row rows[] = {
      {0, 3, u"abc", true},
      {0, 9, u"abc", true},
      {-5, 3, u"abc", true},
      {0, 2, u"ab", false},
      {1, 1, u"b", false},
      {1, 9, u"bc", false},
      {1, 2147483647, u"bc", false},
      {2, -1, u"", false},
      {3, 1, u"", false},
      {4, 5, u"", false},
  };
  for (const Row& row : rows) {
    const eString text(u"abc");
    const eString result = text.Mid(row.start, row.count);
    EXPECT_EQ(result.view(), row.result) << row.start << ' ' << row.count;
    EXPECT_EQ(result.sharesBufferWith(text), row.shares) << row.start << ' ' << row.count;
  }
  const eString text(u"abc");
  EXPECT_EQ(text.Mid(1).view(), u"bc");
  EXPECT_EQ(text.Mid(-1).view(), u"abc");
  EXPECT_EQ(text.Mid(9).view(), u"");
  EXPECT_TRUE(text.Left(3).sharesBufferWith(text));
  EXPECT_EQ(text.Left(-1).view(), u"");
}

TEST(eString, DeleteAndInsert) {
  struct Deletion {
    i32 index, count;
    std::u16string_view result;
  };
  for (const Deletion& row : {Deletion{0, 1, u"bcd"},
                              {1, 2, u"ad"},
                              {-3, 2, u"cd"},
                              {3, 1, u"abc"},
                              {4, 1, u"abcd"},
                              {0, 0, u"abcd"},
                              {0, -1, u"abcd"}}) {
    eString text(u"abcd");
    EXPECT_EQ(text.Delete(row.index, row.count), 4);
    EXPECT_EQ(text.view(), row.result);
    EXPECT_EQ(text.c_str()[text.length()], 0);
  }
  struct Insertion {
    i32 index;
    std::u16string_view result;
  };
  for (const Insertion& row :
       {Insertion{0, u"xyab"}, {1, u"axyb"}, {2, u"abxy"}, {3, u"ab"}, {-1, u"ab"}}) {
    eString text(u"ab");
    text.Insert(row.index, u"xy");
    EXPECT_EQ(text.view(), row.result) << row.index;
  }
  eString text(u"ab");
  text.Insert(1, text.c_str());
  text.Insert(4, u'!');
  EXPECT_EQ(text.view(), u"aabb!");
}

TEST(eString, TrimAndCase) {
  eString text(u" \tx \t ");
  text.TrimLeft();
  EXPECT_EQ(text.view(), u"\tx \t ");
  text.TrimRight();
  EXPECT_EQ(text.view(), u"\tx");
  eString blanks(u"   ");
  blanks.TrimLeft();
  EXPECT_EQ(blanks.view(), u"");

  eString letters(u"azAZ@[`{\u00E9\u00C9");
  letters.MakeUpper();
  EXPECT_EQ(letters.view(), u"AZAZ@[`{\u00E9\u00C9");
  letters.MakeLower();
  EXPECT_EQ(letters.view(), u"azaz@[`{\u00E9\u00C9");
}

}  // namespace
}  // namespace rvf
