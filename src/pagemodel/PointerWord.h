#pragma once

#include "base/Integers.h"

namespace rvf {

/// Takes the place of a pointer in the frozen 32-bit layout of a part's fields. What it would point
/// to is in the part's payload; the word only says whether it exists.
using PointerWord = u32;
constexpr PointerWord kNullPointer = 0;
constexpr PointerWord kSetPointer = 1;
[[nodiscard]] constexpr PointerWord pointerWord(bool isSet) {
  return isSet ? kSetPointer : kNullPointer;
}

}  // namespace rvf
