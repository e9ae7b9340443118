#include "messages/MessageRecord.h"

#include <gtest/gtest.h>

#include <limits>
#include <string_view>
#include <vector>

namespace rvf {
namespace {

/// The placeholders of a text: argument index and position, in the order of the text.
using Placeholders = std::vector<std::pair<int, int>>;

Placeholders placeholdersOf(const MessageRecord& record) {
  Placeholders list;
  for (const i16 index : record.placeholderOrder) {
    if (index != kNoPlaceholder) {
      list.emplace_back(index, record.placeholderPosition.at(static_cast<std::size_t>(index)));
    }
  }
  return list;
}

TEST(MessageRecord, FieldsOfTheRecordText) {
  struct Row {
    const char16_t* text;
    char16_t severity;
    i32 firstValue;
    i32 limit;
    const char16_t* message;
  };
  const Row rows[] = {
      {u"W|0|0|Cannot open |1| for reading: |2|", u'W', 0, 0, u"Cannot open |1| for reading: |2|"},
      {u"W|||text", u'W', 0, 0, u"text"},
      {u"S|7|-3|x", u'S', 7, -3, u"x"},
      {u"E| 12 |\t+5z| \t blanks around \t ", u'E', 12, 5, u"blanks around"},
      {u"|1|2|the separator itself is the letter", u'|', 1, 2,
       u"the separator itself is the letter"},
      {u"Warning|1|2|", u'W', 1, 2, u""},
      {u"I|99999999999|-99999999999|t", u'I', std::numeric_limits<i32>::max(),
       std::numeric_limits<i32>::min(), u"t"},
  };
  for (const Row& row : rows) {
    const auto record = parseMessageRecord(1847, row.text, u'|');
    ASSERT_TRUE(record);
    EXPECT_EQ(record->number, 1847);
    EXPECT_EQ(record->severity, row.severity);
    EXPECT_EQ(record->firstValue, row.firstValue);
    EXPECT_EQ(record->limit, row.limit);
    EXPECT_EQ(record->text, eString(row.message));
    EXPECT_EQ(record->useCount, 0);
    EXPECT_FALSE(record->hidden);
  }
}

TEST(MessageRecord, Placeholders) {
  struct Row {
    const char16_t* text;
    Placeholders expected;
  };
  const Row rows[] = {
      {u"none", {}},
      {u"|1| and |2|", {{0, 0}, {1, 8}}},
      {u"|2||1|", {{1, 0}, {0, 3}}},
      // Twice the same: both stand in the order, with the last position.
      {u"|1| |1|", {{0, 4}, {0, 4}}},
      // 8 and above are the eighth argument, which no call has.
      {u"|8| |9|", {{7, 4}, {7, 4}}},
      // Three characters are stepped over, so the closing bar of |12| opens another one.
      {u"|12|3", {{7, 0}, {2, 3}}},
      // A number below 1 names no argument, but hides its three characters from the scan.
      {u"|0|1|", {}},
      {u"|x||-4|2|", {{1, 6}}},
      // Neither of the two characters behind a backslash opens a placeholder, the third may.
      {u"\\|1|", {}},
      {u"\\|1|2|", {{1, 3}}},
      {u"\\x|1|", {}},
      {u"\\xy|1|", {{0, 3}}},
      {u"\\\\|1|", {}},
      // Cut short at the end.
      {u"x|", {}},
      {u"x|1", {{0, 1}}},
      {u"x\\", {}},
      // Eight are remembered.
      {u"|1||2||3||4||5||6||7||8||1|",
       {{0, 24}, {1, 3}, {2, 6}, {3, 9}, {4, 12}, {5, 15}, {6, 18}, {7, 21}}},
  };
  for (const Row& row : rows) {
    const auto record = parseMessageRecord(1, std::u16string(u"W|0|0|") + row.text, u'|');
    ASSERT_TRUE(record);
    EXPECT_EQ(placeholdersOf(*record), row.expected) << ::testing::PrintToString(row.text);
  }
}

}  // namespace
}  // namespace rvf
