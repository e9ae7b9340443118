#pragma once

#include <vector>

#include "inspect/model/ChangeGroups.h"
#include "inspect/model/Inspection.h"

namespace rvf::inspect {

/// Adds up the findings of an inspection: leaves out accepted changes, groups the others, and
/// counts.
class InspectionTally {
 public:
  explicit InspectionTally(const InspectionSettings& settings) : settings_(settings) {}

  /// Removes accepted changes and counts the rest.
  void take(std::vector<Change>& changes, const ChangePlace& place);
  /// The same for changes of an object, for all pages that use it.
  void takeForPages(std::vector<Change>& changes, i64 pages);

  Summary summary;
  ChangeGroups groups;
  i64 reported = 0;  // changes of any kind, accepted ones included

 private:
  [[nodiscard]] bool isAccepted(const Change& change, i32 page);
  void count(const Change& change);
  void noteTolerances(const Change& change);

  const InspectionSettings& settings_;
};

}  // namespace rvf::inspect
