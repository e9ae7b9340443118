#include "inspect/model/SequencePairing.h"

#include <algorithm>

#include "base/Sizes.h"

namespace rvf::inspect {

namespace {

/// A stretch of both sequences that is still to be paired.
struct Stretch {
  i32 firstBegin, firstEnd;
  i32 secondBegin, secondEnd;

  [[nodiscard]] i32 firstSize() const { return firstEnd - firstBegin; }
  [[nodiscard]] i32 secondSize() const { return secondEnd - secondBegin; }
  [[nodiscard]] bool isEmpty() const { return firstSize() == 0 || secondSize() == 0; }
};

/// A key and its index.
using Entry = std::pair<u64, i32>;

std::vector<Entry> sortedEntries(std::span<const u64> keys, i32 begin, i32 end) {
  std::vector<Entry> entries;
  entries.reserve(asSize(i64{end} - begin));
  for (i32 i = begin; i < end; ++i) {
    entries.emplace_back(keys[asSize(i)], i);
  }
  std::ranges::sort(entries);
  return entries;
}

/// The indexes of equal keys in two sorted lists, in rising order.
std::vector<IndexPair> pairsOfEqualKeys(const std::vector<Entry>& a, const std::vector<Entry>& b) {
  std::vector<IndexPair> pairs;
  for (std::size_t i = 0, j = 0; i < a.size() && j < b.size();) {
    if (a[i].first == b[j].first) {
      pairs.emplace_back(a[i++].second, b[j++].second);
    } else if (a[i].first < b[j].first) {
      i += 1;
    } else {
      j += 1;
    }
  }
  std::ranges::sort(pairs);
  return pairs;
}

class SequencePairing {
 public:
  SequencePairing(std::span<const u64> first, std::span<const u64> second)
      : first_(first), second_(second) {}

  std::vector<IndexPair> run() {
    pairs_.reserve(std::min(first_.size(), second_.size()));
    pair({0, static_cast<i32>(first_.size()), 0, static_cast<i32>(second_.size())}, 0);
    return std::move(pairs_);
  }

 private:
  // Unique keys are looked for again between those that were found, but only to this depth.
  static constexpr int kMostLevels = 8;
  static constexpr i32 kMostEdits = 256;

  [[nodiscard]] u64 first(i32 i) const { return first_[static_cast<std::size_t>(i)]; }
  [[nodiscard]] u64 second(i32 j) const { return second_[static_cast<std::size_t>(j)]; }

  // Appends the pairs of a stretch in ascending order.
  void pair(Stretch s, int level) {
    const i32 sameAtEnd = trim(s);
    const bool hasOneEach = s.firstSize() == 1 && s.secondSize() == 1;  // and they differ
    if (!s.isEmpty() && !hasOneEach && !pairByEdits(s) && level < kMostLevels) {
      pairBetweenAnchors(s, level);
    }
    for (i32 i = 0; i < sameAtEnd; ++i) {
      pairs_.emplace_back(s.firstEnd + i, s.secondEnd + i);
    }
  }

  void pairBetweenAnchors(const Stretch& s, int level) {
    const std::vector<IndexPair> anchors = risingPairs(uniquePairs(s));
    if (anchors.empty()) {
      return;
    }
    Stretch gap{s.firstBegin, 0, s.secondBegin, 0};
    for (const auto& [i, j] : anchors) {
      gap.firstEnd = i;
      gap.secondEnd = j;
      pair(gap, level + 1);
      pairs_.emplace_back(i, j);
      gap.firstBegin = i + 1;
      gap.secondBegin = j + 1;
    }
    gap.firstEnd = s.firstEnd;
    gap.secondEnd = s.secondEnd;
    pair(gap, level + 1);
  }

  // Pairs what is the same at the front, and cuts off and counts what is the same at the end.
  i32 trim(Stretch& s) {
    while (!s.isEmpty() && first(s.firstBegin) == second(s.secondBegin)) {
      pairs_.emplace_back(s.firstBegin++, s.secondBegin++);
    }
    i32 sameAtEnd = 0;
    while (!s.isEmpty() && first(s.firstEnd - 1) == second(s.secondEnd - 1)) {
      s.firstEnd -= 1;
      s.secondEnd -= 1;
      sameAtEnd += 1;
    }
    return sameAtEnd;
  }

  // Finds the shortest list of edits by the furthest point that each number of edits reaches on
  // each diagonal. Returns false if there are too many edits.
  bool pairByEdits(const Stretch& s) {
    const i32 limit = std::min(kMostEdits, s.firstSize() + s.secondSize());
    std::vector<std::vector<i32>> reached;  // by number of edits: first index, by diagonal
    for (i32 edits = 0; edits <= limit; ++edits) {
      reached.emplace_back(static_cast<std::size_t>(2 * edits + 1));
      for (i32 diagonal = -edits; diagonal <= edits; diagonal += 2) {
        i32 x = furthestStart(reached, edits, diagonal);
        i32 y = x - diagonal;
        while (x < s.firstSize() && y >= 0 && y < s.secondSize() &&
               first(s.firstBegin + x) == second(s.secondBegin + y)) {
          x += 1;
          y += 1;
        }
        reached.back()[asSize(diagonal + edits)] = x;
        if (x >= s.firstSize() && y >= s.secondSize()) {
          trace(s, reached, diagonal);
          return true;
        }
      }
    }
    return false;
  }

