#pragma once

#include "base/Integers.h"
#include "capture/PageNames.h"
#include "storage/Archive.h"

namespace rvf {

/// Bytes that the shortest page of the index has on disk.
constexpr i32 kSmallestPageRecord = 13;

/// One page of the index: its name and the position of its body. There is one for every page of the
/// file, possibly millions, so it is small.
struct PageRecord {
  PageRecord() = default;
  PageRecord(i32 leading, PageName pageName, i32 position, i32 trailing)
      : name(pageName), leadValue(leading), filePosition(position), tailValue(trailing) {}

  /// Reads the record; the name, in the customer's `order`, is added to `names`.
  void read(eArchive& archive, CharacterOrder order, PageNames& names);
  /// Writes the record in its newest form. Part of the interface; a run stores no index.
  void store(eArchive& archive) const;

  void setDiffBits(u32 bits) { diffBits = bits & kDiffBitsMask; }

  PageName name;
  i32 leadValue = 0;     // kept, never compared
  i32 filePosition = 0;  // negative: the page has no body
  i32 tailValue = 0;     // kept, never compared

  // Written by the walk, not on disk.
  u32 diffBits : 31 = 0;
  bool unpaired : 1 = false;  // without a partner, or named differently from its partner

 private:
  static constexpr u32 kDiffBitsMask = 0x7FFFFFFF;
};

static_assert(sizeof(PageRecord) <= 24, "an index has one for every page");

}  // namespace rvf
