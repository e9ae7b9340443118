#pragma once

#include <map>
#include <string>
#include <vector>

#include "capture/CompareContext.h"
#include "inspect/model/PartPlace.h"

namespace rvf::inspect {

/// Where the lists of a page are on it, by the names used in changes. A shared object occurs as
/// often as the page refers to it, up to a limit.
class ListPlaces {
 public:
  static constexpr std::size_t kMostPlaces = 50;

  explicit ListPlaces(const CompareContext& page);

  /// The boxes on the page that correspond to a box in a list; empty for a list that is not on it.
  [[nodiscard]] std::vector<Box> onPage(const std::string& list, const Box& box) const;
  /// The space of the list itself at each place; for a shared object, as its references say.
  [[nodiscard]] std::vector<Box> onPage(const std::string& list) const;
  [[nodiscard]] bool has(const std::string& list) const { return places_.contains(list); }

 private:
  void addObjects(const DrawList& list, Place offset);

  std::map<std::string, std::vector<Box>> places_;  // their left and top corner is the origin
};

}  // namespace rvf::inspect
