#include "compare/DrawListMatch.h"

#include <deque>

#include "compare/CompareFixture.h"
#include "compare/PageOverlay.h"

namespace rvf::test {
namespace {

using Parts = std::vector<Part>;

/// A list as a file has it. The groups in it have these children.
struct List {
  List(std::string listName, const Parts& parts, const Parts& children = {})
      : name(std::move(listName)), file(fieldsOf(parts, children)) {
    file.reader.loadCurrentPage();
  }
  static CaptureFields fieldsOf(const Parts& parts, const Parts& children) {
    CaptureFields fields = captureOf({page(parts)});
    if (!children.empty()) fields.statics21 = {{.first = {.parts = children}}};
    return fields;
  }
  const DrawList& list() const { return file.context.pageList; }

  std::string name;
  LoadedCapture file;
};

std::deque<List> comparedLists() {
  const Part a = text({.text = u"A"}), b = text({.text = u"B"}), c = text({.text = u"C"});
  const Part filled = rect(), hollow = rect({.noFill = 1, .fillTint = 1}), group = staticRef();
  std::deque<List> lists;
  const auto add = [&lists](const auto&... fields) { lists.emplace_back(fields...); };
  add("nothing", Parts());
  add("ABC", Parts{a, b, c});
  add("BA", Parts{b, a});
  add("A, image", Parts{a, image()});
  add("text, line", Parts{text(), line()});
  add("other font, other tint", Parts{text({.fontId = 1}), line({.tint = 0})});
  // The item of the shorter list stands on the left, so with equal counts the order counts.
  add("hollow", Parts{hollow});
  add("filled, A", Parts{filled, a});
  // The second A finds the one that an earlier search has taken, as it stands at its place.
  add("AA", Parts{a, a});
  add("CAA", Parts{c, a, a});
  add("A with flags, CA", Parts{text({.text = u"A", .textFlags = 1}), c, a});
  // An absorbing part takes what is searched for, which hides that it is another text.
  add("STARTEND", Parts{startEnd()});
  add("C, STARTEND, B", Parts{c, startEnd(), b});
  add("reference to nothing", Parts{group});
  add("another reference to nothing", Parts{staticRef({.staticIndex = 9, .x = 99})});
  // Groups find each other at their place, and within tolerance. The children of the first list
  // stay first, also if it is the longer one.
  add("(A)", Parts{group}, Parts{a});
  add("(B)", Parts{group}, Parts{b});
  add("(B) elsewhere", Parts{staticRef({.x = 11})}, Parts{b});
  add("(filled), A", Parts{group, a}, Parts{filled});
  add("(hollow)", Parts{group}, Parts{hollow});
  // A click area ends the accounting of left-overs and drops what was found before it.
  add("(A, line, CLICKAREA, rectangle)", Parts{group}, Parts{a, line(), clickArea(), filled});
  add("(A, line), C", Parts{group, c}, Parts{a, line()});
  return lists;
}

/// The overlay holds what is left over of the first list, and slots for the second one's.
TEST(DrawListMatch, ListsAgainstEachOther) {
  std::string text;
  const std::deque<List> lists = comparedLists();
  for (const List& first : lists) {
    Deltas deltas;
    for (const List& second : lists) {
      DrawList blank, overlay;
      const DiffFlags bits = matchDrawLists(blank, first.list(), second.list(), false, 0, 0, {});
      const DiffFlags built = matchDrawLists(overlay, first.list(), second.list(), true, 3, 4, {});
      const bool isEqual = listsEqual(first.list(), second.list());
      deltas.add(second.name, {Shown::row("bits", bits, built) + (isEqual ? " =" : "") + ", blank" +
                               contentOf(blank) + ", overlay" + contentOf(overlay)});
    }
    text += first.name + "\n" + deltas.text();
  }
  text += "children that are left over\n";
  for (const Part& child : allParts()) {
    const List group("", {staticRef()}, {child});
    const DiffFlags bits = matchLists({}, group.list(), {});
    text += Shown::row(" ", child.type, bits) + "\n";
  }
  expectFrozen("lists-matched.txt", text);
}

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
  // A place with a 0 in it is not another place.
  add({}, {placed({one}, 0, 5, 0, 20)});
  add({}, {placed({two}, 30, 0, 4, 0)});
  return pages;
}

TEST(PageOverlay, PagesAgainstEachOther) {
  const std::vector<PageFields> pages = comparedPages();
  const Tolerances tolerances{1000, 1000};  // play no part for the places of lists
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
      a.context.FetchPage(0, -1);  // the views outlive the page that they were made from
      text += Shown::row("pages", i, j) + Shown::row(", bits", walked, bits) + ", " + pen.numbers +
              shown(overlay.first) + shown(overlay.second) + "\n";
    }
  }
  expectFrozen("pages.txt", text);
}

}  // namespace
}  // namespace rvf::test
