#pragma once

#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "base/Integers.h"
#include "pagemodel/DrawList.h"
#include "pagemodel/DrawStatic.h"
#include "pagemodel/StaticLookup.h"
#include "storage/Archive.h"
#include "storage/FileObject.h"

namespace rvf {

/// Why a page could not be read completely.
struct PageFailure {
  i64 offset = 0;                    // in the file, of the place where reading stopped
  std::optional<NewerRecord> newer;  // set if a record is too new; otherwise the page is damaged
};

/// The working state of one file: the page in memory, the static lists placed on it, and the tables
/// of static objects that any page may refer to. Only one page is held at a time; its memory is
/// reused for the next.
class CompareContext final : public StaticLookup {
 public:
  CompareContext() = default;
  CompareContext(const CompareContext&) = delete;
  CompareContext& operator=(const CompareContext&) = delete;

  /// Reads the page body at `position` of the file, replacing the page in memory; a negative
  /// position means a page without a body. A page that is already in memory is not read again.
  ///
  /// A damaged body leaves what was read before the damage: possibly an empty page, never the
  /// previous one. The failure is reported once. A record that is too new has the same effect but
  /// is not reported; see pageFailure.
  void FetchPage(i32 customerIndex, i32 position);

  /// What is wrong with the page in memory; empty if nothing is.
  [[nodiscard]] const std::optional<PageFailure>& pageFailure() const { return pageFailure_; }
  /// The record of the page in memory that is too new; null if there is none.
  [[nodiscard]] const NewerRecord* newerRecord() const {
    return pageFailure_ && pageFailure_->newer ? &*pageFailure_->newer : nullptr;
  }

  /// The size of the body of the page in memory; 0 if there is none or it is damaged.
  [[nodiscard]] i64 bodyLength() const { return bodyLength_; }
  /// The bytes of the body of the page in memory; empty for a page without a body, a damaged one,
  /// and one whose bytes are no longer in the file's window. Valid until the file is read again.
  [[nodiscard]] std::span<const std::byte> bodyBytes() const;
  /// Whether the file has the same bytes at `position`. Also false if a single read cannot fetch
  /// them.
  [[nodiscard]] bool hasBytesAt(i32 position, std::span<const std::byte> bytes);
  /// Drops the page in memory.
  void forgetPage();

  /// Reads the tables of static objects, which follow the header. Files below version 2 have three.
  void ReadStaticTables(eArchive& archive, i32 fileVersion);

  /// The number of objects in the table of a type; 0 for a type without one.
  [[nodiscard]] i32 staticObjectCount(i32 objectType) const;
  [[nodiscard]] const DrawStatic* FindStatic(i32 objectType, i32 index) const override;

  i32 pageExtentB = 0;  // kept, never compared
  i32 pageExtentA = 0;
  i32 cachedPagePosition = -1;  // of the page in memory
  i32 cachedCustomer = -1;      // of the last fetch
  FileObject* file = nullptr;   // not owned
  bool doubleByteText = true;   // string mode of all archives for this file
  DrawList pageList;

  i32 staticCount = 0;  // static lists placed on the page in memory
  std::vector<i32> staticPlacementX;
  std::vector<i32> staticPlacementY;

  /// The placed list at `index`, which must be below staticCount.
  [[nodiscard]] const DrawList& staticList(i32 index) const {
    return *placedLists_[static_cast<std::size_t>(index)];
  }

 private:
  using StaticTable = std::vector<std::unique_ptr<DrawStatic>>;

  [[nodiscard]] ReadWindow& window() const;
  void emptyPage();
  void readBody(eArchive& archive);
  void readPlacedLists(eArchive& archive);
  [[nodiscard]] DrawList& placedListAt(i32 index);
  [[nodiscard]] const StaticTable* tableOf(i32 objectType) const;

  std::optional<PageFailure> pageFailure_;
  i64 bodyLength_ = 0;  // size of the last body read; 0 if it was damaged
  std::vector<std::unique_ptr<DrawList>> placedLists_;  // those from staticCount on are unused
  StaticTable type21Statics_;
  StaticTable type24Statics_;
  StaticTable type23Statics_;
  StaticTable type175Statics_;
};

}  // namespace rvf
