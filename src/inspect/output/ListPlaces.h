#pragma once

#include <map>
#include <string>
#include <vector>

#include "capture/CompareContext.h"
#include "inspect/model/PartPlace.h"

namespace rvf::inspect {

/// Where the lists of a page are on it, under their names in changes. A shared object is as often
/// there as the page refers to it, up to a limit.
class ListPlaces {
 public:
  static constexpr std::size_t kMostPlaces = 50;

  explicit ListPlaces(const CompareContext& page);

  /// The boxes that a box of a list takes on the page; none for a list that is not there.
  [[nodiscard]] std::vector<Box> onPage(const std::string& list, const Box& box) const;
  /// The space of the list itself, for each place: of a shared object, what its references say.
  [[nodiscard]] std::vector<Box> onPage(const std::string& list) const;
  [[nodiscard]] bool has(const std::string& list) const { return places_.contains(list); }

 private:
  void addObjects(const DrawList& list, Place offset);

  std::map<std::string, std::vector<Box>> places_;  // their left and top corner is the origin
};

}  // namespace rvf::inspect
