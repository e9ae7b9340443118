#pragma once

#include "base/Integers.h"
#include "pagemodel/DrawList.h"
#include "storage/Archive.h"
#include "text/eString.h"

namespace rvf {

/// A drawable object that was composed once and that many pages refer to.
struct DrawStatic {
  DrawList firstList;
  DrawList secondList;  // empty, but present, in an object without one
  i32 hasSecond = 0;
  i32 valueA = 0;
  i32 valueB = 0;
  i32 valueC = 0;
  i32 valueD = 0;
  i32 loadLists = 1;  // 0 asks the reader to stop in front of the lists
  i32 valueE = 0;
  i32 valueF = 0;
  i32 indexA = -1;
  i32 indexB = -1;
  eString name;
};

/// Bytes that the shortest record has on disk.
constexpr i32 kSmallestStatic = 40;

/// Reads one record; a storing archive gets the end mark alone. Any failure, including a version
/// above the limit, sets the archive's `failed`.
void readDrawStatic(DrawStatic& object, eArchive& archive);

/// An object leaves in an archive what a list does.
void storeDrawStatic(eArchive& archive);

}  // namespace rvf
