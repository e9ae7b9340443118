#pragma once

#include <span>
#include <utility>
#include <vector>

#include "base/Integers.h"

namespace rvf::inspect {

/// Two indexes, of the first and of the second sequence.
using IndexPair = std::pair<i32, i32>;

/// Pairs equal keys of two sequences so that both indexes rise: a long common subsequence. It is
/// the longest where the sequences differ in few places; elsewhere keys that occur once on each
/// side hold it together, and what lies between them is looked at the same way. The time stays near
/// linear in the lengths for any input.
[[nodiscard]] std::vector<IndexPair> pairInSequence(std::span<const u64> first,
                                                    std::span<const u64> second);

/// Pairs equal keys wherever they are: the n-th occurrence of a key with the n-th on the other
/// side.
[[nodiscard]] std::vector<IndexPair> pairAnywhere(std::span<const u64> first,
                                                  std::span<const u64> second);

}  // namespace rvf::inspect
