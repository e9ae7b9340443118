#pragma once

#include <vector>

#include "base/Integers.h"
#include "capture/CompareContext.h"
#include "capture/CustomerRecord.h"
#include "storage/Archive.h"
#include "storage/FileObject.h"
#include "text/eString.h"

namespace rvf {

/// A date of the index. It is kept and never compared.
struct StoredDate {
  static constexpr i32 kNeverSet = 2;
  f64 value = 0;
  i32 status = kNeverSet;
};

/// One page-capture file in memory: its header, the tables of static objects (in the context) and
/// the whole index of customers and pages, but no page; these are fetched one at a time.
class RvfReader {
 public:
  /// Neither is owned. `dbcsMode` tells how text is stored in files too old to tell it themselves.
  RvfReader(CompareContext& context, bool dbcsMode) : context_(context), dbcsMode_(dbcsMode) {}
  RvfReader(const RvfReader&) = delete;
  RvfReader& operator=(const RvfReader&) = delete;

  /// Reads the file, which is open and at its start and stays the caller's, over what was loaded
  /// before. `valid` tells whether it was accepted; a refusal reports nothing of its own.
  void load(FileObject& file);
  [[nodiscard]] bool valid() const { return valid_; }

  /// Brings the page that currentCustomer and currentPage name into the context.
  void loadCurrentPage();

  [[nodiscard]] CompareContext& context() { return context_; }

  eString fileLabel;  // kept, never compared
  StoredDate firstDate;
  StoredDate secondDate;
  i32 customerCount = 0;
  i32 pageCount = 0;          // of all customers
  i32 firstPagePosition = 0;  // of the first page that has a nonzero one
  i32 currentCustomer = 0;
  i32 currentPage = 0;
  std::vector<CustomerRecord> customers;
  i32 version = 0;
  i32 resolution = 0;
  u32 compareResult = 0;  // written by the walk

 private:
  [[nodiscard]] bool readFile(FileObject& file);
  [[nodiscard]] bool readTrailer(FileObject& file, i32& indexPosition) const;
  [[nodiscard]] bool readContents(eArchive& archive, i32 magic, i32 indexPosition);
  void readIndex(eArchive& archive);
  void countPages();

  CompareContext& context_;
  bool dbcsMode_;
  bool valid_ = false;
};

}  // namespace rvf