  static i32 at(const std::vector<std::vector<i32>>& reached, i32 edits, i32 diagonal) {
    return reached[static_cast<std::size_t>(edits)][asSize(diagonal + edits)];
  }

  // Whether the best way to a diagonal comes from the one above, by skipping a key of the second
  // sequence.
  static bool comesFromAbove(const std::vector<std::vector<i32>>& reached, i32 edits,
                             i32 diagonal) {
    return diagonal == -edits || (diagonal != edits && at(reached, edits - 1, diagonal - 1) <
                                                           at(reached, edits - 1, diagonal + 1));
  }

  static i32 furthestStart(const std::vector<std::vector<i32>>& reached, i32 edits, i32 diagonal) {
    if (edits == 0) {
      return 0;
    }
    return comesFromAbove(reached, edits, diagonal) ? at(reached, edits - 1, diagonal + 1)
                                                    : at(reached, edits - 1, diagonal - 1) + 1;
  }

  void trace(const Stretch& s, const std::vector<std::vector<i32>>& reached, i32 diagonal) {
    const std::size_t before = pairs_.size();
    for (auto edits = static_cast<i32>(reached.size()) - 1; edits >= 0; --edits) {
      const i32 start = furthestStart(reached, edits, diagonal);
      for (i32 x = at(reached, edits, diagonal); x > start; --x) {
        const i32 y = x - diagonal;
        pairs_.emplace_back(s.firstBegin + x - 1, s.secondBegin + y - 1);
      }
      if (edits > 0) {
        diagonal += comesFromAbove(reached, edits, diagonal) ? 1 : -1;
      }
    }
    std::reverse(pairs_.begin() + static_cast<std::ptrdiff_t>(before), pairs_.end());
  }

  [[nodiscard]] std::vector<IndexPair> uniquePairs(const Stretch& s) const {
    const auto once = [](const std::vector<Entry>& entries) {
      std::vector<Entry> result;
      for (std::size_t i = 0; i < entries.size(); ++i) {
        const bool sameBefore = i > 0 && entries[i - 1].first == entries[i].first;
        const bool sameBehind = i + 1 < entries.size() && entries[i + 1].first == entries[i].first;
        if (!sameBefore && !sameBehind) {
          result.push_back(entries[i]);
        }
      }
      return result;
    };
    return pairsOfEqualKeys(once(sortedEntries(first_, s.firstBegin, s.firstEnd)),
                            once(sortedEntries(second_, s.secondBegin, s.secondEnd)));
  }

  // The longest subsequence of pairs whose second index also increases.
  static std::vector<IndexPair> risingPairs(const std::vector<IndexPair>& pairs) {
    std::vector<std::size_t> ends;  // by length: the pair with the lowest second index
    std::vector<std::size_t> before(pairs.size());
    constexpr auto kNone = static_cast<std::size_t>(-1);
    for (std::size_t p = 0; p < pairs.size(); ++p) {
      const auto place = std::ranges::lower_bound(
          ends, pairs[p].second, {}, [&pairs](std::size_t e) { return pairs[e].second; });
      before[p] = place == ends.begin() ? kNone : *(place - 1);
      if (place == ends.end()) {
        ends.push_back(p);
      } else {
        *place = p;
      }
    }
    std::vector<IndexPair> rising;
    for (std::size_t p = ends.empty() ? kNone : ends.back(); p != kNone; p = before[p]) {
      rising.push_back(pairs[p]);
    }
    std::ranges::reverse(rising);
    return rising;
  }

  std::span<const u64> first_;
  std::span<const u64> second_;
  std::vector<IndexPair> pairs_;
};

}  // namespace

std::vector<IndexPair> pairInSequence(std::span<const u64> first, std::span<const u64> second) {
  return SequencePairing(first, second).run();
}

std::vector<IndexPair> pairAnywhere(std::span<const u64> first, std::span<const u64> second) {
  return pairsOfEqualKeys(sortedEntries(first, 0, static_cast<i32>(first.size())),
                          sortedEntries(second, 0, static_cast<i32>(second.size())));
}

i64 countCommon(std::span<const u64> first, std::span<const u64> second) {
  i64 common = 0;
  for (std::size_t i = 0, j = 0; i < first.size() && j < second.size();) {
    const bool isCommon = first[i] == second[j];
    const bool isFirstAhead = first[i] > second[j];
    common += isCommon ? 1 : 0;
    i += isFirstAhead ? 0 : 1;
    j += isCommon || isFirstAhead ? 1 : 0;
  }
  return common;
}

}  // namespace rvf::inspect
