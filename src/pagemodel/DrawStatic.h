#pragma once

#include "base/Integers.h"
#include "pagemodel/DrawList.h"
#include "storage/Archive.h"
#include "text/eString.h"

namespace rvf {

/// A drawable object that was composed once and is referred to by many pages.
struct DrawStatic {
  DrawList firstList;
  DrawList secondList;  // present but empty in an object without one
  i32 hasSecond = 0;
  i32 valueA = 0;
  i32 valueB = 0;
  i32 valueC = 0;
  i32 valueD = 0;
  i32 loadLists = 1;  // 0: the reader stops before the lists
  i32 valueE = 0;
  i32 valueF = 0;
  i32 indexA = -1;
  i32 indexB = -1;
  eString name;
};

/// Bytes that the shortest record has on disk.
constexpr i32 kSmallestStatic = 40;

/// Reads one record; on a storing archive, only writes the end mark. Any failure, including a
/// version above the limit, sets the archive's `failed`.
void readDrawStatic(DrawStatic& object, eArchive& archive);

/// Objects are never stored: only the end mark is written, as for a list.
void storeDrawStatic(eArchive& archive);

}  // namespace rvf
