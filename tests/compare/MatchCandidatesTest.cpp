#include "compare/MatchCandidates.h"

#include <random>

#include "compare/CompareFixture.h"
#include "compare/PartComparison.h"

namespace rvf::test {
namespace {

constexpr std::size_t kAbsorbing = 4;  // of the records, at their end

std::vector<std::string> variedRecords() {
  std::vector<Part> parts = {text({.runs = {}}), image(), textProp({.texts = {}}),
                             poly({.points = {{10, 20}, {30, 40}}}),
                             staticRef({.layerByteA = 128})};
  const std::vector<Part> all = allParts();
  for (const std::size_t i : {1U, 2U, 3U, 4U, 7U, 8U, 9U, 30U, 31U, 44U, 0U, 6U, 14U, 40U})
    parts.push_back(all[i]);
  std::vector<std::string> records;
  for (const Part& part : parts) records.push_back(recordOf(part));
  return records;
}

/// Makes parts that are alike but for a bit here and there, with places on both sides of zero.
void makeInto(DrawPart& part, const std::string& record, std::mt19937& random) {
  constexpr std::size_t kFirstField = 5;
  std::string changed = record;
  char& byte = changed[kFirstField + random() % (record.size() - kFirstField)];
  if (random() % 3 > 0) byte = static_cast<char>(byte ^ 1 << random() % 4);
  EXPECT_TRUE(readRecord(part, changed) || readRecord(part, record));
  shiftPart(part, -11, -21);
}

i32 plainSearch(const DrawPart& part, const DrawList& list, const std::pmr::vector<bool>& isTaken,
                const Tolerances& tolerances) {
  for (i32 j = 0; j < list.count; ++j) {
    if (!isTaken[static_cast<std::size_t>(j)] && classifyParts(part, list[j], tolerances) == 0)
      return j;
  }
  return MatchCandidates::kNotFound;
}

TEST(MatchCandidates, FindWhatASearchThroughTheListFinds) {
  const std::vector<std::string> records = variedRecords();
  int found = 0;
  for (unsigned seed = 0; seed < 6000; ++seed) {
    std::mt19937 random(seed);
    const Tolerances tolerances{std::vector{0, 1, 3, 100, -1, 2147483647}[seed % 6],
                                std::vector{0, 3, -1}[seed % 3]};
    // Absorbing parts end most searches, so most lists do without.
    const std::size_t kinds = records.size() - (seed % 4 == 0 ? 0 : kAbsorbing);
    DrawList list, searched;
    for (auto count = 1 + random() % 60; count > 0; --count) {
      makeInto(appendSlot(list), records[random() % kinds], random);
      makeInto(appendSlot(searched), records[random() % kinds], random);
    }
    std::pmr::vector<bool> isTaken(static_cast<std::size_t>(list.count), false);
    ChildListResults childLists(tolerances);
    MatchCandidates candidates(list, isTaken, childLists);
    for (const DrawPart& part : searched.parts()) {
      const i32 expected = plainSearch(part, list, isTaken, tolerances);
      ASSERT_EQ(candidates.firstFree(part), expected) << "seed " << seed;
      if (expected != MatchCandidates::kNotFound) {
        isTaken[static_cast<std::size_t>(expected)] = true;
        found += 1;
      }
      // Items are also taken by their place, without a search.
      isTaken[random() % isTaken.size()] = true;
    }
  }
  EXPECT_GT(found, 20000);
}

}  // namespace
}  // namespace rvf::test
