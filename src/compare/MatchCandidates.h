#pragma once

#include <array>
#include <memory_resource>
#include <optional>
#include <span>
#include <vector>

#include "base/Integers.h"
#include "compare/ChildListResults.h"
#include "compare/MatchIndex.h"
#include "pagemodel/DrawList.h"

namespace rvf {

/// Finds, for one part after another, the first free item of a list that classifies as the same.
/// The results are those of a search through the whole list; all searches together take nearly
/// linear time.
///
/// Where parts were inserted or removed, the result is one of the first free items, so these are
/// tried first. A few searches go on through the list; after that, an index is built.
class MatchCandidates {
 public:
  /// All arguments must outlive this object. The parts must not change, and items once taken must
  /// stay taken.
  MatchCandidates(const DrawList& list, const std::pmr::vector<bool>& isTaken,
                  ChildListResults& childLists)
      : list_(list), isTaken_(isTaken), childLists_(childLists) {}

  static constexpr i32 kNotFound = MatchIndex::kNotFound;
  /// The lowest index of a free item `c` with classifyParts(part, c, tolerances) == 0, or
  /// kNotFound.
  [[nodiscard]] i32 firstFree(const DrawPart& part);

 private:
  static constexpr std::ptrdiff_t kFirstItems = 4;
  static constexpr i32 kPlainSearches = 8;

  [[nodiscard]] bool matches(const DrawPart& part, i32 item) const;
  [[nodiscard]] bool isTaken(i32 item) const { return isTaken_[static_cast<std::size_t>(item)]; }
  [[nodiscard]] std::span<const i32> firstItems();
  [[nodiscard]] i32 firstFreeBehindThem(const DrawPart& part);

  const DrawList& list_;
  const std::pmr::vector<bool>& isTaken_;
  ChildListResults& childLists_;
  std::array<i32, kFirstItems> firstItems_{};  // free at the last search
  std::ptrdiff_t firstCount_ = 0;
  i32 firstEnd_ = 0;  // every free item before this index is among them
  i32 farSearches_ = 0;
  std::optional<MatchIndex> index_;
};

}  // namespace rvf
