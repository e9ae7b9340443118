#pragma once

#include <vector>

#include "base/Integers.h"
#include "capture/PageRecord.h"
#include "storage/Archive.h"
#include "text/eString.h"

namespace rvf {

/// Bytes that the shortest customer of the index has on disk.
constexpr i32 kSmallestCustomerRecord = 9;

/// One customer of the index with its pages, in file order.
struct CustomerRecord {
  /// The pages are allocated from `memory`, which must outlive the record.
  explicit CustomerRecord(IndexMemory& memory) : pages(&memory) {}

  /// Reads the record; the names of its pages are added to `names`. A file that ends too early
  /// leaves the pages read so far.
  void read(eArchive& archive, PageNames& names);
  /// Writes the record in its newest form, pages included. Part of the interface; a run stores no
  /// index.
  void store(eArchive& archive) const;

  std::pmr::vector<PageRecord> pages;
  i32 leadValue = 0;  // kept, never compared
  eString id;
  i32 pageCount = 0;  // as found in the file, even if negative
  u32 diffBits = 0;   // written by the walk, not on disk
};

}  // namespace rvf
