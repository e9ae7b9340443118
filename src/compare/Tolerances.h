#pragma once

#include "base/Integers.h"

namespace rvf {

// The tolerances of the run, in the units of the files' coordinates. The options set them before
// the comparison starts, and the comparison of two parts reads them without a path to the run. A
// negative one is kept as it was given: then nothing is within it.

/// How far apart two positions may lie and still count as the same.
inline i32 positionTolerance = 0;
/// How far apart the thicknesses of two lines may lie and still count as the same.
inline i32 lineTolerance = 0;

/// Both, as one comparison reads them.
struct Tolerances {
  i32 position;
  i32 line;
};

/// Whether two values lie further apart than a tolerance. A difference equal to it passes.
[[nodiscard]] constexpr bool exceeds(i64 a, i64 b, i32 tolerance) {
  return (a < b ? b - a : a - b) > tolerance;
}

}  // namespace rvf
