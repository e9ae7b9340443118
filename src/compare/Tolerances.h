#pragma once

#include "base/Integers.h"

namespace rvf {

/// How much two parts may differ and still count as the same, in the units of the files'
/// coordinates. A negative tolerance is valid: nothing is within it.
struct Tolerances {
  i32 positionTolerance = 0;  // between two positions
  i32 lineTolerance = 0;      // between the thicknesses of two lines

  bool operator==(const Tolerances&) const = default;
};

/// Whether two values are further apart than a tolerance. A difference equal to it is accepted.
[[nodiscard]] constexpr bool exceeds(i64 a, i64 b, i32 tolerance) {
  return (a < b ? b - a : a - b) > tolerance;
}

}  // namespace rvf
