#include "messages/MessageLine.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

namespace rvf {
namespace {

TEST(MessageLine, CutsBehindTheLastBlankThatFits) {
  const auto x = [](std::size_t count) { return std::u16string(count, u'x'); };
  const std::vector<std::vector<std::u16string>> pieces = {
      {},
      {x(130)},
      {x(130), x(1)},
      {x(129) + u" "},
      {x(9) + u" " + x(119)},
      {x(9) + u" ", x(116), x(4)},  // what fills the width no longer counts as fitting
      {x(130), u" y"},              // a blank just behind the width does not help
      {x(50) + u" " + x(50) + u" ", x(100)},
      // Later lines: 116 characters, 115 fit.
      {x(130), x(115)},
      {x(130), x(116), x(2)},
      {x(130), x(114) + u" ", x(2)},
  };
  for (const auto& expected : pieces) {
    std::u16string text;
    for (const std::u16string& piece : expected) text += piece;
    std::vector<std::u16string> found;
    for (const LinePiece& piece : cutLine(text)) {
      EXPECT_EQ(piece.indent, found.empty() ? 0 : 14);
      found.emplace_back(piece.text);
    }
    EXPECT_EQ(found, expected);
  }
}

TEST(MessageLine, SubstitutesTheFirstPlaceholdersOfTheText) {
  struct Row {
    const char16_t* text;
    int argumentCount;
    const char16_t* expected;
  };
  const Row rows[] = {
      {u"|2| for |1|", 2, u"b for a"},
      // The first placeholder of the text is replaced, whichever argument it names.
      {u"|2| and |1|", 1, u"b and |1|"},
      {u"|6||5|", 6, u"fe"},
      // 8 and above are the eighth argument, which no call has: the placeholder vanishes.
      {u"x|7|y|9|z", 2, u"xyz"},
      // A number below 1 names no argument, but hides its three characters from the scan.
      {u"|0|, |1|", 1, u"|0|, |1|"},
      {u"|0|, |1|", 2, u"|0|, a"},
      {u"|0|1|", 2, u"|0|1|"},
      {u"|x||-4|2|", 3, u"|x||-4b"},
      // Three characters are stepped over, so the closing bar of |12| opens another one.
      {u"|12|3", 2, u"c"},
      // Neither of the two characters behind a backslash opens a placeholder, the third may.
      {u"\\|1|", 6, u"\\|1|"},
      {u"\\|1|2|", 1, u"\\|1b"},
      {u"\\x|1|", 6, u"\\x|1|"},
      {u"\\xy|1|", 6, u"\\xya"},
      {u"\\\\|1|", 6, u"\\\\|1|"},
      // Known by its last place only: the first one stays, and a second argument goes behind it.
      {u"|1| x |1|.", 2, u"|1| x aa."},
      {u"|2| |1| |2|.", 2, u"|2| |1| ba |2|."},
      // Cut short at the end.
      {u"ends in |1", 1, u"ends in a"},
      {u"x|", 2, u"x|"},
      // Eight are remembered.
      {u"|1||2||3||4||5||6||7||8||1|", 8, u"|1||2||3||4||5||6||7||8|abcdef|1|"},
  };
  MessageEntry entry;
  for (std::size_t i = 0; i < 6; ++i)
    entry.arguments[i] = eString(static_cast<char16_t>(u'a' + i), 1);
  for (const Row& row : rows) {
    const auto record = parseMessageRecord(1, std::u16string(u"W|||") + row.text, u'|');
    EXPECT_EQ(substituteArguments(*record, entry, row.argumentCount), row.expected);
  }
}

TEST(MessageRecord, FieldsOfTheRecordText) {
  struct Row {
    const char16_t* text;
    char16_t severity;
    i32 firstValue, limit;
    const char16_t* message;
  };
  constexpr i32 kMost = std::numeric_limits<i32>::max(), kLeast = std::numeric_limits<i32>::min();
  const Row rows[] = {
      {u"W|||text", u'W', 0, 0, u"text"},
      {u"E| 12 |\t+5z| \t blanks around |1| \t ", u'E', 12, 5, u"blanks around |1|"},
      {u"|1|-2|the separator itself", u'|', 1, -2, u"the separator itself"},
      {u"I|99999999999|-99999999999|t", u'I', kMost, kLeast, u"t"},
  };
  for (const Row& row : rows) {
    const auto record = parseMessageRecord(1847, row.text, u'|');
    ASSERT_TRUE(record);
    EXPECT_EQ(record->number + record->useCount + record->hidden, 1847);
    EXPECT_EQ(record->severity, row.severity);
    EXPECT_EQ(record->firstValue, row.firstValue);
    EXPECT_EQ(record->limit, row.limit);
    EXPECT_EQ(record->text, eString(row.message));
  }
}

}  // namespace
}  // namespace rvf
