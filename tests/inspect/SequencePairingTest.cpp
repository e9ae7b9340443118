#include "inspect/model/SequencePairing.h"

#include <gtest/gtest.h>

#include <random>

namespace rvf::inspect {
namespace {

using Keys = std::vector<u64>;

std::size_t longestCommon(const Keys& a, const Keys& b) {
  std::vector<std::vector<std::size_t>> best(a.size() + 1, std::vector<std::size_t>(b.size() + 1));
  for (std::size_t i = 1; i <= a.size(); ++i) {
    for (std::size_t j = 1; j <= b.size(); ++j) {
      best[i][j] =
          a[i - 1] == b[j - 1] ? best[i - 1][j - 1] + 1 : std::max(best[i - 1][j], best[i][j - 1]);
    }
  }
  return best[a.size()][b.size()];
}

void expectRisingPairsOfEqualKeys(const Keys& a, const Keys& b,
                                  const std::vector<IndexPair>& pairs) {
  IndexPair last{-1, -1};
  for (const auto& [i, j] : pairs) {
    ASSERT_LT(last.first, i);
    ASSERT_LT(last.second, j);
    ASSERT_EQ(a.at(static_cast<std::size_t>(i)), b.at(static_cast<std::size_t>(j)));
    last = {i, j};
  }
}

TEST(SequencePairing, IsTheLongestWhereLittleDiffers) {
  std::minstd_rand random(7);
  for (int round = 0; round < 300; ++round) {
    Keys a(random() % 40), b(random() % 40);
    for (Keys* keys : {&a, &b}) {
      for (u64& key : *keys) key = random() % (2 + static_cast<unsigned>(round) % 20);
    }
    const std::vector<IndexPair> pairs = pairInSequence(a, b);
    expectRisingPairsOfEqualKeys(a, b, pairs);
    EXPECT_EQ(pairs.size(), longestCommon(a, b)) << "round " << round;
  }
}

// Far more edits than are tried one by one: keys that occur once lead the way.
TEST(SequencePairing, HoldsOnToUniqueKeysWhereMuchDiffers) {
  Keys a, b;
  std::size_t common = 0;
  for (u64 n = 0; n < 1500; ++n) {
    a.insert(a.end(), {1000 + n, 1, 2});
    b.insert(b.end(), {n % 3 == 0 ? 1000 + n : 5000 + n, 1, 2});
    common += n % 3 == 0 ? 3 : 2;
  }
  b.insert(b.begin(), {7, 8, 9});
  const std::vector<IndexPair> pairs = pairInSequence(a, b);
  expectRisingPairsOfEqualKeys(a, b, pairs);
  EXPECT_EQ(pairs.size(), common);
  for (const auto& [i, j] : pairs) EXPECT_EQ(j - i, 3);
}

TEST(SequencePairing, AnywherePairsTheNthWithTheNth) {
  const std::vector<IndexPair> pairs = pairAnywhere(Keys{5, 3, 5, 9, 5}, Keys{3, 5, 7, 5});
  EXPECT_EQ(pairs, (std::vector<IndexPair>{{0, 1}, {1, 0}, {2, 3}}));
  EXPECT_EQ(countCommon(Keys{1, 2, 2, 4}, Keys{2, 2, 2, 3, 4, 6}), 3);
}

}  // namespace
}  // namespace rvf::inspect
