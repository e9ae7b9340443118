#pragma once

#include <span>
#include <vector>

#include "base/Integers.h"
#include "inspect/model/Change.h"
#include "pagemodel/DrawList.h"

namespace rvf::inspect {

/// A part that is not the same at the same point in the sequence of both lists.
struct PartPair {
  i32 first = kNone;
  i32 second = kNone;
  ChangeKind kind = ChangeKind::kChanged;
};

/// A list with the digests of its parts.
struct DigestedList {
  const DrawList& list;
  std::span<const u64> digests;
};

/// Finds a small set of changes that turns one list into another. Parts are paired in this order:
/// equal and in sequence (not returned); equal but elsewhere; equal except for the position; of the
/// same type, close to the same place or at the same point of the sequence, the most similar first.
/// The rest are added or removed. No step is quadratic in the number of parts.
[[nodiscard]] std::vector<PartPair> pairParts(const DigestedList& first,
                                              const DigestedList& second);

}  // namespace rvf::inspect
