#pragma once

#include <span>
#include <vector>

#include "base/Integers.h"
#include "inspect/model/Change.h"
#include "pagemodel/DrawList.h"

namespace rvf::inspect {

/// A part that is not the same at the same place in the sequence of both lists.
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

/// Finds the smallest set of changes that turns one list into another. Parts pair in this order:
/// equal and in sequence (these are not delivered); equal but elsewhere; equal but for the place;
/// of one type near the same place or at the same point of the sequence, the most similar first.
/// What is left is added or removed. No step is quadratic in the number of parts.
[[nodiscard]] std::vector<PartPair> pairParts(const DigestedList& first,
                                              const DigestedList& second);

}  // namespace rvf::inspect
