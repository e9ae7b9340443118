#include "inspect/output/ReportPlan.h"

#include <algorithm>

namespace rvf::inspect {

void ReportPlan::add(u64 group, const PagePlace& place) {
  if (count_ == kMostPlaces) {
    return;
  }
  std::vector<PagePlace>& places = places_[group];
  if (places.size() < kMostPlacesOfGroup && (places.empty() || places.back() != place)) {
    places.push_back(place);
    count_ += 1;
  }
}

std::vector<PagePlace> ReportPlan::choose(std::span<const ChangeGroup* const> groups,
                                          std::size_t maxPages) const {
  constexpr std::size_t kExamples = 3;
  std::set<PagePlace> seen;
  std::vector<PagePlace> chosen;
  const auto take = [&](const ChangeGroup* group, std::size_t begin, std::size_t end) {
    const auto found = places_.find(group->id);
    if (found == places_.end()) {
      return;
    }
    const std::vector<PagePlace>& places = found->second;
    for (std::size_t i = begin; i < std::min(end, places.size()); ++i) {
      if (chosen.size() < maxPages && seen.insert(places[i]).second) {
        chosen.push_back(places[i]);
      }
    }
  };
  for (std::size_t round = 0; round < kExamples; ++round) {
    for (const ChangeGroup* group : groups) {
      take(group, round, round + 1);
    }
  }
  for (const ChangeGroup* group : groups) {
    take(group, kExamples, kMostPlacesOfGroup);
  }
  std::sort(chosen.begin(), chosen.end());
  return chosen;
}

std::vector<i32> ReportPlan::customersOf(u64 group) const {
  std::vector<i32> customers;
  const auto found = places_.find(group);
  if (found != places_.end()) {
    for (const PagePlace& place : found->second) {
      if (customers.empty() || customers.back() != place.customer) {
        customers.push_back(place.customer);
      }
    }
  }
  return customers;
}

}  // namespace rvf::inspect
