#include "inspect/model/PartPairing.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <unordered_map>

#include "base/Sizes.h"
#include "inspect/model/Digest.h"
#include "inspect/model/PartDigest.h"
#include "inspect/model/PartSimilarity.h"
#include "inspect/model/SequencePairing.h"

namespace rvf::inspect {

namespace {

/// A part that has no partner yet.
struct Rest {
  i32 index = 0;    // in its list
  i32 stretch = 0;  // how many parts before it are equal and in sequence
  u64 shape = 0;    // the digest of everything except the position
};

/// If more parts than this on a page have no equal one, the n-th of a type in a stretch is paired
/// with the n-th, without looking for the most similar.
constexpr std::size_t kMostSketches = 20000;

/// How many parts at a place or in a stretch one part is compared with.
constexpr std::size_t kMostCandidates = 8;

u64 keyOf(PartType type, i64 a, i64 b, u64 use) {
  Digest digest;
  digest.add(use);
  digest.add(partIndex(type));
  digest.add(static_cast<u64>(a));
  digest.add(static_cast<u64>(b));
  return digest.value();
}

class PartPairing {
 public:
  PartPairing(const DigestedList& first, const DigestedList& second)
      : first_(first), second_(second) {}

  std::vector<PartPair> run() {
    pairEqual();
    pairTheOnlyOne();
    pairMoved();
    pairSimilar();
    for (const Rest& rest : firstRest_) {
      pairs_.push_back({rest.index, kNone, ChangeKind::kRemoved});
    }
    for (const Rest& rest : secondRest_) {
      pairs_.push_back({kNone, rest.index, ChangeKind::kAdded});
    }
    sortByPlace();
    return std::move(pairs_);
  }

 private:
  [[nodiscard]] const DrawPart& first(const Rest& rest) const { return first_.list[rest.index]; }
  [[nodiscard]] const DrawPart& second(const Rest& rest) const { return second_.list[rest.index]; }

  // A long common subsequence. Among equally long ones, one that moves no part with the same place
  // in both lists: of A B C and C B A, B stays.
  [[nodiscard]] std::vector<IndexPair> pairsInSequence() const {
    std::vector<IndexPair> kept = pairInSequence(first_.digests, second_.digests);
    const auto end = [](const DigestedList& list) { return static_cast<i32>(list.digests.size()); };
    for (std::size_t p = 0; p < kept.size(); ++p) {
      const IndexPair before = p == 0 ? IndexPair(-1, -1) : kept[p - 1];
      const IndexPair behind =
          p + 1 == kept.size() ? IndexPair(end(first_), end(second_)) : kept[p + 1];
      const i32 offset = before.second - before.first;
      if (kept[p].second - kept[p].first == offset || behind.second - behind.first != offset) {
        continue;
      }
      for (i32 i = before.first + 1; i < behind.first; ++i) {
        if (first_.digests[asSize(i)] == second_.digests[asSize(i + offset)]) {
          kept[p] = {i, i + offset};
          break;
        }
      }
    }
    return kept;
  }

  void pairEqual() {
    const std::vector<IndexPair> equal = pairsInSequence();
    const auto count = [](std::span<const u64> keys) { return static_cast<i32>(keys.size()); };
    const auto fill = [&equal](std::vector<Rest>& rest, i32 size, auto indexOf) {
      i32 next = 0;
      for (std::size_t p = 0; p <= equal.size(); ++p) {
        const i32 end = p < equal.size() ? indexOf(equal[p]) : size;
        for (; next < end; ++next) {
          rest.push_back({next, static_cast<i32>(p), 0});
        }
        next = end + 1;
      }
    };
    fill(firstRest_, count(first_.digests), [](const IndexPair& p) { return p.first; });
    fill(secondRest_, count(second_.digests), [](const IndexPair& p) { return p.second; });
    const auto digest = [](const DigestedList& list, const std::vector<Rest>& rest) {
      std::vector<u64> keys;
      keys.reserve(rest.size());
      for (const Rest& r : rest) {
        keys.push_back(list.digests[static_cast<std::size_t>(r.index)]);
      }
      return keys;
    };
    take(pairAnywhere(digest(first_, firstRest_), digest(second_, secondRest_)),
         ChangeKind::kOrder);
  }

  // Nearly always, one part of a page changed and stayed where it was.
  void pairTheOnlyOne() {
    if (firstRest_.size() != 1 || secondRest_.size() != 1) {
      return;
    }
    const DrawPart& a = first(firstRest_.front());
    const DrawPart& b = second(secondRest_.front());
    const std::optional<Place> place = placeOf(a);
    if (a.type == b.type && place && place == placeOf(b)) {
      take({{0, 0}}, ChangeKind::kChanged);
    }
  }

