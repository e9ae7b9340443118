#include "compare/PlaceTree.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <random>

#include "compare/Tolerances.h"

namespace rvf {
namespace {

constexpr i32 kLargest = 2147483647;

TEST(PlaceTree, FindsWhatAPlainSearchFinds) {
  int found = 0;
  for (unsigned seed = 0; seed < 60; ++seed) {
    std::mt19937 random(seed);
    const std::size_t count = 1 + random() % 300, width = 1 + random() % 4;
    const i32 range = std::array{3, 40, kLargest}[seed % 3];
    std::vector<i32> tolerances(width);
    for (i32& tolerance : tolerances) tolerance = std::array{0, 1, 7, kLargest}[random() % 4];
    const auto value = [&] { return static_cast<i32>(random()) % range; };
    std::vector<std::vector<i32>> places(count, std::vector<i32>(width));
    std::vector<PlaceTree::Item> items;
    for (std::size_t i = 0; i < count; ++i) {
      std::ranges::generate(places[i], value);
      items.push_back({places[i].data(), static_cast<i32>(i)});
    }
    std::pmr::vector<bool> isTaken(count);
    std::ranges::shuffle(items, random);
    PlaceTree tree(items, tolerances, isTaken);
    for (std::size_t search = 0; search < 2 * count; ++search) {
      std::vector<i32> sought(width);
      std::ranges::generate(sought, value);
      if (search % 2 == 0) sought = places[search / 2];
      const i32 limit = search % 3 == 0 ? static_cast<i32>(random() % count) : PlaceTree::kNone;
      const auto matches = [&](i32 index) { return (static_cast<unsigned>(index) + seed) % 5 > 0; };
      i32 expected = limit;
      for (i32 i = static_cast<i32>(count) - 1; i >= 0; --i) {
        bool isNear = i < limit && !isTaken[static_cast<std::size_t>(i)] && matches(i);
        for (std::size_t v = 0; v < width; ++v) {
          isNear =
              isNear && !exceeds(places[static_cast<std::size_t>(i)][v], sought[v], tolerances[v]);
        }
        if (isNear) expected = i;
      }
      ASSERT_EQ(tree.firstNear(sought.data(), limit, matches), expected)
          << "seed " << seed << ", search " << search;
      if (expected == limit) continue;
      ++found;
      if (random() % 4 > 0) isTaken[static_cast<std::size_t>(expected)] = true;
    }
  }
  EXPECT_GT(found, 2000);
}

}  // namespace
}  // namespace rvf
