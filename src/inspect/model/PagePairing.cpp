#include "inspect/model/PagePairing.h"

#include <algorithm>
#include <set>
#include <tuple>

#include "inspect/model/Digest.h"
#include "inspect/model/SequencePairing.h"

namespace rvf::inspect {

namespace {

/// What a page is recognised by: its parts and their positions, each sorted.
struct PageSketch {
  std::vector<u64> parts;
  std::vector<u64> places;
};

PageSketch sketchOf(const CompareContext& page, const PageDigests& digests) {
  PageSketch sketch;
  const auto add = [&sketch](const DrawList& list, const std::vector<u64>& parts) {
    sketch.parts.insert(sketch.parts.end(), parts.begin(), parts.end());
    for (const DrawPart& part : list.parts()) {
      Digest place;
      place.add(partIndex(part.type));
      const Place at = placeOf(part).value_or(Place());
      place.add(static_cast<u64>(at.x));
      place.add(static_cast<u64>(at.y));
      sketch.places.push_back(place.value());
    }
  };
  add(page.pageList, digests.pageList);
  for (i32 i = 0; i < page.staticCount; ++i) {
    add(page.staticList(i), digests.placedLists[static_cast<std::size_t>(i)]);
  }
  std::ranges::sort(sketch.parts);
  std::ranges::sort(sketch.places);
  return sketch;
}

/// From 0 to 2000: equal parts count twice, parts at the same place once.
i64 similarityOf(const PageSketch& a, const PageSketch& b) {
  constexpr i64 kAll = 2000;
  const auto larger = static_cast<i64>(std::max(a.parts.size(), b.parts.size()));
  if (larger == 0) {
    return kAll;
  }
  return (countCommon(a.parts, b.parts) + countCommon(a.places, b.places)) * kAll / (2 * larger);
}

class PagePairing {
 public:
  PagePairing(CustomerPages& first, CustomerPages& second, i32 start)
      : first_(first), second_(second), start_(start) {}

  std::vector<PagePair> run() {
    std::vector<IndexPair> equal =
        pairInSequence(digests(first_, second_), digests(second_, first_));
    for (auto& [i, j] : equal) {
      i += start_;
      j += start_;
    }
    equal.emplace_back(size(first_), size(second_));
    i32 i = start_, j = start_;
    for (const auto& [nextI, nextJ] : equal) {
      pairGap(i, nextI, j, nextJ);
      if (nextI < size(first_) && nextJ < size(second_)) {
        pairs_.push_back({nextI, nextJ, true});
      }
      i = nextI + 1;
      j = nextJ + 1;
    }
    return std::move(pairs_);
  }

 private:
  static i32 size(const CustomerPages& side) { return static_cast<i32>(side.pages.size()); }

  // Pages without a body are all alike. A page whose length occurs on no page of the other side is
  // like none, so its bytes need not be read.
  [[nodiscard]] std::vector<u64> digests(CustomerPages& side, const CustomerPages& other) const {
    const std::vector<i64> wanted = bodyLengths(other);
    const std::vector<i64> lengths = bodyLengths(side);
    const std::set<i64> known(wanted.begin(), wanted.end());
    std::vector<u64> result;
    for (std::size_t i = 0; i < lengths.size(); ++i) {
      const i32 position = side.pages[static_cast<std::size_t>(start_) + i].filePosition;
      if (lengths[i] < 0) {
        result.push_back(0);
      } else if (known.contains(lengths[i])) {
        result.push_back(digestOf(FieldValue(side.bytes.bodyAt(position))));
      } else {
        result.push_back(digestOf(FieldValue(lengths[i])));
      }
    }
    return result;
  }

  // -1 for a page without a body.
  [[nodiscard]] std::vector<i64> bodyLengths(const CustomerPages& side) const {
    std::vector<i64> lengths;
    for (i32 p = start_; p < size(side); ++p) {
      const i32 position = side.pages[static_cast<std::size_t>(p)].filePosition;
      lengths.push_back(position < 0 ? -1 : side.bytes.bodyLengthAt(position));
    }
    return lengths;
  }

  // Nearly always, pages with the same number are the same page, unless one was inserted before
  // them.
  void pairGap(i32 beginI, i32 endI, i32 beginJ, i32 endJ) {
    const bool hasSameNumbers = beginI == beginJ && endI == endJ;
    for (i32 p = beginI; hasSameNumbers && p < endI; ++p) {
      if (sketchedParts_ <= kMostParts &&
          areNearlyEqual(digestsOfPage(first_, p), digestsOfPage(second_, p))) {
        pairStretch(beginI, p, beginJ, p);
        pairs_.push_back({p, p, false});
        beginI = beginJ = p + 1;
      }
    }
    pairStretch(beginI, endI, beginJ, endJ);
  }

  const PageDigests& digestsOfPage(CustomerPages& side, i32 p) {
    const auto known = side.digests.find(p);
    if (known != side.digests.end()) {
      return known->second;
    }
    const PageDigests& digests = side.digests.emplace(p, digestsOf(side.load(p))).first->second;
    sketchedParts_ += static_cast<i64>(digests.pageList.size());
    return digests;
  }

