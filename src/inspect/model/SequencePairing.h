#pragma once

#include <span>
#include <utility>
#include <vector>

#include "base/Integers.h"

namespace rvf::inspect {

/// An index in the first and one in the second sequence.
using IndexPair = std::pair<i32, i32>;

/// Pairs equal keys of two sequences so that both indexes increase: a long common subsequence. It
/// is the longest one where the sequences differ in few places; elsewhere, keys that occur once on
/// each side serve as anchors, and the stretches between them are treated in the same way. The time
/// is nearly linear in the lengths for any input.
[[nodiscard]] std::vector<IndexPair> pairInSequence(std::span<const u64> first,
                                                    std::span<const u64> second);

/// Pairs equal keys wherever they are: the n-th occurrence of a key with the n-th on the other
/// side.
[[nodiscard]] std::vector<IndexPair> pairAnywhere(std::span<const u64> first,
                                                  std::span<const u64> second);

/// How many keys two sorted sequences share.
[[nodiscard]] i64 countCommon(std::span<const u64> first, std::span<const u64> second);

}  // namespace rvf::inspect
