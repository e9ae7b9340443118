#pragma once

#include "pagemodel/DrawList.h"
#include "storage/Archive.h"

namespace rvf {

/// Bytes that the shortest list record has on disk.
constexpr i32 kSmallestDrawList = 16;

/// Reads a list, replacing its content. Parts that were read completely before a failure stay, and
/// `count` is their number. Any failure, including a version above the limit, sets the archive's
/// `failed`.
void readDrawList(DrawList& list, eArchive& archive);

/// Parts are never stored: what a list leaves in an archive is the end mark.
void storeDrawList(eArchive& archive);

/// Reads one part into a slot and reuses its payload block. Fields that the record does not have
/// become zero.
void readDrawPart(DrawPart& part, eArchive& archive);

}  // namespace rvf
