#pragma once

#include <optional>
#include <vector>

#include "base/Integers.h"
#include "inspect/model/PartPlace.h"
#include "pagemodel/DrawPart.h"

namespace rvf::inspect {

/// What a part is compared by when no equal one was found: its place, its words, and its other
/// fields by their digests.
struct PartSketch {
  static constexpr std::size_t kMostDigests = 64;

  std::optional<Place> place;
  std::vector<u64> words;   // sorted
  std::vector<u64> fields;  // sorted; neither place nor text
};

[[nodiscard]] PartSketch sketchOf(const DrawPart& part);

/// How far two places may lie apart and still count as near, in page units.
constexpr i64 kNearDistance = 300;

/// How alike two parts of one type are, from 0 to 1000; 0: they are not the same part, changed.
/// `isSameStretch`: they stand between the same equal parts of their lists.
[[nodiscard]] i32 similarity(const PartSketch& a, const PartSketch& b, bool isSameStretch);

}  // namespace rvf::inspect
