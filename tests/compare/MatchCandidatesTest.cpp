#include "compare/MatchCandidates.h"

#include <gtest/gtest.h>

#include <random>

#include "compare/PartComparison.h"
#include "compare/Tolerances.h"
#include "pagemodel/DrawListReader.h"
#include "storage/MemFile.h"
#include "support/Capture.h"

namespace rvf {
namespace {

/// Makes parts of every kind from few values, so that many are alike, near or nearly alike.
class PartMaker {
 public:
  explicit PartMaker(unsigned seed) : random_(seed) {}

  int below(int end) { return static_cast<int>(random_() % static_cast<unsigned>(end)); }
  /// Around the borders of small cells, negative ones too.
  int place() { return below(12) - 4; }

  test::Part make() {
    const int width = below(2) * 3;
    const unsigned colour = static_cast<unsigned>(below(2));
    switch (below(15)) {
      case 0:
        return test::text({.text = below(2) != 0 ? u"ab" : u"cd",
                           .runs = {{.x = place(), .y = place()}, {.x = place(), .y = 1}},
                           .textFlags = below(2)});
      case 1:
        return test::text({.runs = {}, .colour = colour});
      case 2:
        return test::line({.points = {{place(), place()}, {3, place()}}, .width = width});
      case 3:
        return test::rect({.area = {place(), 2, 3, 4}, .noFill = below(2), .fillColour = colour});
      case 4: {
        std::vector<test::Point> points(static_cast<std::size_t>(2 + below(3)), {1, place()});
        return test::poly({.points = points, .noOutline = below(2), .lineColour = colour});
      }
      case 5:
        return test::image({.area = {place(), 0, 1, 1}, .bytes = below(2) != 0 ? "x" : "y"});
      case 6:
        return test::justOneLine({.x1 = place(), .y2 = place(), .width = width});
      case 7:
        return test::lineSet({.start = place(), .offsets = {1, place()}, .width = width});
      case 8:
        return test::staticRef({.x = place(), .y = place(), .refC = below(2)});
      case 9:
        return test::textProp({.propKind = 1 + below(3), .propValue = 0, .texts = {u"a", u""}});
      case 10:
        return test::signatureField({.fieldId = below(2)});
      case 11:
        return test::clickArea();
      case 12:
        return test::hyperlinkArea({.linkValue = below(2)});
      case 13:
        return below(2) != 0 ? test::startEnd() : test::empty(200);
      default:
        return test::empty(below(2) * 14);  // UNKNOWN and 1LINE
    }
  }

 private:
  std::mt19937 random_;
};

void readParts(const std::vector<test::Part>& parts, DrawList& list) {
  test::ByteWriter bytes(true);
  writeList(bytes, {.parts = parts});
  eMemFile file(reinterpret_cast<std::byte*>(bytes.bytes.data()), static_cast<i32>(bytes.size()),
                0);
  eArchive archive(file, eArchive::Mode::kLoad, eArchive::kFileBufferSize);
  readDrawList(list, archive);
  ASSERT_FALSE(archive.failed());
}

i32 plainSearch(const DrawPart& part, const DrawList& list, const std::pmr::vector<bool>& isTaken) {
  for (i32 j = 0; j < list.count; ++j) {
    if (!isTaken[static_cast<std::size_t>(j)] && classifyParts(part, list[j]) == 0) {
      return j;
    }
  }
  return MatchCandidates::kNotFound;
}

TEST(MatchCandidates, FindWhatASearchThroughTheListFinds) {
  for (unsigned seed = 0; seed < 12000; ++seed) {
    PartMaker maker(seed);
    positionTolerance = std::vector{0, 1, 3, 100, -1, 2147483647}[seed % 6];
    lineTolerance = std::vector{0, 3, -1}[seed % 3];
    std::vector<test::Part> items;
    std::vector<test::Part> wanted;
    // Absorbing parts end most searches, so most lists do without.
    const bool withAbsorbing = seed % 4 == 0;
    const int count = 1 + maker.below(60);
    while (static_cast<int>(wanted.size()) < count) {
      const test::Part part = maker.make();
      const bool isAbsorbing = part.type == 0 || part.type == 14 || part.type == 40 ||
                               part.type == 6 || part.type == 200;
      if (withAbsorbing || !isAbsorbing) {
        (items.size() <= wanted.size() ? items : wanted).push_back(part);
      }
    }
    DrawList list;
    DrawList searched;
    readParts(items, list);
    readParts(wanted, searched);
    std::pmr::vector<bool> isTaken(static_cast<std::size_t>(list.count), false);
    MatchCandidates candidates(list, isTaken);
    for (const DrawPart& part : searched.parts()) {
      const i32 expected = plainSearch(part, list, isTaken);
      ASSERT_EQ(candidates.firstFree(part), expected) << "seed " << seed;
      if (expected != MatchCandidates::kNotFound) {
        isTaken[static_cast<std::size_t>(expected)] = true;
      }
      // Items are also taken by their place, without a search.
      isTaken[static_cast<std::size_t>(maker.below(list.count))] = true;
    }
  }
  positionTolerance = 0;
  lineTolerance = 0;
}

}  // namespace
}  // namespace rvf
