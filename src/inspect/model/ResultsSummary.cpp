#include "inspect/model/ResultsSummary.h"

#include <algorithm>
#include <bit>
#include <functional>
#include <tuple>

namespace rvf::inspect {

namespace {

std::u16string withoutNumbers(const std::u16string& text) {
  std::u16string result;
  for (const char16_t c : text) {
    if (c < u'0' || c > u'9') {
      result += c;
    } else if (!result.ends_with(u'N')) {
      result += u'N';
    }
  }
  return result;
}

}  // namespace

void NamedPairs::add(const std::u16string& name) {
  count += 1;
  if (names.size() < kMostNames) {
    names.push_back(name);
  }
}

i64 ResultsSummary::count(Outcome outcome) const {
  const auto found = outcomes_.find(outcome);
  return found == outcomes_.end() ? 0 : found->second;
}

void ResultsSummary::add(const PairResult& pair, const PairInspection* inspection) {
  const Outcome outcome = pair.outcome();
  pairs_ += 1;
  outcomes_[outcome] += 1;
  if (inspection != nullptr) {
    accepted_ += inspection->isAccepted ? 1 : 0;
    unexplained_ += inspection->trouble.empty() ? 0 : 1;
  }
  if (outcome == Outcome::kDifferent) {
    for (DiffFlags bits = pair.bits.value_or(0); bits != 0; bits &= bits - 1) {
      pairsByBit_[DiffFlags{1} << std::countr_zero(bits)] += 1;
    }
  }
  if (outcome == Outcome::kFailed || outcome == Outcome::kOneSided) {
    addFailure(pair);
  }
  if (pair.seconds) {
    slowest_.add(*pair.seconds, pair.name);
  }
  largest_.add(pair.bytes(), pair.name);
}

void ResultsSummary::addFailure(const PairResult& pair) {
  // In other states, a number is part of the reason, such as the number of a signal.
  const std::u16string general = pair.state == "failed" ? withoutNumbers(pair.reason) : pair.reason;
  const std::pair key(pair.state, general);
  if (reasons_.size() == kMostReasons && !reasons_.contains(key)) {
    reasonsLeftOut_ += 1;
    return;
  }
  FailedPairs& failed = reasons_[key];
  if (failed.count == 0) {
    failed.state = pair.state;
    failed.reason = pair.reason;
  } else if (failed.reason != pair.reason) {
    failed.reason = general;
  }
  failed.add(pair.name);
}

std::vector<const FailedPairs*> ResultsSummary::reasons() const {
  std::vector<const FailedPairs*> result;
  for (const auto& [key, failed] : reasons_) {
    result.push_back(&failed);
  }
  std::ranges::stable_sort(result, std::greater(), &FailedPairs::count);
  return result;
}

void ResultsSummary::addGroups(const std::u16string& name, const ChangeGroups& groups) {
  changesNotGrouped_ += groups.changesLeftOut();
  for (const ChangeGroup* group : groups.sorted()) {
    const auto found = groups_.find(group->id);
    if (found == groups_.end()) {
      if (groups_.size() == ChangeGroups::kMostGroups) {
        changesNotGrouped_ += group->changes;
        continue;
      }
      groups_[group->id] = {*group, {1, {name}}};
      continue;
    }
    GroupOfPairs& all = found->second;
    all.pairs.add(name);
    all.group.pages += group->pages;
    all.group.customers += group->customers;
    all.group.changes += group->changes;
    // It is unknown whether two pairs have the same values.
    all.group.pairs = std::max(all.group.pairs, group->pairs);
    all.group.hasAllPairs = false;
    all.group.ignoredBy = all.group.ignoredBy.empty() ? all.group.ignoredBy : group->ignoredBy;
  }
}

std::vector<const GroupOfPairs*> ResultsSummary::groups() const {
  std::vector<const GroupOfPairs*> result;
  for (const auto& [id, group] : groups_) {
    result.push_back(&group);
  }
  std::ranges::sort(result, [](const GroupOfPairs* a, const GroupOfPairs* b) {
    return std::tuple(-a->pairs.count, -a->group.pages, a->group.key.page, a->group.id) <
           std::tuple(-b->pairs.count, -b->group.pages, b->group.key.page, b->group.id);
  });
  return result;
}

}  // namespace rvf::inspect
