#pragma once

#include <memory_resource>
#include <vector>

#include "base/Integers.h"
#include "compare/MatchKey.h"
#include "compare/Tolerances.h"
#include "pagemodel/DrawList.h"

namespace rvf {

/// An index of a list for many searches: what MatchCandidates::firstFree asks, answered in near
/// linear time for all parts of another list.
///
/// The items are sorted by their match key; those that any part matches, and those that are
/// compared by words with parts of any type, have shelves of their own. Items that are taken are
/// skipped by links that shorten with use.
class MatchIndex {
 public:
  /// Both must outlive the index; the parts stay, and items that are taken stay taken.
  MatchIndex(const DrawList& list, const std::pmr::vector<bool>& isTaken,
             const Tolerances& tolerances);

  static constexpr i32 kNotFound = -1;
  /// The lowest index of a free item `c` with classifyParts(part, c, tolerances) == 0, or
  /// kNotFound.
  [[nodiscard]] i32 firstFree(const DrawPart& part);

 private:
  struct Entry {
    u64 key;
    i32 index;
  };

  void addItem(const DrawPart& item, i32 index);
  void searchShelf(const DrawPart& part, u64 key, i32& best);
  /// The first entry at or behind `position` whose item is free.
  [[nodiscard]] std::size_t firstFreeEntry(std::size_t position);

  const DrawList& list_;
  const std::pmr::vector<bool>& isTaken_;
  const Tolerances tolerances_;
  i64 cellSize_;
  std::vector<Entry> entries_;         // by key, then by index
  std::vector<std::size_t> nextFree_;  // of each entry: itself while its item is free
  std::vector<i32> universal_;         // items that every part matches, by index
  std::size_t firstUniversal_ = 0;     // all before it are taken
  bool hasWordItems_ = false;
};

}  // namespace rvf
