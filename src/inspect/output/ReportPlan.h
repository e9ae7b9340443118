#pragma once

#include <set>
#include <span>
#include <tuple>
#include <unordered_map>
#include <vector>

#include "inspect/model/ChangeGroups.h"

namespace rvf::inspect {

/// A pair of pages, or a page that only one file has: kNone on the other side. `customer` is an
/// index of the first file.
struct PagePlace {
  i32 customer = kNone;
  i32 first = kNone;
  i32 second = kNone;
  bool operator==(const PagePlace&) const = default;
  friend bool operator<(const PagePlace& a, const PagePlace& b) {
    return std::tie(a.customer, a.first, a.second) < std::tie(b.customer, b.first, b.second);
  }
};

/// Keeps where the changes of each group are, and chooses the pages that the report draws. Memory
/// use is limited.
class ReportPlan {
 public:
  static constexpr std::size_t kMostPlacesOfGroup = 200;
  static constexpr std::size_t kMostPlaces = 100000;  // of all groups together

  void add(u64 group, const PagePlace& place);

  /// Up to `maxPages` pages for groups in their order: one for each group, then a second and a
  /// third, then all known ones of the largest groups.
  [[nodiscard]] std::vector<PagePlace> choose(std::span<const ChangeGroup* const> groups,
                                              std::size_t maxPages) const;

  /// The customers of a group, as far as they are kept.
  [[nodiscard]] std::vector<i32> customersOf(u64 group) const;

 private:
  std::unordered_map<u64, std::vector<PagePlace>> places_;
  std::size_t count_ = 0;
};

}  // namespace rvf::inspect
