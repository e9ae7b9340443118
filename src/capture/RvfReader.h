#pragma once

#include <deque>
#include <optional>
#include <vector>

#include "base/Integers.h"
#include "capture/CompareContext.h"
#include "capture/CustomerRecord.h"
#include "capture/PageNames.h"
#include "storage/Archive.h"
#include "storage/FileObject.h"
#include "text/eString.h"

namespace rvf {

/// A date of the index. It is kept but never compared.
struct StoredDate {
  static constexpr i32 kNeverSet = 2;
  f64 value = 0;
  i32 status = kNeverSet;
};

/// The outcome of loading a file.
enum class LoadState : i32 {
  kLoaded,
  kNotCapture,          // no magic number of a page-capture file
  kUnsupportedVersion,  // of the file as a whole
  kBadTrailer,          // there is no trailer where one should give the index offset
  kNoPages,
  kDamaged,       // header, static tables or index are truncated or contradict themselves
  kRecordTooNew,  // among the static tables
  kTooLarge,      // more bytes than can be addressed
};

struct LoadResult {
  LoadState state = LoadState::kNotCapture;
  i64 offset = 0;                    // in the file, of the place where reading stopped
  std::optional<NewerRecord> newer;  // with kRecordTooNew
};

/// A page that could not be read completely.
struct DamagedPage {
  i32 customer = 0;
  i32 page = 0;
  i64 offset = 0;
};

/// The damage found while reading pages.
struct DamageRecord {
  static constexpr std::size_t kMostPlaces = 10;
  std::vector<DamagedPage> places;  // the first kMostPlaces
  i64 count = 0;                    // of all
};

/// One page-capture file in memory: its header, the tables of static objects (in the context) and
/// the whole index of customers and pages, but not the pages themselves, which are fetched one at a
/// time.
class RvfReader {
 public:
  /// The context is not owned. `dbcsMode` says how text is stored in files too old to specify it.
  RvfReader(CompareContext& context, bool dbcsMode) : context_(context), dbcsMode_(dbcsMode) {}
  RvfReader(const RvfReader&) = delete;
  RvfReader& operator=(const RvfReader&) = delete;

  /// Reads the file and replaces what was loaded before. The file must be open and at its start,
  /// and it stays the caller's. `valid` says whether it was accepted, loadResult why not; a
  /// rejection as such is not reported.
  void load(FileObject& file);
  [[nodiscard]] bool valid() const { return loadResult_.state == LoadState::kLoaded; }
  [[nodiscard]] const LoadResult& loadResult() const { return loadResult_; }

  /// Reads the page given by currentCustomer and currentPage into the context, whose pageFailure
  /// says what is wrong with it, if anything. Damage is recorded in damage().
  void loadCurrentPage();
  [[nodiscard]] const DamageRecord& damage() const { return damage_; }

  [[nodiscard]] CompareContext& context() { return context_; }

  /// The parts of the file other than pages, as offsets in the file; ends are one past the last
  /// byte.
  i64 tablesEnd = 0;
  i32 indexPosition = 0;
  i64 indexEnd = 0;
  bool hasTrailer = false;  // which gives the index offset

 private:
  IndexMemory indexMemory_;  // declared before what it must outlive

 public:
  eString fileLabel;  // kept, never compared
  StoredDate firstDate;
  StoredDate secondDate;
  i32 customerCount = 0;
  i32 pageCount = 0;          // of all customers
  i32 firstPagePosition = 0;  // that of the first page where it is not 0
  i32 currentCustomer = 0;
  i32 currentPage = 0;
  PageNames pageNames{indexMemory_};  // of the pages of all customers
  std::deque<CustomerRecord> customers;
  i32 version = 0;
  i32 resolution = 0;
  u32 compareResult = 0;  // written by the walk

 private:
  [[nodiscard]] LoadResult readFile(FileObject& file);
  [[nodiscard]] LoadResult readTrailer(FileObject& file, i32& indexOffset) const;
  [[nodiscard]] LoadResult readContents(eArchive& archive, i32 magic, i32 indexOffset);
  void readIndex(eArchive& archive);
  void countPages();

  CompareContext& context_;
  bool dbcsMode_;
  LoadResult loadResult_;
  DamageRecord damage_;
};

}  // namespace rvf
