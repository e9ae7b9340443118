#pragma once

#include <map>
#include <memory_resource>
#include <vector>

#include "base/Integers.h"
#include "compare/ChildListResults.h"
#include "compare/MatchKey.h"
#include "compare/PlaceTree.h"
#include "pagemodel/DrawList.h"

namespace rvf {

/// An index of a list for many searches: answers MatchCandidates::firstFree without trying items
/// that cannot match.
///
/// Items are filed by the hash of their match key; those that match any part have their own shelf.
/// Taken items are skipped through links that are shortened with use. A shelf with many similar
/// items that are too far away gets a tree of their positions.
class MatchIndex {
 public:
  /// All arguments must outlive the index. The parts must not change, and items once taken must
  /// stay taken.
  MatchIndex(const DrawList& list, const std::pmr::vector<bool>& isTaken,
             ChildListResults& childLists);

  static constexpr i32 kNotFound = -1;
  /// The lowest index of a free item `c` with classifyParts(part, c) == 0, or kNotFound.
  [[nodiscard]] i32 firstFree(const DrawPart& part);

 private:
  struct Entry {
    u64 hash;
    std::size_t shape;  // twice the number of values, plus 1 if the first is a width
    i32 index;
    std::size_t firstValue;
  };
  static constexpr i32 kNone = PlaceTree::kNone;

  void addItem(const DrawPart& item, i32 index);
  void fileUnder(const MatchKey& key, i32 index);
  [[nodiscard]] static std::size_t shapeOf(const MatchKey& key);

  [[nodiscard]] i32 firstUniversal();
  /// Looks up key_. Returns the lowest index below `limit`, or `limit`.
  [[nodiscard]] i32 searchShelf(const DrawPart& part, i32 limit);
  [[nodiscard]] PlaceTree& treeOf(std::size_t shelf);
  [[nodiscard]] bool isOnShelf(std::size_t position, std::size_t shelf) const;
  /// The first entry at or after `position` whose item is free.
  [[nodiscard]] std::size_t firstFreeEntry(std::size_t position);

  const DrawList& list_;
  const std::pmr::vector<bool>& isTaken_;
  ChildListResults& childLists_;
  std::vector<Entry> entries_;              // by hash and shape, then by index
  std::vector<i32> values_;                 // of all entries
  std::vector<std::size_t> nextFree_;       // for each entry: itself while its item is free
  std::map<std::size_t, PlaceTree> trees_;  // by the first entry of their shelf
  std::vector<i32> universal_;              // items that any part matches, by index
  std::size_t firstUniversal_ = 0;          // all before it are taken
  bool hasWordItems_ = false;
  MatchKey key_;
};

}  // namespace rvf
