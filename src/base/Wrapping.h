#pragma once

#include "base/Integers.h"

namespace rvf {

// Sums and products of positions wrap around at 32 bits, as they do in the engine.

[[nodiscard]] constexpr i32 wrappingSum(i32 a, i32 b) {
  return static_cast<i32>(static_cast<u32>(a) + static_cast<u32>(b));
}

[[nodiscard]] constexpr i32 wrappingProduct(i32 a, i32 b) {
  return static_cast<i32>(static_cast<u32>(a) * static_cast<u32>(b));
}

}  // namespace rvf