  void pairMoved() {
    if (firstRest_.empty() || secondRest_.empty()) {
      return;
    }
    for (Rest& rest : firstRest_) {
      rest.shape = shapeDigestOf(first(rest));
    }
    for (Rest& rest : secondRest_) {
      rest.shape = shapeDigestOf(second(rest));
    }
    pairRestyled();
    take(pairInSequence(shapes(firstRest_), shapes(secondRest_)), ChangeKind::kMoved);
    take(pairAnywhere(shapes(firstRest_), shapes(secondRest_)), ChangeKind::kMoved);
  }

  static std::vector<u64> shapes(const std::vector<Rest>& rests) {
    std::vector<u64> keys;
    keys.reserve(rests.size());
    for (const Rest& rest : rests) {
      keys.push_back(rest.shape);
    }
    return keys;
  }

  // If one side has more parts of a shape than the other, not all of them moved: those that still
  // have the same text at the same place stayed there and changed otherwise.
  void pairRestyled() {
    const std::vector<u64> uneven = unevenShapes();
    if (uneven.empty()) {
      return;
    }
    const auto keys = [&uneven](const DrawList& list, const std::vector<Rest>& rests, u64 side) {
      std::vector<u64> result;
      result.reserve(rests.size());
      for (const Rest& rest : rests) {
        const bool isUneven = std::ranges::binary_search(uneven, rest.shape);
        result.push_back(isUneven ? placeDigestOf(list[rest.index]) : side);
      }
      return result;
    };
    take(pairAnywhere(keys(first_.list, firstRest_, 1), keys(second_.list, secondRest_, 2)),
         ChangeKind::kChanged);
  }

  // Those that occur in different numbers on the two sides, in ascending order.
  [[nodiscard]] std::vector<u64> unevenShapes() const {
    std::vector<u64> a = shapes(firstRest_), b = shapes(secondRest_), uneven;
    std::ranges::sort(a);
    std::ranges::sort(b);
    std::ranges::set_symmetric_difference(a, b, std::back_inserter(uneven));
    return uneven;
  }

  void pairSimilar() {
    if (firstRest_.empty() || secondRest_.empty()) {
      return;
    }
    if (firstRest_.size() + secondRest_.size() > kMostSketches) {
      pairByOrder();
      return;
    }
    std::vector<PartSketch> a = sketches(first_.list, firstRest_);
    std::vector<PartSketch> b = sketches(second_.list, secondRest_);
    struct Candidate {
      i32 score;
      i32 first, second;
    };
    std::vector<Candidate> candidates;
    forEachCandidate(a, b, [&](i32 i, i32 j, bool isSameStretch) {
      const i32 score =
          similarity(a[static_cast<std::size_t>(i)], b[static_cast<std::size_t>(j)], isSameStretch);
      if (score > 0) {
        candidates.push_back({score, i, j});
      }
    });
    std::ranges::sort(candidates, [](const Candidate& x, const Candidate& y) {
      return std::tuple(-x.score, x.first, x.second) < std::tuple(-y.score, y.first, y.second);
    });
    std::vector<bool> isTakenA(a.size()), isTakenB(b.size());
    std::vector<IndexPair> taken;
    for (const Candidate& candidate : candidates) {
      const auto i = static_cast<std::size_t>(candidate.first);
      const auto j = static_cast<std::size_t>(candidate.second);
      if (!isTakenA[i] && !isTakenB[j]) {
        isTakenA[i] = isTakenB[j] = true;
        taken.emplace_back(candidate.first, candidate.second);
      }
    }
    std::ranges::sort(taken);
    take(taken, ChangeKind::kChanged);
  }

  // Pairs of one type in the same stretch, or in neighbouring cells of a grid over the page.
  template <class Function>
  void forEachCandidate(const std::vector<PartSketch>& a, const std::vector<PartSketch>& b,
                        Function consider) const {
    constexpr u64 kByStretch = 1, kByPlace = 2;
    std::unordered_map<u64, std::vector<i32>> index;
    for (std::size_t j = 0; j < b.size(); ++j) {
      const PartType type = second(secondRest_[j]).type;
      index[keyOf(type, secondRest_[j].stretch, 0, kByStretch)].push_back(static_cast<i32>(j));
      if (b[j].place) {
        index[keyOf(type, cell(b[j].place->x), cell(b[j].place->y), kByPlace)].push_back(
            static_cast<i32>(j));
      }
    }
    std::unordered_map<u64, i32> seenInStretch;
    for (std::size_t i = 0; i < a.size(); ++i) {
      const PartType type = first(firstRest_[i]).type;
      const u64 stretch = keyOf(type, firstRest_[i].stretch, 0, kByStretch);
      // The n-th of a stretch is compared with those around the n-th.
      const i32 nth = seenInStretch[stretch]++;
      considerSome(index, stretch, nth, [&](i32 j) {
        constexpr bool kIsSameStretch = true;
        consider(static_cast<i32>(i), j, kIsSameStretch);
      });
      if (!a[i].place) {
        continue;
      }
      for (i64 dx = -1; dx <= 1; ++dx) {
        for (i64 dy = -1; dy <= 1; ++dy) {
          const u64 key = keyOf(type, cell(a[i].place->x) + dx, cell(a[i].place->y) + dy, kByPlace);
          considerNearest(index, key, a[i], b, [&](i32 j) {
            const bool isSameStretch =
                secondRest_[static_cast<std::size_t>(j)].stretch == firstRest_[i].stretch;
            consider(static_cast<i32>(i), j, isSameStretch);
          });
        }
      }
    }
  }