  void pairStretch(i32 beginI, i32 endI, i32 beginJ, i32 endJ) {
    std::vector<PagePair> pairs;
    if (beginI < endI && beginJ < endJ && !pairSimilar(beginI, endI, beginJ, endJ, pairs)) {
      for (i32 i = beginI, j = beginJ; i < endI && j < endJ; ++i, ++j) {
        pairs.push_back({i, j, false});
      }
    }
    appendGap(beginI, endI, beginJ, endJ, pairs);
  }

  // Returns false if it would be too much work.
  bool pairSimilar(i32 beginI, i32 endI, i32 beginJ, i32 endJ, std::vector<PagePair>& pairs) {
    std::vector<PageSketch> a, b;
    if (!sketch(first_, beginI, endI, a) || !sketch(second_, beginJ, endJ, b)) {
      return false;
    }
    i64 work = 0;
    for (const PageSketch& page : a) {
      work += static_cast<i64>(page.parts.size() * b.size());
    }
    if (work > 4 * kMostParts || static_cast<i64>(a.size() * b.size()) > kMostParts) {
      return false;
    }
    struct Candidate {
      i64 score;
      i32 i, j;
    };
    std::vector<Candidate> candidates;
    constexpr i64 kHalf = 1000;
    for (i32 i = beginI; i < endI; ++i) {
      for (i32 j = beginJ; j < endJ; ++j) {
        const i64 score = similarityOf(a[static_cast<std::size_t>(i - beginI)],
                                       b[static_cast<std::size_t>(j - beginJ)]);
        if (score >= kHalf) {
          candidates.push_back({score, i, j});
        }
      }
    }
    // Among equally similar pages, those with the same number come first.
    std::ranges::sort(candidates, {}, [](const Candidate& c) {
      return std::tuple(-c.score, std::abs(c.i - c.j), c.i, c.j);
    });
    std::vector<bool> isTakenI(a.size()), isTakenJ(b.size());
    for (const Candidate& c : candidates) {
      const auto i = static_cast<std::size_t>(c.i - beginI);
      const auto j = static_cast<std::size_t>(c.j - beginJ);
      if (!isTakenI[i] && !isTakenJ[j]) {
        isTakenI[i] = isTakenJ[j] = true;
        pairs.push_back({c.i, c.j, false});
      }
    }
    for (i32 p = std::max(beginI, beginJ); p < std::min(endI, endJ); ++p) {
      const auto i = static_cast<std::size_t>(p - beginI);
      const auto j = static_cast<std::size_t>(p - beginJ);
      if (!isTakenI[i] && !isTakenJ[j] && name(first_, p) == name(second_, p)) {
        pairs.push_back({p, p, false});
      }
    }
    return true;
  }

  static PageName name(const CustomerPages& side, i32 p) {
    return side.pages[static_cast<std::size_t>(p)].name;
  }

  bool sketch(CustomerPages& side, i32 begin, i32 end, std::vector<PageSketch>& sketches) {
    for (i32 p = begin; p < end; ++p) {
      const PageDigests& digests = digestsOfPage(side, p);
      if (sketchedParts_ > kMostParts) {
        return false;
      }
      sketches.push_back(sketchOf(side.load(p), digests));
    }
    return true;
  }

  // Removed pages are placed where they were, added ones before the next page that both have.
  void appendGap(i32 beginI, i32 endI, i32 beginJ, i32 endJ, const std::vector<PagePair>& pairs) {
    std::vector<i32> partnerOfI(static_cast<std::size_t>(endI - beginI), kNone);
    std::vector<bool> isPairedJ(static_cast<std::size_t>(endJ - beginJ));
    for (const PagePair& pair : pairs) {
      partnerOfI[static_cast<std::size_t>(pair.first - beginI)] = pair.second;
      isPairedJ[static_cast<std::size_t>(pair.second - beginJ)] = true;
    }
    i32 nextJ = beginJ;
    const auto appendAdded = [&](i32 end) {
      for (; nextJ < end; ++nextJ) {
        if (!isPairedJ[static_cast<std::size_t>(nextJ - beginJ)]) {
          pairs_.push_back({kNone, nextJ, false});
        }
      }
    };
    for (i32 i = beginI; i < endI; ++i) {
      const i32 j = partnerOfI[static_cast<std::size_t>(i - beginI)];
      if (j != kNone) {
        appendAdded(j);
      }
      pairs_.push_back({i, j, false});
    }
    appendAdded(endJ);
  }

  CustomerPages& first_;
  CustomerPages& second_;
  i32 start_;
  i64 sketchedParts_ = 0;
  std::vector<PagePair> pairs_;
};

}  // namespace

bool areNearlyEqual(const PageDigests& first, const PageDigests& second) {
  const std::vector<u64>& a = first.pageList;
  const std::vector<u64>& b = second.pageList;
  const std::size_t shorter = std::min(a.size(), b.size());
  std::size_t front = 0, end = 0;
  while (front < shorter && a[front] == b[front]) {
    front += 1;
  }
  while (front + end < shorter && a[a.size() - 1 - end] == b[b.size() - 1 - end]) {
    end += 1;
  }
  return shorter > 0 && 4 * (front + end) >= 3 * std::max(a.size(), b.size());
}

std::vector<PagePair> pairPages(CustomerPages& first, CustomerPages& second, i32 start) {
  return PagePairing(first, second, start).run();
}

}  // namespace rvf::inspect
