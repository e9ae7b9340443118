#pragma once

#include "pagemodel/PartVersions.h"
#include "storage/HeldInput.h"

namespace rvf {

/// Runs a decoder for parts with a plain tail. It works on a copy of the input that can stay in
/// registers: as far as the compiler knows, stores into a part might change the original.
template <class Decoder>
void decodeHeld(HeldInput& input, i32 v, Decoder decode) {
  if (v < part_version::kPlainTail) {
    input.giveUp();
    return;
  }
  HeldInput copy = input;
  decode(copy);
  input = copy;
}

}  // namespace rvf
