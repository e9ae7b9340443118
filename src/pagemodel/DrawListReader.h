#pragma once

#include "pagemodel/DrawList.h"
#include "pagemodel/StaticLookup.h"
#include "storage/Archive.h"

namespace rvf {

/// Bytes that the shortest list record has on disk.
constexpr i32 kSmallestDrawList = 16;

/// Reads a list of a page, replacing its content. References get their child lists from `statics`,
/// which must outlive the list's content. Parts that were read completely before a failure are
/// kept, and `count` is their number. Any failure, including a version above the limit, sets the
/// archive's `failed`.
void readDrawList(DrawList& list, eArchive& archive, const StaticLookup& statics);
/// The same for a list of a static object: its references get no child lists, so lists nest at most
/// two deep.
void readDrawList(DrawList& list, eArchive& archive);

/// Parts are never stored: only the end mark is written.
void storeDrawList(eArchive& archive);

/// Reads one part into a slot and reuses its payload block. Fields that the record does not have
/// become zero. A reference is left without a child list.
void readDrawPart(DrawPart& part, eArchive& archive);

}  // namespace rvf
