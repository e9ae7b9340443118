#include <gtest/gtest.h>

#include "inspect/Inspected.h"

namespace rvf::test {
namespace {

using Lines = Inspected::Lines;
using Parts = std::vector<Part>;

Part words(const std::u16string& text, int y, int x = 100, int fontId = 7) {
  return rvf::test::text({.text = text,
                          .runs = {{.x = x, .y = y, .charCount = static_cast<int>(text.size())}},
                          .fontId = fontId});
}

const Part kDear = words(u"Dear reader", 100), kSum = words(u"Sum 118.40 due", 200);
const Part kBox = rect({.area = {100, 300, 500, 400}});

/// A page in two versions, as lists of parts.
struct PartCase {
  Parts first, second;
  Lines changes;
  Tolerances tolerances{};
};

TEST(Explanation, NamesTheSmallestChangeOfAPage) {
  const Part rule = line({.points = {{10, 500}, {900, 500}}, .width = 4});
  const Part poly5 = poly({.points = {{0, 0}, {9, 0}, {9, 9}, {5, 5}, {0, 9}}});
  const Part poly4 = poly({.points = {{0, 0}, {9, 0}, {9, 9}, {5, 5}}});
  const PartCase cases[] = {
      {{kDear, kSum, kBox}, {kDear, kSum, kBox}, {}},
      {{kDear, kSum}, {kDear, words(u"Sum 121.90 due", 200)}, {"0/0 1 changed TEXT text"}},
      {{kDear, kSum}, {words(u"Dear reader", 100, 103), kSum}, {"0/0 0 moved TEXT 3,0"}},
      {{kDear, kSum},
       {words(u"Dear reader", 100, 103), kSum},
       {"0/0 0 moved TEXT 3,0 [position tolerance]"},
       {3, 0}},
      {{kDear}, {words(u"Dear reader", 100, 100, 8)}, {"0/0 0 changed TEXT fontId"}},
      {{kDear, kSum, kBox}, {kDear, kBox}, {"0/0 1 removed TEXT"}},
      {{kDear, kBox}, {kDear, kSum, kBox}, {"0/0 1 added TEXT"}},
      {{kDear, kSum}, {kSum, kDear}, {"0/0 0 order TEXT"}},
      {{kDear, kSum, kBox}, {kBox, kSum, kDear}, {"0/0 0 order TEXT", "0/0 2 order RECT"}},
      // Of two alike texts one stays with another font, and the other moves.
      {{words(u"EUR", 100), kBox, words(u"EUR", 500)},
       {words(u"EUR", 100, 100, 8), kBox, words(u"EUR", 540, 300)},
       {"0/0 0 changed TEXT fontId", "0/0 2 moved TEXT 200,40"}},
      {{kBox}, {rect({.area = {100, 310, 500, 410}})}, {"0/0 0 moved RECT 0,10"}},
      {{kBox},
       {rect({.area = {100, 310, 500, 410}})},
       {"0/0 0 moved RECT 0,10 [one-step tolerance of rectangles]"},
       {1, 0}},
      {{kBox}, {rect({.area = {100, 300, 500, 450}})}, {"0/0 0 changed RECT bottom"}},
      {{rule},
       {line({.points = {{10, 500}, {900, 500}}, .width = 6})},
       {"0/0 0 changed LINE width [line tolerance]"},
       {0, 2}},
      {{poly5},
       {poly4},
       {"0/0 0 changed POLY pointCount points[4].x points[4].y [extra point of a polygon]"}},
      {{resource({.bytes = "abc"})},
       {resource({.bytes = "abd"})},
       {"0/0 0 changed RESOURCE bytes [resource bytes]"}},
      {{clickArea({.areaCode = 4})},
       {clickArea({.areaCode = 5})},
       {"0/0 0 changed CLICKAREA areaCode [field that is not compared]"}},
      {{bookmark()},
       {bookmark({.title = u"other"})},
       {"0/0 0 changed BOOKMARK title [type that matches anything]"}},
      {{image({.bytes = "ab"})}, {image({.bytes = "ac"})}, {"0/0 0 changed IMAGE data"}},
      {{image()}, {image({.area = {101, 200, 301, 400}})}, {"0/0 0 moved IMAGE 1,0"}},
      // Two changed texts are each paired with their own counterpart, wherever the other went.
      {{words(u"Total of the year 10", 100), words(u"Balance of month 20", 150)},
       {words(u"Balance of month 30", 100), words(u"Total of the year 40", 150)},
       {"0/0 0 changed TEXT text runs[0].y", "0/0 1 changed TEXT text runs[0].y"}},
  };
  for (const PartCase& c : cases) {
    const Inspected result(onePage(c.first), onePage(c.second), {.tolerances = c.tolerances});
    EXPECT_EQ(result.changes, c.changes);
  }
}

// A text that was both moved and changed is recognised by its place and its words, on whichever
// side of the lines of the search it came to be; too far away or too different, it is another one.
TEST(Explanation, RecognisesWhatMovedAndChanged) {
  const Part other = words(u"Something else", 900), another = words(u"and again", 950);
  const Lines both = {"0/0 0 removed TEXT", "0/0 2 added TEXT"};
  struct {
    int dx, dy;
    std::u16string text;
    Lines changes;
  } const cases[] = {
      {200, 0, u"alpha beta gamma omega", {"0/0 0 changed TEXT text runs[0].x"}},
      {-200, 0, u"alpha beta gamma omega", {"0/0 0 changed TEXT text runs[0].x"}},
      {0, 200, u"alpha beta gamma omega", {"0/0 0 changed TEXT text runs[0].y"}},
      {0, -200, u"alpha beta gamma omega", {"0/0 0 changed TEXT text runs[0].y"}},
      {200, 200, u"alpha beta gamma omega", {"0/0 0 changed TEXT text runs[0].x runs[0].y"}},
      {-200, -200, u"alpha beta gamma omega", {"0/0 0 changed TEXT text runs[0].x runs[0].y"}},
      {301, 0, u"alpha beta gamma omega", both},
      {0, -301, u"alpha beta gamma omega", both},
      {9, 9, u"alpha beta gamm2 delt2", {"0/0 0 changed TEXT text runs[0].x runs[0].y"}},
      {9, 9, u"alpha bet2 gamm2 delt2", both},
  };
  for (const auto& c : cases) {
    const Part before = words(u"alpha beta gamma delta", 450, 450);
    const Part after = words(c.text, 450 + c.dy, 450 + c.dx);
    const Inspected result(onePage({before, other, another}), onePage({other, another, after}));
    EXPECT_EQ(result.changes, c.changes) << c.dx << " " << c.dy;
  }
}

// The elements of an array are named, except for those at the end of a very long one.
TEST(Explanation, CombinesTheEndOfALongArray) {
  std::vector<Point> points(2100, {5, 5});
  const std::string before = onePage({line({.points = points})});
  points[2047].x = 6;
  points[2049].y = 6;
  points[2099].y = 7;
  const Inspected result(before, onePage({line({.points = points})}));
  EXPECT_EQ(result.changes, Lines{"0/0 0 changed LINE points[2047].x points[2048...]"});
}

TEST(Explanation, NamesTheFieldsOfAPlacedList) {
  const auto placed = [](int x, int y) {
    PageFields fields = page({kDear});
    fields.body->placed = {{.list = {.parts = {kSum}}, .x = x, .y = y}};
    return writeCapture(captureOf({fields})).bytes;
  };
  const std::string first = placed(10, 20);
  EXPECT_EQ(Inspected(first, placed(11, 20)).changes,
            Lines{"0/0 placed 0 0 changed LIST placementX"});
  EXPECT_EQ(Inspected(first, placed(10, 21)).changes,
            Lines{"0/0 placed 0 0 changed LIST placementY"});
}

PageFields named(const std::u16string& name, const Parts& parts) {
  return {.name = name, .body = PageBody{.list = {.parts = parts}}};
}
std::string job(std::vector<CustomerFields> customers) {
  return writeCapture({.customers = std::move(customers)}).bytes;
}

TEST(Explanation, PairsPagesByTheirContent) {
  const PageFields a = named(u"A", {kDear, kSum}), b = named(u"B", {kBox, kDear, kDear}),
                   c = named(u"C", {words(u"alone", 900)}),
                   changedB = named(u"B", {kBox, kDear, words(u"Dear friend", 100)});
  struct {
    std::vector<PageFields> first, second;
    Lines changes;
  } const cases[] = {
      {{a, b}, {a, c, b}, {"-/1 1 added PAGE"}},
      {{a, c, b}, {a, b}, {"1/- 1 removed PAGE"}},
      {{a, b}, {c, a, changedB}, {"-/0 0 added PAGE", "1/2 2 changed TEXT text"}},
      {{a, b}, {named(u"X", {kDear, kSum}), b}, {"0/0 changed PAGE name [page name]"}},
      {{a, c},
       {a, named(u"C", {words(u"gone", 900)})},
       {"1/1 0 changed TEXT text textLength "
        "runs[0].charCount"}},
  };
  for (const auto& test : cases) {
    const Inspected result(job({{.pages = test.first}}), job({{.pages = test.second}}));
    Lines changes = result.changes;
    std::erase_if(changes, [](const std::string& line) { return line.find("LIST") != line.npos; });
    EXPECT_EQ(changes, test.changes);
  }
}

TEST(Explanation, PairsCustomersByTheirIds) {
  const std::vector<PageFields> letter = {named(u"A", {kDear})}, other = {named(u"A", {kBox})};
  const std::string first = job({{.id = u"1", .pages = letter}, {.id = u"2", .pages = letter}});

  const Inspected inserted(first, job({{.id = u"1", .pages = letter},
                                       {.id = u"X", .pages = letter},
                                       {.id = u"2", .pages = letter}}));
  EXPECT_EQ(inserted.changes, Lines{"customer X 1 added CUSTOMER"});
  EXPECT_EQ(inserted.summary.bits, diff::kCustomers);
  EXPECT_EQ(inserted.summary.pagesCompared, 0);
  const CaptureFields fine{.resolution = 600, .customers = {{.id = u"1", .pages = letter}}};
  const Inspected finer(job({{.id = u"1", .pages = other}}), writeCapture(fine).bytes);
  EXPECT_EQ(finer.summary.bits, diff::kResolution);
  EXPECT_EQ(finer.summary.pagesCompared, 0);
  const Inspected renamed(first,
                          job({{.id = u"1", .pages = letter}, {.id = u"3", .pages = letter}}));
  EXPECT_EQ(renamed.changes,
            (Lines{"customer 2 1 removed CUSTOMER", "customer 3 1 added CUSTOMER"}));
  EXPECT_EQ(renamed.summary.pagesCompared, 1);
  EXPECT_EQ(renamed.summary.verdictEnd, "customer 2 has another id in each file");
}

CaptureFields letterhead(const std::u16string& claim, int x) {
  CaptureFields file = captureOf({page({staticRef({.x = x}), kDear}), page({staticRef({.x = x})})});
  file.statics21 = {{.first = {.parts = {words(claim, 50)}}}};
  return file;
}

TEST(Explanation, TellsAChangedObjectOnceWithThePagesThatUseIt) {
  const std::string first = writeCapture(letterhead(u"Since 1950", 10)).bytes;

  const Inspected changed(first, writeCapture(letterhead(u"Since 1951", 10)).bytes);
  EXPECT_EQ(changed.changes, Lines{"used 2/2 object 21/0/first 0 changed TEXT text"});
  CaptureFields other = letterhead(u"Since 1950", 10);
  other.statics21[0].valueB = 9;
  const Inspected itself(first, writeCapture(other).bytes);
  EXPECT_EQ(itself.changes, Lines{"used 2/2 changed OBJECT valueB [field that is not compared]"});
  const Inspected moved(first, writeCapture(letterhead(u"Since 1950", 12)).bytes);
  EXPECT_EQ(moved.changes, (Lines{"0/0 0 moved STATICREF 2,0", "1/1 0 moved STATICREF 2,0"}));
}

TEST(Explanation, GroupsEqualChangesAndLeavesAcceptedOnesOut) {
  std::vector<CustomerFields> first, second;
  for (int c = 0; c < 5; ++c) {
    const std::u16string id(1, static_cast<char16_t>(u'A' + c));
    first.push_back({.id = id, .pages = {named(u"P", {kDear, kSum})}});
    second.push_back(
        {.id = id,
         .pages = {
             named(u"P", {kDear, words(c < 3 ? u"Sum 121.90 due" : u"Sum 120.50 due", 200)})}});
  }
  second[4].pages[0].body->list.parts[0] = words(u"Dear friend", 100);
  const Inspected all(job(first), job(second));
  EXPECT_EQ(all.groups, (Lines{"changed TEXT pages 5 customers 5 pairs 2",
                               "changed TEXT pages 1 customers 1 pairs 1"}));

  inspect::GroupKey sum{.kind = "changed", .type = "TEXT", .list = "page", .fields = {"text"}};
  sum.page = 0;
  sum.place = inspect::Place{100, 150};
  const Inspected rest(job(first), job(second), {.acceptedGroups = {sum.id(), 1}});
  EXPECT_EQ(rest.changes.size(), 1u);
  EXPECT_EQ(rest.summary.changesAccepted, 5);
  EXPECT_EQ(rest.summary.acceptedSeen, std::set<u64>{sum.id()});
}

// A group counts if one of its changes does.
TEST(Explanation, TellsWhetherAGroupCounts) {
  const auto ruled = [](int one, int other) {
    return job({{.id = u"A", .pages = {named(u"P", {line({.width = one})})}},
                {.id = u"B", .pages = {named(u"P", {line({.width = other})})}}});
  };
  const std::string first = ruled(4, 4);
  const std::string group = "changed LINE pages 2 customers 2 pairs 2";
  const inspect::InspectionSettings settings{.tolerances = {0, 2}};
  EXPECT_EQ(Inspected(first, ruled(6, 5), settings).groups, Lines{group + " [line tolerance]"});
  EXPECT_EQ(Inspected(first, ruled(9, 5), settings).groups, Lines{group});
  EXPECT_EQ(Inspected(first, ruled(5, 9), settings).groups, Lines{group});
}

TEST(Explanation, CountsChangesForWhichThereIsNoRoomInGroups) {
  Parts first, second;
  for (int n = 0; n < 20'004; ++n) {
    first.push_back(words(u"old", n));
    second.push_back(words(u"new", n));
  }
  const Inspected result(onePage(first), onePage(second));
  EXPECT_EQ(result.groups.size(), 20'000u);
  EXPECT_EQ(result.notGrouped, 4);
  EXPECT_EQ(result.summary.changes, 20'004);
}

TEST(Explanation, TellsTheSmallestTolerancesThatAreEnough) {
  struct {
    Parts first, second;
    std::optional<i64> position;
    i64 line;
  } const cases[] = {
      {{kDear}, {words(u"Dear reader", 104, 101)}, 4, 0},
      {{kBox}, {rect({.area = {150, 300, 550, 400}})}, 1, 0},
      {{image()}, {image({.area = {101, 200, 301, 400}})}, std::nullopt, 0},
      {{kDear, line({.width = 4})}, {kDear, line({.width = 9})}, 0, 5},
  };
  for (const auto& c : cases) {
    for (const Tolerances& tolerances : {Tolerances{0, 0}, Tolerances{9, 9}}) {
      const Inspected result(onePage(c.first), onePage(c.second), {.tolerances = tolerances});
      EXPECT_EQ(result.summary.smallestPositionTolerance, c.position);
      EXPECT_EQ(result.summary.smallestLineTolerance, c.line);
    }
  }
}

TEST(Explanation, NamesTheComparisonThatSetEachBit) {
  const Inspected result(onePage({kDear, kSum, kBox}),
                         onePage({words(u"Dear reader", 100, 100, 8), kSum,
                                  rect({.area = {100, 300, 500, 400}, .lineWidth = 20})}));
  EXPECT_EQ(result.verdicts, (std::map<std::string, DiffFlags>{{"0/0", 8192 + 128 + 64}}));
  EXPECT_EQ(result.reasons, (Lines{"8320 place page 0 0", "64 place page 2 2"}));
}

TEST(Explanation, GoesOnBehindDamage) {
  CaptureFields file = captureOf({page({kDear}), page({kSum}), page({kBox})});
  const Capture sound = writeCapture(file);
  std::string damaged = sound.bytes;
  damaged[static_cast<std::size_t>(sound.bodyOffsets[1]) + 20] = '\x7F';  // a count beyond the file
  damaged[static_cast<std::size_t>(sound.bodyOffsets[1]) + 23] = '\x7F';
  file.customers[0].pages[2] = page({kBox, kDear});
  const Inspected result(damaged, writeCapture(file).bytes);
  EXPECT_EQ(result.damages.size(), 1u);
  EXPECT_FALSE(result.summary.isComplete());
  EXPECT_EQ(result.changes.back(), "2/2 1 added TEXT");
}

}  // namespace
}  // namespace rvf::test
