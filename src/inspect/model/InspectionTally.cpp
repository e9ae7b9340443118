#include "inspect/model/InspectionTally.h"

#include <algorithm>
#include <cstdlib>

#include "inspect/model/ChangeReasons.h"

namespace rvf::inspect {

namespace {

bool concernsTolerances(const Change& change) {
  return change.counts() || change.ignoredBy == ignored_by::kPositionTolerance ||
         change.ignoredBy == ignored_by::kLineTolerance ||
         change.ignoredBy == ignored_by::kRectangleStep;
}

/// What follows the last dot of a field's name, or all of it.
std::string_view lastName(std::string_view name) {
  const std::size_t dot = name.rfind('.');
  return dot == std::string_view::npos ? name : name.substr(dot + 1);
}

bool isPositionField(std::string_view name) {
  const std::string_view last = lastName(name);
  constexpr std::string_view kNames[] = {"x",      "y",     "left",       "top",       "right",
                                         "bottom", "x1",    "x2",         "y1",        "y2",
                                         "end",    "start", "placementX", "placementY"};
  return std::ranges::count(kNames, last) != 0 || name.starts_with("offsets[");
}

i64 differenceOf(const FieldChange& field) {
  const auto* from = std::get_if<i64>(&field.from);
  const auto* to = std::get_if<i64>(&field.to);
  return from == nullptr || to == nullptr ? 0 : std::abs(*to - *from);
}

}  // namespace

void InspectionTally::take(std::vector<Change>& changes, const ChangePlace& place) {
  const i32 page = place.first != kNone ? place.first : place.second;
  std::erase_if(changes, [&](const Change& change) { return isAccepted(change, page); });
  for (const Change& change : changes) {
    count(change);
    groups.add(change, place);
  }
}

void InspectionTally::takeForPages(std::vector<Change>& changes, i64 pages) {
  std::erase_if(changes, [&](const Change& change) { return isAccepted(change, kNone); });
  for (const Change& change : changes) {
    count(change);
    groups.addForPages(change, pages);
  }
}

bool InspectionTally::isAccepted(const Change& change, i32 page) {
  reported += 1;
  noteTolerances(change);
  if (settings_.acceptedGroups.empty()) {
    return false;
  }
  const u64 id = ChangeGroups::keyOf(change, page).id();
  if (!settings_.acceptedGroups.contains(id)) {
    return false;
  }
  summary.acceptedSeen.insert(id);
  summary.changesAccepted += 1;
  return true;
}

void InspectionTally::count(const Change& change) {
  if (change.counts()) {
    summary.changes += 1;
  } else {
    summary.ignored[change.ignoredBy] += 1;
  }
}

void InspectionTally::noteTolerances(const Change& change) {
  if (!concernsTolerances(change)) {
    return;
  }
  i64 distance = 0;
  if (change.kind == ChangeKind::kMoved) {
    distance = std::max(std::abs(change.distance.x), std::abs(change.distance.y));
  } else if (change.kind == ChangeKind::kChanged) {
    for (const FieldChange& field : change.fields) {
      const std::string_view last = lastName(field.name);
      if (isPositionField(field.name)) {
        distance = std::max(distance, differenceOf(field));
      } else if ((last == "width" || last == "lineWidth") && change.type != "STATICREF") {
        summary.smallestLineTolerance =
            std::max(summary.smallestLineTolerance, differenceOf(field));
      }
    }
  }
  if (distance == 0) {
    return;
  }
  if (!hasPositionTolerance(change.type)) {
    summary.smallestPositionTolerance.reset();
  } else if (summary.smallestPositionTolerance) {
    const i64 needed = change.type == "RECT" ? 1 : distance;
    summary.smallestPositionTolerance = std::max(*summary.smallestPositionTolerance, needed);
  }
}

}  // namespace rvf::inspect
