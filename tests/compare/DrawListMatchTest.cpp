#include "compare/DrawListMatch.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "compare/CompareFixture.h"
#include "pagemodel/TextParts.h"
#include "pagemodel/VectorParts.h"

namespace rvf {
namespace {

using namespace test;
using Parts = std::vector<Part>;

Part named(std::u16string name, int x = 10) {
  return text({.text = std::move(name), .runs = {{.x = x}}});
}
const Part kA = named(u"A"), kB = named(u"B"), kC = named(u"C");

DiffFlags matched(const DrawList& a, const DrawList& b) {
  DrawList overlay;
  return matchDrawLists(overlay, a, b, false, 0, 0);
}

TEST(DrawListMatch, ListsAreEqualItemByItem) {
  Side side;
  const auto equal = [&side](const Parts& a, const Parts& b) {
    return listsEqual(side.list(a), side.list(b));
  };
  EXPECT_TRUE(equal({}, {}));
  EXPECT_TRUE(equal({kA, kB}, {kA, kB}));
  EXPECT_FALSE(equal({kA, kB}, {kB, kA}));
  EXPECT_FALSE(equal({kA}, {kA, kB}));
  EXPECT_FALSE(equal({kA, startEnd()}, {kA, startEnd()}));
  // A group against what equals it without being one: there are no children to compare.
  Side other;
  EXPECT_TRUE(listsEqual(side.list({side.group({kA})}), other.list({empty(0)})));
  EXPECT_FALSE(listsEqual(side.list({side.group({kA})}), other.list({other.group({kB})})));
}

/// Two lists and what they earn; `reversed` with the arguments exchanged.
struct Pair {
  const char* what;
  Parts a, b;
  DiffFlags bits, reversed;
};

TEST(DrawListMatch, PairsByPlaceThenByFirstFind) {
  const Part flagged = text({.text = u"A", .textFlags = 1});
  const Part filled = rect(), hollow = rect({.noFill = 1, .fillTint = 1});
  const Pair pairs[] = {
      {"nothing", {}, {}, 0, 0},
      {"equal", {kA, kB, kC}, {kA, kB, kC}, 0, 0},
      {"exchanged", {kA, kB}, {kB, kA}, 129, 129},
      {"an image exchanged", {kA, image()}, {image(), kA}, 129, 129},
      {"two changes", {text(), line()}, {text({.fontId = 1}), line({.tint = 0})}, 8576, 8576},
      {"a text more", {kA}, {kA, kB}, 128, 128},
      {"an image more", {kA}, {kA, image()}, 128 + 4096, 128 + 4096},
      {"other types more", {}, {kA, line(), rect()}, 128, 128},
      {"the front removed", {kA, kB, kC}, {kB, kC}, 129, 129},
      {"changed", {kA, kB}, {kA, kC}, 2176, 2176},
      {"changed without Content", {text()}, {text({.fontId = 1})}, 8192 + 128, 8192 + 128},
      {"within tolerance", {text()}, {text({.textFlags = 1})}, 129, 129},
      // The item of the shorter list stands on the left, so with equal counts the order counts.
      {"not symmetric", {filled}, {hollow}, 256 + 32768 + 128, 32768 + 128},
      {"swapped or not", {filled, kA}, {hollow}, 32768 + 128, 32768 + 128},
      // The second A finds the one that an earlier search has taken, as it stands at its place.
      {"taken twice", {kA, kA}, {kB, kA}, 129, 2176},
      {"first one wins", {kC, kA, kA}, {flagged, kC, kA}, 129, 129},
      // An absorbing part takes what is searched for, which hides that it is another text.
      {"absorbed", {kA, kB}, {kC, startEnd(), kB}, 129, 129},
      {"absorbing on the left", {startEnd()}, {kA}, 128, 129},
      {"identical with an absorbing one", {kA, startEnd()}, {kA, startEnd()}, 129, 129},
      {"unknown on the right", {kA}, {empty(0)}, 0, 128},
  };
  for (const Pair& pair : pairs) {
    Side side;
    const DrawList a = side.list(pair.a), b = side.list(pair.b);
    EXPECT_EQ(matched(a, b), pair.bits) << pair.what;
    EXPECT_EQ(matched(b, a), pair.reversed) << pair.what;
  }
  // As many searches as an index is made for.
  Parts many, reversed, changed;
  for (int i = 0; i < 100; ++i) many.push_back(named(u"many", 100 * i));
  reversed.assign(many.rbegin(), many.rend());
  changed = reversed;
  changed[50] = image();
  Side side;
  EXPECT_EQ(matched(side.list(many), side.list(reversed)), 129U);
  EXPECT_EQ(matched(side.list(many), side.list(changed)), 129U + 2080 + 4096);
  EXPECT_EQ(matched(side.list(changed), side.list(many)), 129U);
}

TEST(DrawListMatch, GroupsAreMatchedInside) {
  const auto group = [](Side& side, Parts children, int x = 10) {
    return side.group(children, {.x = x});
  };
  const Part filled = rect(), hollow = rect({.noFill = 1, .fillTint = 1});
  const auto expectBits = [](const DrawList& a, const DrawList& b, DiffFlags bits,
                             DiffFlags reversed) {
    EXPECT_EQ(matched(a, b), bits);
    EXPECT_EQ(matched(b, a), reversed);
  };
  {  // A changed child: the groups find each other at their place.
    Side s, t;
    expectBits(s.list({group(s, {kA})}), t.list({group(t, {kB})}), 129 + 2048, 129 + 2048);
  }
  {  // Out of tolerance they do not, so the children of the second are left over too.
    Side s, t;
    expectBits(s.list({group(s, {line()})}), t.list({group(t, {line()}, 11)}), 16384 + 128,
               16384 + 128);
  }
  {  // The children of the first list stay first, also if it is the longer one.
    Side s, t;
    const DrawList a = s.list({group(s, {filled}), kA}), b = t.list({group(t, {hollow})});
    expectBits(a, b, 129 + 256 + 32768, 129 + 32768);
    Side u, v;
    expectBits(u.list({group(u, {filled})}), v.list({group(v, {hollow})}), 129 + 256 + 32768,
               129 + 32768);
  }
  {  // A group against something else, which in its turn is left over.
    Side s;
    expectBits(s.list({group(s, {rect()})}), s.list({image()}), 129 + 4096, 128 + 32768);
  }
  {  // Without a list on one side nothing is matched inside.
    Side s, t;
    const DrawList without = s.list({line(), staticRef({.x = 99})});
    const DrawList with = t.list({line({.tint = 0}), group(t, {kA})});
    expectBits(without, with, 256 + 129 + 2048, 256 + 129);
  }
}

TEST(DrawListMatch, ChildrenThatAreLeftOverEarnTheirKind) {
  const std::map<int, DiffFlags> earned = {{1, 2048}, {2, 16384}, {3, 32768}, {4, 32768},
                                           {5, 4096}, {7, 4096},  {30, 1024}, {31, 1024}};
  for (const Part& child : allParts()) {
    Side side;
    const auto found = earned.find(child.type);
    const DiffFlags bits = 128 | (found == earned.end() ? 0 : found->second);
    EXPECT_EQ(matched(side.list({}), side.list({side.group({child})})), bits) << child.type;
  }
  Side side;
  const Parts children = {kA, line(), clickArea(), rect()};
  DrawList overlay;
  const DrawList list = side.list({side.group(children), side.group({kA, line()}), staticRef()});
  EXPECT_EQ(spillChildList(overlay, nullptr, 0, 0, true), 0U);
  EXPECT_EQ(overlay.contentTally, 0);
  // A click area ends the accounting and drops what was found before it.
  EXPECT_EQ(matchDrawLists(overlay, side.list({}), side.list({side.group(children)}), false, 0, 0),
            128U);
  EXPECT_EQ(overlay.count, 1 + 3);
  EXPECT_EQ(overlay.contentTally, 0);
  EXPECT_EQ(matched(side.list({}), list), 128U + 2048 + 16384);
}

/// Type and first text position of each part of an overlay: "1@10" or "0".
std::vector<std::string> contentOf(const DrawList& overlay) {
  std::vector<std::string> lines;
  for (const DrawPart& part : overlay.parts()) {
    std::string line = std::to_string(static_cast<int>(part.type));
    if (part.type == PartType::kText) {
      line += "@" + std::to_string(textRuns(part)[0].x) + "," + std::to_string(textRuns(part)[0].y);
    }
    if (part.type == PartType::kLine) line += "@" + std::to_string(linePoints(part)[0].x);
    if (part.type == PartType::kStaticRef) line += "@" + std::to_string(part.fields.staticRef.x);
    lines.push_back(line);
  }
  return lines;
}
using Content = std::vector<std::string>;

TEST(DrawListMatch, OverlayHoldsTheLeftOversOfTheFirstList) {
  Side side;
  const DrawList a = side.list({kA, kB, side.group({kA})});
  const DrawList b = side.list({kA, kC, side.group({line(), clickArea(), kB}), line(), image()});
  const auto overlayOf = [](const DrawList& first, const DrawList& second, bool build) {
    DrawList overlay;
    const DiffFlags bits = matchDrawLists(overlay, first, second, build, 3, 4);
    // The bit of an image that is left over is not earned by one that is copied.
    EXPECT_EQ((bits & 4096) != 0, !build || first.count < second.count);
    return overlay;
  };
  // Of the first list B is left over, and inside its group A. Then come the slots of what is left
  // over of the second, first inside its group. The group that is left over has its children copied
  // although they are the second list's, unmoved and up to the click area.
  const DrawList forward = overlayOf(a, b, true);
  EXPECT_EQ(contentOf(forward),
            (Content{"1@13,24", "1@13,24", "0", "0", "0", "0", "0", "2@10", "8", "0", "0"}));
  EXPECT_EQ(forward.contentTally, 1);
  // Swapped: two slots for B and A; inside the group line, click area and B; then C, the group
  // unmoved with its children moved, line and image.
  const DrawList backward = overlayOf(b, a, true);
  EXPECT_EQ(contentOf(backward), (Content{"0", "0", "2@13", "8", "1@13,24", "1@13,24", "9@10",
                                          "2@13", "8", "2@13", "5"}));
  EXPECT_EQ(backward.contentTally, 1);
  // Without an overlay blank slots come all the same for what is left over of the longer list.
  const DrawList off = overlayOf(a, b, false);
  EXPECT_EQ(contentOf(off), Content(3 + 6, "0"));
  EXPECT_EQ(off.contentTally, 0);
}

}  // namespace
}  // namespace rvf
