#include "compare/PageOverlay.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "compare/CompareFixture.h"
#include "pagemodel/TextParts.h"

namespace rvf {
namespace {

using namespace test;

struct RecordingPen final : OverlayPen {
  std::string numbers;
  void select(i32 number) override { numbers += std::to_string(number) + " "; }
};

PageFields pageOf(std::vector<Part> parts, std::vector<PlacedList> placed = {}) {
  PageFields fields = page(std::move(parts));
  fields.body->placed = std::move(placed);
  return fields;
}

PlacedList placed(std::vector<Part> parts, int originX, int originY, int x, int y) {
  return {
      .list = {.parts = std::move(parts), .originX = originX, .originY = originY}, .x = x, .y = y};
}

/// A text at a place, which also is its name in what a view shows.
Part at(int x, int y) {
  return text({.text = std::u16string(1, static_cast<char16_t>(x)), .runs = {{.x = x, .y = y}}});
}

std::string shown(const DrawList& list) {
  std::string line;
  for (const DrawPart& part : list.parts()) {
    if (part.type == PartType::kText) {
      line += std::to_string(textRuns(part)[0].x) + "," + std::to_string(textRuns(part)[0].y) + " ";
    } else if (part.type != PartType::kUnknown) {
      line += "type " + std::to_string(static_cast<int>(part.type)) + " ";
    }
  }
  return line;
}

/// A view in words: the page's parts, then each static list with origin and placement.
std::string shown(const PageOverlayLists& view) {
  std::string line = shown(view.list);
  EXPECT_EQ(view.placementX.size(), view.statics.size());
  EXPECT_EQ(view.placementY.size(), view.statics.size());
  for (std::size_t i = 0; i < view.statics.size(); ++i) {
    const DrawList& list = *view.statics[i];
    line += "| " + std::to_string(list.originX) + "," + std::to_string(list.originY) + "+" +
            std::to_string(view.placementX[i]) + "," + std::to_string(view.placementY[i]) + ": " +
            shown(list);
  }
  return line;
}

struct Case {
  const char* what;
  PageFields a, b;
  std::string first, second;  // the views; exchanged where the pages are
  DiffFlags bits;
  std::string pens, pensBack;  // without the last
};

TEST(PageOverlay, ViewsHoldWhatOnlyOnePageHas) {
  const PlacedList list = placed({at(1, 1), at(2, 2)}, 100, 200, 10, 20);
  const PlacedList moved = placed({at(1, 1), at(2, 2)}, 100, 201, 10, 20);
  const Case cases[] = {
      {"equal", pageOf({at(1, 1)}, {list}), pageOf({at(1, 1)}, {list}), "", "", 0, "", ""},
      {"exchanged", pageOf({at(1, 1), at(2, 2)}), pageOf({at(2, 2), at(1, 1)}), "", "", 129,
       "667 668 ", "667 668 "},
      {"changed and added", pageOf({at(1, 1), at(2, 2)}),
       pageOf({at(1, 1), at(3, 3), at(4, 4), line()}), "2,2 ", "3,3 4,4 type 2 ", 2176, "667 668 ",
       "667 668 "},
      {"out of tolerance", pageOf({at(1, 1)}), pageOf({at(1, 9)}), "1,1 ", "1,9 ", 2208, "667 668 ",
       "667 668 "},
      {"a type that is not copied", pageOf({at(1, 1), bookmark()}), pageOf({at(1, 1)}), "", "", 128,
       "667 668 ", "667 668 "},
      // The whole list in both views, the second one's first; its origin goes into the positions.
      {"moved list", pageOf({}, {list}), pageOf({}, {moved}), "| 0,0+10,20: 101,201 102,202 ",
       "| 0,0+10,20: 101,202 102,203 ", 128, "668 667 ", "668 667 "},
      {"other origin, same place", pageOf({}, {list}),
       pageOf({}, {placed({at(1, 1), at(2, 2)}, 10, 20, 100, 200)}), "", "", 0, "", ""},
      // A place with a 0 in it is not another place: equal lists there are not looked at.
      {"from zero", pageOf({}, {placed({at(1, 1)}, -10, 0, 10, 20)}),
       pageOf({}, {placed({at(1, 1)}, 0, 0, 10, 20)}), "", "", 0, "", ""},
      {"lists of different parts", pageOf({}, {list}),
       pageOf({}, {placed({at(1, 1), at(5, 5), at(6, 6)}, 109, 218, 1, 2)}), "| 109,218+1,2: 2,2 ",
       "| 100,200+10,20: 5,5 6,6 ", 2176, "667 668 ", "667 668 "},
      // Each view stands at the place of the other list, so its parts are moved by the way.
      {"different parts from zero", pageOf({}, {placed({at(1, 1)}, 0, 5, 0, 20)}),
       pageOf({}, {placed({at(2, 2)}, 30, 0, 4, 9)}), "| 30,0+4,9: -33,17 ", "| 0,5+0,20: 36,-14 ",
       2176, "667 668 ", "667 668 "},
      {"page and list", pageOf({at(1, 1)}, {placed({line()}, 1, 2, 3, 4)}),
       pageOf({at(4, 4)}, {placed({line({.width = 1})}, 1, 2, 3, 4)}), "1,1 | 1,2+3,4: type 2 ",
       "4,4 | 1,2+3,4: type 2 ", 2176 + 64, "667 668 667 668 ", "667 668 667 668 "},
      {"lists that one page has", pageOf({at(1, 1)}, {list, moved}), pageOf({at(4, 4)}, {list}),
       "1,1 | 0,0+10,20: 101,202 102,203 ", "4,4 ", 2176, "667 668 667 ", "667 668 668 "},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    LoadedCapture a(captureOf({c.a, pageOf({})})), b(captureOf({c.b}));
    a.reader.loadCurrentPage();
    b.reader.loadCurrentPage();
    RecordingPen pen, penBack;
    EXPECT_EQ(buildPageOverlay(a.context, b.context, pen), c.bits);
    EXPECT_EQ(buildPageOverlay(b.context, a.context, penBack), c.bits);
    EXPECT_EQ(pen.numbers, c.pens + "666 ");
    EXPECT_EQ(penBack.numbers, c.pensBack + "666 ");
    // The views outlive the page that they were made from.
    a.reader.currentPage = 1;
    a.reader.loadCurrentPage();
    EXPECT_EQ(shown(a.context.overlayFirst), c.first);
    EXPECT_EQ(shown(a.context.overlaySecond), c.second);
    EXPECT_EQ(shown(b.context.overlayFirst), c.second);
    EXPECT_EQ(shown(b.context.overlaySecond), c.first);
    // Nothing of them is left in the next ones.
    EXPECT_EQ(buildPageOverlay(a.context, a.context, pen), 0U);
    EXPECT_EQ(shown(a.context.overlayFirst) + shown(a.context.overlaySecond), "");
    EXPECT_EQ(a.context.overlayFirst.list.count + a.context.overlaySecond.list.count, 0);
  }
}

DiffFlags overlayBits(const PageFields& first, const PageFields& second) {
  LoadedCapture a(captureOf({first})), b(captureOf({second}));
  a.reader.loadCurrentPage();
  b.reader.loadCurrentPage();
  RecordingPen pen;
  return buildPageOverlay(a.context, b.context, pen);
}

TEST(PageOverlay, BitsAreThoseOfTheFirstAgainstTheSecond) {
  const Part filled = rect(), hollow = rect({.noFill = 1, .fillTint = 1});
  EXPECT_EQ(overlayBits(pageOf({filled}), pageOf({hollow})), 256U + 32768 + 128);
  EXPECT_EQ(overlayBits(pageOf({hollow}), pageOf({filled})), 32768U + 128);
  const PageFields a = pageOf({}, {placed({filled}, 1, 2, 3, 4)});
  const PageFields b = pageOf({}, {placed({hollow}, 1, 2, 3, 4)});
  EXPECT_EQ(overlayBits(a, b), 256U + 32768 + 128);
  EXPECT_EQ(overlayBits(b, a), 32768U + 128);
}

TEST(PageOverlay, GroupsThatAreLeftOverShowTheirChildren) {
  // In a view of the longer list the children follow their group, with all types that are copied.
  CaptureFields fields = captureOf({pageOf({at(1, 1), staticRef({.staticIndex = 0})})});
  fields.statics21 = {{.first = {.parts = {at(7, 7), line()}}}};
  LoadedCapture a(fields), b(captureOf({pageOf({at(1, 1)})}));
  a.reader.loadCurrentPage();
  b.reader.loadCurrentPage();
  RecordingPen pen;
  EXPECT_EQ(buildPageOverlay(a.context, b.context, pen), 128U + 2048 + 16384);
  EXPECT_EQ(shown(a.context.overlayFirst), "type 9 7,7 type 2 ");
}

}  // namespace
}  // namespace rvf
