#pragma once

#include "base/Integers.h"
#include "compare/DiffFlags.h"
#include "storage/Archive.h"
#include "storage/FileObject.h"
#include "text/eString.h"

namespace rvf {

/// Writes the difference file in one forward pass: a header; for each customer its head, one value
/// per compared page, and its bits; and a trailer. Nothing is patched later, so the file can be
/// read while it grows; without its trailer it is incomplete. The layout is in
/// docs/difference-file.md.
class DifferenceFileWriter {
 public:
  /// `file` is open for writing and stays the caller's. Lost bytes are reported, once.
  explicit DifferenceFileWriter(FileObject& file)
      : archive_(file, eArchive::Mode::kStore, eArchive::kFileBufferSize) {}

  void writeHeader(const eString& firstPath, const eString& secondPath, i32 customerCount);
  void writeCustomerHead(i32 index, const eString& id, i32 firstPageCount, i32 secondPageCount);
  void writePage(DiffFlags pageBits) { archive_.WriteU32(pageBits); }
  void writeCustomerEnd(DiffFlags customerBits) { archive_.WriteU32(customerBits); }
  void writeTrailer(DiffFlags fileBits, i32 differingPages, i32 pageCountDelta);
  void flush() { archive_.Flush(); }
  /// Discards what has not reached the file yet. Nothing can be written afterwards.
  void abandon() { archive_.abandon(); }

 private:
  eArchive archive_;
};

}  // namespace rvf
