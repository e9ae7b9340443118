#pragma once

#include <vector>

#include "base/Sizes.h"
#include "compare/DiffFlags.h"
#include "compare/DrawListMatch.h"
#include "compare/MatchCandidates.h"
#include "compare/PageOverlay.h"
#include "support/PartChecks.h"

namespace rvf::fuzz {

constexpr DiffFlags kReservedBits = diff::kReserved2 | diff::kReserved4 | diff::kReserved8 |
                                    diff::kReserved16 | diff::kReserved19 | diff::kReserved20 |
                                    diff::kReserved21;

/// For every part, the index of a list must find what a search through the list finds.
inline void requireSamePairings(const DrawList& parts, const DrawList& list,
                                const Tolerances& tolerances) {
  std::pmr::vector<bool> isTaken(asSize(list.count), false);
  ChildListResults childLists(tolerances);
  MatchCandidates candidates(list, isTaken, childLists);
  for (const DrawPart& part : parts.parts()) {
    i32 i = 0;
    while (i < list.count && (isTaken[asSize(i)] || classifyParts(part, list[i], tolerances) != 0))
      ++i;
    const i32 found = candidates.firstFree(part);
    require(found == (i < list.count ? i : MatchCandidates::kNotFound), "an index finds the first");
    if (found != MatchCandidates::kNotFound) isTaken[asSize(found)] = true;
  }
}

/// Matches two lists in both directions. `areTheSame` means that they were read from the same
/// bytes.
inline void compareLists(const DrawList& a, const DrawList& b, bool areTheSame,
                         const Tolerances& tolerances) {
  DrawList overlay;
  const DiffFlags bits = matchDrawLists(overlay, a, b, true, 3, 4, tolerances);
  require((bits & kReservedBits) == 0, "no reserved bit is set");
  require(bits == 0 || !listsEqual(a, b), "equal lists do not differ");
  require(listsEqual(a, b) || !areTheSame || !equalsItsLike(a), "a list is equal to itself");
  static_cast<void>(matchDrawLists(overlay, b, a, true, -3, 4, tolerances));
  examineParts(overlay, tolerances);
  requireSamePairings(a, b, tolerances);
  requireSamePairings(b, a, tolerances);
}

}  // namespace rvf::fuzz
