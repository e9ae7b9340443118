#include "messages/MessageLine.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <string>
#include <vector>

namespace rvf {
namespace {

std::u16string repeated(std::size_t count, char16_t character) {
  return std::u16string(count, character);
}

TEST(MessageLine, CutsBehindTheLastBlankThatFits) {
  struct Row {
    std::u16string text;
    std::vector<std::u16string> pieces;
  };
  const auto x = [](std::size_t count) { return repeated(count, u'x'); };
  const Row rows[] = {
      {u"", {}},
      {x(129), {x(129)}},
      // What fills the width no longer counts as fitting; without a blank that shows nothing.
      {x(130), {x(130)}},
      {x(131), {x(130), x(1)}},
      {x(129) + u" ", {x(129) + u" "}},
      {x(9) + u" " + x(120), {x(9) + u" ", x(116), x(4)}},
      {x(9) + u" " + x(119), {x(9) + u" " + x(119)}},
      // A blank just behind the width does not help.
      {x(130) + u" y", {x(130), u" y"}},
      {x(50) + u" " + x(50) + u" " + x(100), {x(50) + u" " + x(50) + u" ", x(100)}},
      // Later lines: 116 characters, 115 fit.
      {x(130) + x(115), {x(130), x(115)}},
      {x(130) + x(116) + x(2), {x(130), x(116), x(2)}},
      {x(130) + x(114) + u" " + x(2), {x(130), x(114) + u" ", x(2)}},
  };
  for (const Row& row : rows) {
    const std::vector<LinePiece> pieces = cutLine(row.text);
    ASSERT_EQ(pieces.size(), row.pieces.size());
    for (std::size_t i = 0; i < pieces.size(); ++i) {
      EXPECT_EQ(pieces[i].indent, i == 0 ? 0 : 14);
      EXPECT_EQ(pieces[i].text, row.pieces[i]);
    }
  }
}

TEST(MessageLine, SubstitutesTheFirstPlaceholdersOfTheText) {
  struct Row {
    const char16_t* text;
    int argumentCount;
    const char16_t* expected;
  };
  const Row rows[] = {
      {u"|1| for |2|", 2, u"a for b"},
      {u"|2| for |1|", 2, u"b for a"},
      {u"|1| and |2|", 1, u"a and |2|"},
      // The first placeholder of the text is replaced, whichever argument it names.
      {u"|2| and |1|", 1, u"b and |1|"},
      {u"|1| and |2|", 0, u"|1| and |2|"},
      {u"|1|", 6, u"a"},
      {u"|6||5|", 6, u"fe"},
      // No call has a seventh or eighth argument: the placeholder vanishes.
      {u"x|7|y|9|z", 2, u"xyz"},
      {u"|0|, |1|", 1, u"|0|, |1|"},
      {u"|0|, |1|", 2, u"|0|, a"},
      {u"\\|1|", 6, u"\\|1|"},
      // Known by its last place only: the first one stays, and a second argument goes behind it.
      {u"|1| x |1|.", 1, u"|1| x a."},
      {u"|1| x |1|.", 2, u"|1| x aa."},
      {u"|2| |1| |2|.", 2, u"|2| |1| ba |2|."},
      {u"ends in |1", 1, u"ends in a"},
  };
  MessageEntry entry;
  const char16_t* const arguments[] = {u"a", u"b", u"c", u"d", u"e", u"f"};
  std::copy(std::begin(arguments), std::end(arguments), entry.arguments.begin());
  for (const Row& row : rows) {
    const auto record = parseMessageRecord(1, std::u16string(u"W|||") + row.text, u'|');
    EXPECT_EQ(substituteArguments(*record, entry, row.argumentCount), row.expected);
  }
}

}  // namespace
}  // namespace rvf
