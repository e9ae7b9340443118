#include "compare/PageOverlay.h"

#include "compare/CompareFixture.h"

namespace rvf::test {
namespace {

using Parts = std::vector<Part>;

struct RecordingPen final : OverlayPen {
  std::string numbers = "pens";
  void select(i32 number) override { numbers += Shown::row("", number); }
};

/// The page's parts, then each static list with origin and placement.
std::string shown(const PageOverlayLists& view) {
  std::string line = "\n   " + contentOf(view.list);
  for (std::size_t i = 0; i < view.statics.size(); ++i) {
    const DrawList& list = *view.statics[i];
    line +=
        Shown::row(" |", list.originX, list.originY, view.placementX.at(i), view.placementY.at(i)) +
        contentOf(list);
  }
  return line;
}

std::vector<PageFields> comparedPages() {
  std::vector<PageFields> pages;
  const auto add = [&pages](Parts parts, std::vector<PlacedList> placed = {}) {
    pages.push_back(page(std::move(parts)));
    pages.back().body->placed = std::move(placed);
  };
  const auto placed = [](Parts parts, int originX, int originY, int x, int y) {
    const ListFields list{.parts = std::move(parts), .originX = originX, .originY = originY};
    return PlacedList{.list = list, .x = x, .y = y};
  };
  const Part one = text({.text = u"1"}), two = text({.text = u"2", .runs = {{.x = 2}}});
  const PlacedList base = placed({one, two}, 100, 200, 10, 20);
  add({});
  add({one, two, bookmark()});
  add({one, line()});
  add({}, {base});
  add({}, {placed({one, two}, 100, 201, 10, 20)});
  add({}, {placed({one, two}, 10, 20, 100, 200)});
  add({}, {placed({one, two}, 2147483647, 220, -2147483537, 0)});
  add({}, {placed({one, image()}, 90, 201, 20, 19), base});
  // A position with a 0 in it never counts as moved.
  add({}, {placed({one}, 0, 5, 0, 20)});
  add({}, {placed({two}, 30, 0, 4, 0)});
  return pages;
}

TEST(PageOverlay, PagesAgainstEachOther) {
  const std::vector<PageFields> pages = comparedPages();
  const Tolerances tolerances{1000, 1000};  // do not affect the placement of lists
  std::string text;
  for (std::size_t i = 0; i < pages.size(); ++i) {
    for (std::size_t j = 0; j < pages.size(); ++j) {
      LoadedCapture a(captureOf({pages[i]})), b(captureOf({pages[j]}));
      const DiffFlags walked = Walk(a.reader, b.reader, true, true, nullptr, tolerances).status;
      a.reader.loadCurrentPage();
      b.reader.loadCurrentPage();
      RecordingPen pen;
      PageOverlay overlay;
      const DiffFlags bits = buildPageOverlay(overlay, a.context, b.context, tolerances, pen);
      const std::string once = shown(overlay.first) + shown(overlay.second);
      RecordingPen again;
      EXPECT_EQ(buildPageOverlay(overlay, a.context, b.context, tolerances, again), bits);
      EXPECT_EQ(shown(overlay.first) + shown(overlay.second), once);
      a.context.FetchPage(0, -1);  // the views outlive the page that they were made from
      text += Shown::row("pages", i, j) + Shown::row(", bits", walked, bits) + ", " + pen.numbers +
              shown(overlay.first) + shown(overlay.second) + "\n";
    }
  }
  expectFrozen("pages.txt", text);
}

}  // namespace
}  // namespace rvf::test