  static i64 cell(i64 position) { return position / kNearDistance; }

  template <class Function>
  static void considerSome(const std::unordered_map<u64, std::vector<i32>>& index, u64 key, i32 nth,
                           Function consider) {
    const auto found = index.find(key);
    if (found == index.end()) {
      return;
    }
    const auto size = static_cast<i32>(found->second.size());
    const i32 begin = std::max(0, std::min(nth, size) - static_cast<i32>(kMostCandidates) / 2);
    const i32 end = std::min(size, begin + static_cast<i32>(kMostCandidates));
    for (i32 n = begin; n < end; ++n) {
      consider(found->second[static_cast<std::size_t>(n)]);
    }
  }

  // The same point first: a cell that holds many parts must not hide the one that was changed in
  // place.
  template <class Function>
  static void considerNearest(const std::unordered_map<u64, std::vector<i32>>& index, u64 key,
                              const PartSketch& part, const std::vector<PartSketch>& others,
                              Function consider) {
    const auto found = index.find(key);
    if (found == index.end()) {
      return;
    }
    std::size_t considered = 0;
    constexpr std::size_t kMostLookedAt = 64;
    for (std::size_t n = 0; n < std::min(found->second.size(), kMostLookedAt); ++n) {
      const i32 j = found->second[n];
      const bool isSamePoint = others[static_cast<std::size_t>(j)].place == part.place;
      if (isSamePoint || considered < kMostCandidates) {
        consider(j);
        considered += 1;
      }
    }
  }

  void pairByOrder() {
    const auto keys = [](const DrawList& list, const std::vector<Rest>& rest) {
      std::vector<u64> result;
      result.reserve(rest.size());
      for (const Rest& r : rest) {
        result.push_back(keyOf(list[r.index].type, r.stretch, 0, 0));
      }
      return result;
    };
    take(pairAnywhere(keys(first_.list, firstRest_), keys(second_.list, secondRest_)),
         ChangeKind::kChanged);
  }

  static std::vector<PartSketch> sketches(const DrawList& list, const std::vector<Rest>& rest) {
    std::vector<PartSketch> result;
    result.reserve(rest.size());
    for (const Rest& r : rest) {
      result.push_back(sketchOf(list[r.index]));
    }
    return result;
  }

  // Moves pairs of the rests, in ascending order of the first, to the result.
  void take(const std::vector<IndexPair>& found, ChangeKind kind) {
    std::vector<bool> isTakenA(firstRest_.size()), isTakenB(secondRest_.size());
    for (const auto& [i, j] : found) {
      const auto a = static_cast<std::size_t>(i);
      const auto b = static_cast<std::size_t>(j);
      pairs_.push_back({firstRest_[a].index, secondRest_[b].index, kind});
      isTakenA[a] = isTakenB[b] = true;
    }
    const auto drop = [](std::vector<Rest>& rest, const std::vector<bool>& isTaken) {
      std::size_t kept = 0;
      for (std::size_t n = 0; n < rest.size(); ++n) {
        if (!isTaken[n]) {
          rest[kept++] = rest[n];
        }
      }
      rest.resize(kept);
    };
    drop(firstRest_, isTakenA);
    drop(secondRest_, isTakenB);
  }

  void sortByPlace() {
    std::ranges::sort(pairs_, [](const PartPair& a, const PartPair& b) {
      const auto key = [](const PartPair& pair) {
        const bool isAdded = pair.first == kNone;
        return std::tuple(isAdded ? pair.second : pair.first, isAdded);
      };
      return key(a) < key(b);
    });
  }

  const DigestedList& first_;
  const DigestedList& second_;
  std::vector<Rest> firstRest_;
  std::vector<Rest> secondRest_;
  std::vector<PartPair> pairs_;
};

}  // namespace

std::vector<PartPair> pairParts(const DigestedList& first, const DigestedList& second) {
  return PartPairing(first, second).run();
}

}  // namespace rvf::inspect
