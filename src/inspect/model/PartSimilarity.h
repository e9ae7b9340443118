#pragma once

#include <optional>
#include <vector>

#include "base/Integers.h"
#include "inspect/model/PartPlace.h"
#include "pagemodel/DrawPart.h"

namespace rvf::inspect {

/// What a part without an equal one is compared by: its place, its words, and the digests of its
/// other fields.
struct PartSketch {
  static constexpr std::size_t kMostDigests = 64;

  std::optional<Place> place;
  std::vector<u64> words;   // sorted
  std::vector<u64> fields;  // sorted; neither place nor text
};

[[nodiscard]] PartSketch sketchOf(const DrawPart& part);

/// The greatest distance at which two places count as close, in page units.
constexpr i64 kNearDistance = 300;

/// How similar two parts of the same type are, from 0 to 1000; 0 means that they are not versions
/// of the same part. `isSameStretch` says whether they are between the same equal parts of their
/// lists.
[[nodiscard]] i32 similarity(const PartSketch& a, const PartSketch& b, bool isSameStretch);

}  // namespace rvf::inspect
