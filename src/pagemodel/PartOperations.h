#pragma once

#include "base/Integers.h"
#include "pagemodel/DrawPart.h"
#include "storage/HeldInput.h"

namespace rvf {

/// Keep flags of releasePart.
constexpr i32 kReleaseAll = 0;
constexpr i32 kKeepHyperlink = 5;

/// Reads the fields of a part whose type is set. A code without a payload, an unknown one included,
/// reads nothing.
void readPayload(DrawPart& part, eArchive& archive, i32 version);

/// The same from bytes in memory, for the most frequent types. For all others the input fails.
void readHeldPayload(DrawPart& part, HeldInput& held, i32 version);

/// Makes `target` a deep copy of `source`; does nothing if they are the same. A source of a type
/// that is not copied leaves the target without fields and with its old type, except that an
/// UNKNOWN source makes it UNKNOWN.
void copyPart(DrawPart& target, const DrawPart& source);

/// Moves a part by an offset. Types without a position do not move.
void shiftPart(DrawPart& part, i32 dx, i32 dy);

/// Frees what the type owns outside its payload block, which stays. With kKeepHyperlink, an image
/// keeps its link.
void releasePart(DrawPart& part, i32 keep);

/// Makes the part an UNKNOWN one without fields; its payload block is kept for reuse.
void makeBlank(DrawPart& part);

}  // namespace rvf
