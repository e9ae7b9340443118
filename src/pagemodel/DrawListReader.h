#pragma once

#include "pagemodel/DrawList.h"
#include "storage/Archive.h"

namespace rvf {

/// Bytes that the shortest list record has on disk.
constexpr i32 kSmallestDrawList = 16;

/// Reads a list over what it held. Parts that were read completely before a failure stay, and
/// `count` is their number; everything that is wrong, a version above the limit too, is left in the
/// archive's `failed`.
void readDrawList(DrawList& list, eArchive& archive);

/// Parts are never stored: what a list leaves in an archive is the end mark.
void storeDrawList(eArchive& archive);

/// Reads one part into a slot, whose payload is used again. Fields that the record does not hold
/// are zero afterwards.
void readDrawPart(DrawPart& part, eArchive& archive);

}  // namespace rvf
