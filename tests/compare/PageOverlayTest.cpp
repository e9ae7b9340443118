#include "compare/PageOverlay.h"

#include "compare/CompareFixture.h"
#include "pagemodel/TextParts.h"
#include "support/FrozenText.h"

namespace rvf::test {
namespace {

struct RecordingPen final : OverlayPen {
  std::string numbers;
  void select(i32 number) override { numbers += " " + std::to_string(number); }
};

/// A text at a place, which also is its name in what a view shows.
Part at(int x, int y) {
  return text({.text = std::u16string(1, static_cast<char16_t>(x)), .runs = {{.x = x, .y = y}}});
}

std::string numbers(i32 a, i32 b) { return std::to_string(a) + "," + std::to_string(b); }

std::string shown(const DrawList& list) {
  std::string line;
  for (const DrawPart& part : list.parts()) {
    if (part.type == PartType::kText) {
      line += " " + numbers(textRuns(part)[0].x, textRuns(part)[0].y);
    } else if (part.type != PartType::kUnknown) {
      line += " type " + std::to_string(static_cast<int>(part.type));
    }
  }
  return line;
}

/// A view in words: the page's parts, then each static list with origin and placement.
std::string shown(const PageOverlayLists& view) {
  std::string line = shown(view.list);
  for (std::size_t i = 0; i < view.statics.size(); ++i) {
    const DrawList& list = *view.statics[i];
    line += " | " + numbers(list.originX, list.originY) + " at " +
            numbers(view.placementX.at(i), view.placementY.at(i)) + ":" + shown(list);
  }
  return line;
}

std::vector<PageFields> comparedPages() {
  std::vector<PageFields> pages;
  const auto add = [&pages](std::vector<Part> parts, std::vector<PlacedList> placed = {}) {
    pages.push_back(page(std::move(parts)));
    pages.back().body->placed = std::move(placed);
  };
  const auto placed = [](std::vector<Part> parts, int originX, int originY, int x, int y) {
    const ListFields list{.parts = std::move(parts), .originX = originX, .originY = originY};
    return PlacedList{.list = list, .x = x, .y = y};
  };
  const std::vector<Part> two = {at(1, 1), at(2, 2)};
  const PlacedList base = placed(two, 100, 200, 10, 20), moved = placed(two, 100, 201, 10, 20);
  constexpr int kHighest = 2147483647, kLowest = -kHighest - 1;
  add({});
  add({at(1, 1), at(2, 2), bookmark()});
  add({at(1, 1), at(3, 3), at(4, 4), line()});
  // Only the left one of the two tells whether a colour counts.
  add({rect()}, {placed({rect()}, 1, 2, 3, 4)});
  add({rect({.noFill = 1, .fillTint = 1})},
      {placed({rect({.noFill = 1, .fillTint = 1})}, 1, 2, 3, 4)});
  add({}, {base});
  add({}, {moved});
  add({}, {placed(two, 101, 200, 10, 20)});
  add({}, {placed(two, 10, 20, 100, 200)});
  add({}, {placed(two, kHighest, 220, kLowest + 111, 0)});
  add({}, {placed({at(1, 1), image()}, 90, 201, 20, 19), base});
  // A place with a 0 in it is not another place.
  add({}, {placed({at(1, 1)}, 0, 5, 0, 20)});
  add({}, {placed({at(2, 2)}, 30, 0, 4, 0)});
  add({at(1, 1)}, {base, moved});
  return pages;
}

TEST(PageOverlay, PagesAgainstEachOther) {
  const std::vector<PageFields> pages = comparedPages();
  std::string text;
  for (std::size_t i = 0; i < pages.size(); ++i) {
    for (std::size_t j = 0; j < pages.size(); ++j) {
      LoadedCapture a(captureOf({pages[i], page({})})), b(captureOf({pages[j], page({})}));
      const DiffFlags walked = Walk(a.reader, b.reader, true, true).status;
      {
        const WithTolerances tolerances(1000, 1000);  // play no part for the places of lists
        EXPECT_EQ(Walk(a.reader, b.reader, true, false).status, walked);
      }
      for (RvfReader* reader : {&a.reader, &b.reader}) {
        reader->currentPage = 0;
        reader->loadCurrentPage();
      }
      RecordingPen pen;
      const DiffFlags bits = buildPageOverlay(a.context, b.context, pen);
      // The views outlive the page that they were made from.
      a.reader.currentPage = 1;
      a.reader.loadCurrentPage();
      text += std::to_string(i) + " and " + std::to_string(j) + ": " + std::to_string(walked) +
              ", overlay " + std::to_string(bits) + ", pens" + pen.numbers + "\n" + "  first" +
              shown(a.context.overlayFirst) + "\n" + "  second" + shown(a.context.overlaySecond) +
              "\n";
      // Nothing of them is left in the next ones.
      EXPECT_EQ(buildPageOverlay(a.context, a.context, pen), 0U);
      EXPECT_EQ(shown(a.context.overlayFirst) + shown(a.context.overlaySecond), "");
      EXPECT_EQ(a.context.overlayFirst.list.count + a.context.overlaySecond.list.count, 0);
    }
  }
  expectFrozen("pages.txt", text);
}

}  // namespace
}  // namespace rvf::test
