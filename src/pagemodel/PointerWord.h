#pragma once

#include "base/Integers.h"

namespace rvf {

/// Stands in a part's fields where their frozen 32-bit layout has a pointer. What it would name
/// lies in the part's payload; the word only tells whether it is there.
using PointerWord = u32;
constexpr PointerWord kNullPointer = 0;
constexpr PointerWord kSetPointer = 1;
[[nodiscard]] constexpr PointerWord pointerWord(bool isSet) {
  return isSet ? kSetPointer : kNullPointer;
}

}  // namespace rvf
