#include "compare/DrawListMatch.h"

#include <map>

#include "compare/CompareFixture.h"
#include "pagemodel/TextParts.h"
#include "pagemodel/VectorParts.h"
#include "support/FrozenText.h"

namespace rvf::test {
namespace {

using Parts = std::vector<Part>;

/// A list as one file has it, which may begin with a group.
struct List {
  List(std::string listName, const Parts& parts) : name(std::move(listName)) {
    list = side.list(parts);
  }
  List(std::string listName, const Parts& children, Parts behind, int x = 10)
      : name(std::move(listName)) {
    behind.insert(behind.begin(), side.group(children, x));
    list = side.list(behind);
  }
  std::string name;
  Side side;
  DrawList list;
};

DiffFlags matched(const DrawList& a, const DrawList& b) {
  DrawList overlay;
  return matchDrawLists(overlay, a, b, false, 0, 0);
}

TEST(DrawListMatch, ListsAgainstEachOther) {
  const Part a = text({.text = u"A"}), b = text({.text = u"B"}), c = text({.text = u"C"});
  const Part filled = rect(), hollow = rect({.noFill = 1, .fillTint = 1});
  std::deque<List> lists;
  const auto add = [&lists](const auto&... fields) { lists.emplace_back(fields...); };
  add("nothing", Parts());
  add("ABC", Parts{a, b, c});
  add("BA", Parts{b, a});
  add("BC", Parts{b, c});
  add("A, image", Parts{a, image()});
  add("image, A", Parts{image(), a});
  add("text, line", Parts{text(), line()});
  add("other font, other tint", Parts{text({.fontId = 1}), line({.tint = 0})});
  // The item of the shorter list stands on the left, so with equal counts the order counts.
  add("filled", Parts{filled});
  add("hollow", Parts{hollow});
  add("filled, A", Parts{filled, a});
  // The second A finds the one that an earlier search has taken, as it stands at its place.
  add("AA", Parts{a, a});
  add("CAA", Parts{c, a, a});
  add("A with flags, CA", Parts{text({.text = u"A", .textFlags = 1}), c, a});
  // An absorbing part takes what is searched for, which hides that it is another text.
  add("STARTEND", Parts{startEnd()});
  add("C, STARTEND, B", Parts{c, startEnd(), b});
  add("UNKNOWN", Parts{empty(0)});
  add("reference to nothing", Parts{staticRef({.staticIndex = 9, .x = 99})});
  // Groups find each other at their place, and within tolerance. The children of the first list
  // stay first, also if it is the longer one.
  add("(A)", Parts{a}, Parts());
  add("(B)", Parts{b}, Parts());
  add("(B) elsewhere", Parts{b}, Parts(), 11);
  add("(filled), A", Parts{filled}, Parts{a});
  add("(hollow)", Parts{hollow}, Parts());
  // A click area ends the accounting of left-overs and drops what was found before it.
  add("(A, line, CLICKAREA, rectangle)", Parts{a, line(), clickArea(), filled}, Parts());
  add("(A, line), C", Parts{a, line()}, Parts{c});
  std::string text;
  for (const List& first : lists) {
    Deltas deltas;
    for (const List& second : lists) {
      const std::string bits = std::to_string(matched(first.list, second.list));
      deltas.add(second.name, {bits + (listsEqual(first.list, second.list) ? " =" : "")});
    }
    text += first.name + "\n" + deltas.text();
  }
  expectFrozen("lists-matched.txt", text);
}

TEST(DrawListMatch, ManyPartsAreSearchedThroughAnIndex) {
  Parts many;
  for (int i = 0; i < 100; ++i) many.push_back(text({.runs = {{.x = 100 * i}}}));
  const Parts reversed(many.rbegin(), many.rend());
  Parts changed = reversed;
  changed[50] = image();
  Side side;
  EXPECT_EQ(matched(side.list(many), side.list(reversed)), 129U);
  EXPECT_EQ(matched(side.list(many), side.list(changed)), 129U + 2080 + 4096);
  EXPECT_EQ(matched(side.list(changed), side.list(many)), 129U);
}

TEST(DrawListMatch, ChildrenThatAreLeftOverEarnTheirKind) {
  const std::map<int, DiffFlags> earned = {{1, 2048}, {2, 16384}, {3, 32768}, {4, 32768},
                                           {5, 4096}, {7, 4096},  {30, 1024}, {31, 1024}};
  for (const Part& child : allParts()) {
    const auto found = earned.find(child.type);
    const DiffFlags bits = 128 | (found == earned.end() ? 0 : found->second);
    EXPECT_EQ(matched({}, List("", {child}, {}).list), bits) << child.type;
  }
}

/// Type and first position of each part of an overlay: "1@10,20 ", or "0 ".
std::string contentOf(const DrawList& overlay) {
  std::string text;
  for (const DrawPart& part : overlay.parts()) {
    text += std::to_string(static_cast<int>(part.type));
    if (part.type == PartType::kText) {
      text += "@" + std::to_string(textRuns(part)[0].x) + "," + std::to_string(textRuns(part)[0].y);
    }
    if (part.type == PartType::kLine) text += "@" + std::to_string(linePoints(part)[0].x);
    if (part.type == PartType::kStaticRef) text += "@" + std::to_string(part.fields.staticRef.x);
    text += " ";
  }
  return text;
}

TEST(DrawListMatch, OverlayHoldsTheLeftOversOfTheFirstList) {
  Side side;
  const Part partA = text(), partB = text({.fontId = 1}), partC = text({.fontId = 2});
  const DrawList a = side.list({partA, partB, side.group({partA})});
  const DrawList b =
      side.list({partA, partC, side.group({line(), clickArea(), partB}), line(), image()});
  const auto expectOverlay = [](const DrawList& first, const DrawList& second, bool build,
                                const std::string& content, i32 tally) {
    DrawList overlay;
    const DiffFlags bits = matchDrawLists(overlay, first, second, build, 3, 4);
    // The bit of an image that is left over is not earned by one that is copied.
    EXPECT_EQ((bits & 4096) != 0, !build || first.count < second.count);
    EXPECT_EQ(contentOf(overlay), content);
    EXPECT_EQ(overlay.contentTally, tally);
  };
  // Of the first list B is left over, and inside its group A. Then come the slots of what is left
  // over of the second, first inside its group. The group that is left over has its children copied
  // although they are the second list's, unmoved and up to the click area.
  expectOverlay(a, b, true, "1@13,24 1@13,24 0 0 0 0 0 2@10 8 0 0 ", 1);
  // Swapped: two slots for B and A; inside the group line, click area and B; then C, the group
  // unmoved with its children moved, line and image.
  expectOverlay(b, a, true, "0 0 2@13 8 1@13,24 1@13,24 9@10 2@13 8 2@13 5 ", 1);
  // Without an overlay blank slots come all the same for what is left over of the longer list.
  expectOverlay(a, b, false, "0 0 0 0 0 0 0 0 0 ", 0);
}

}  // namespace
}  // namespace rvf::test
