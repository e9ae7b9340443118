#pragma once

#include <vector>

#include "compare/MatchCandidates.h"
#include "compare/PartComparison.h"
#include "support/FuzzRun.h"

namespace rvf::fuzz {

inline i32 firstFreeByLooking(const DrawPart& part, const DrawList& list,
                              const std::pmr::vector<bool>& isTaken) {
  for (i32 j = 0; j < list.count; ++j) {
    if (!isTaken[static_cast<std::size_t>(j)] && classifyParts(part, list[j]) == 0) {
      return j;
    }
  }
  return MatchCandidates::kNotFound;
}

/// The index of a list finds for every part what a search through the list finds.
inline void requireSamePairings(const DrawList& parts, const DrawList& list) {
  std::pmr::vector<bool> isTaken(static_cast<std::size_t>(list.count), false);
  MatchCandidates candidates(list, isTaken);
  for (const DrawPart& part : parts.parts()) {
    const i32 found = candidates.firstFree(part);
    require(found == firstFreeByLooking(part, list, isTaken), "an index finds what a search finds");
    if (found != MatchCandidates::kNotFound) {
      isTaken[static_cast<std::size_t>(found)] = true;
    }
  }
}

}  // namespace rvf::fuzz
