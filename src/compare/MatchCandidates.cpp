#include "compare/MatchCandidates.h"

#include <algorithm>

#include "compare/PartComparison.h"

namespace rvf {

i32 MatchCandidates::firstFree(const DrawPart& part) {
  for (const i32 item : firstItems()) {
    if (matches(part, item)) {
      return item;
    }
  }
  if (firstEnd_ == list_.count) {
    return kNotFound;
  }
  farSearches_ += 1;
  if (farSearches_ <= kPlainSearches) {
    return firstFreeBehindThem(part);
  }
  if (!index_) {
    index_.emplace(list_, isTaken_, childLists_);
  }
  return index_->firstFree(part);
}

bool MatchCandidates::matches(const DrawPart& part, i32 item) const {
  return classifyParts(part, list_[item], childLists_.tolerances(), &childLists_) == 0;
}

std::span<const i32> MatchCandidates::firstItems() {
  const auto end = std::remove_if(firstItems_.begin(), firstItems_.begin() + firstCount_,
                                  [this](i32 item) { return isTaken(item); });
  firstCount_ = end - firstItems_.begin();
  for (; firstCount_ < kFirstItems && firstEnd_ < list_.count; ++firstEnd_) {
    if (!isTaken(firstEnd_)) {
      firstItems_[static_cast<std::size_t>(firstCount_)] = firstEnd_;
      ++firstCount_;
    }
  }
  return std::span(firstItems_).first(static_cast<std::size_t>(firstCount_));
}

i32 MatchCandidates::firstFreeBehindThem(const DrawPart& part) {
  for (i32 item = firstEnd_; item < list_.count; ++item) {
    if (!isTaken(item) && matches(part, item)) {
      return item;
    }
  }
  return kNotFound;
}

}  // namespace rvf
