#include "compare/MatchIndex.h"

#include <algorithm>
#include <numeric>
#include <tuple>

#include "base/Sizes.h"
#include "compare/PartComparison.h"

namespace rvf {

namespace {

// How many items of a shelf a search tries one by one before it builds a tree.
constexpr int kPlainLooks = 8;

}  // namespace

MatchIndex::MatchIndex(const DrawList& list, const std::pmr::vector<bool>& isTaken,
                       ChildListResults& childLists)
    : list_(list), isTaken_(isTaken), childLists_(childLists) {
  entries_.reserve(asSize(list.count));
  for (i32 i = 0; i < list.count; ++i) {
    addItem(list[i], i);
  }
  std::ranges::sort(entries_, {},
                    [](const Entry& e) { return std::tuple(e.hash, e.shape, e.index); });
  nextFree_.resize(entries_.size() + 1);
  std::iota(nextFree_.begin(), nextFree_.end(), std::size_t{0});
}

void MatchIndex::addItem(const DrawPart& item, i32 index) {
  switch (matchRuleOf(item.type)) {
    case MatchRule::kAnyPart:
      universal_.push_back(index);
      break;
    case MatchRule::kByWords:
      hasWordItems_ = true;
      makeWordsKey(key_, item);
      fileUnder(key_, index);
      break;
    case MatchRule::kByKey:
      for (i32 number = 0; number < keyCount(item.type, KeyUse::kFiled); ++number) {
        makeMatchKey(key_, item, childLists_.tolerances(), KeyUse::kFiled, number);
        fileUnder(key_, index);
      }
      break;
  }
}

void MatchIndex::fileUnder(const MatchKey& key, i32 index) {
  if (!key.isExcluded()) {
    entries_.push_back({key.value(), shapeOf(key), index, values_.size()});
    values_.insert(values_.end(), key.values().begin(), key.values().end());
  }
}

std::size_t MatchIndex::shapeOf(const MatchKey& key) {
  return 2 * key.values().size() + (key.hasWidth() ? 1 : 0);
}

i32 MatchIndex::firstFree(const DrawPart& part) {
  i32 best = firstUniversal();
  if (hasWordItems_) {
    makeWordsKey(key_, part);
    best = searchShelf(part, best);
  }
  if (matchRuleOf(part.type) == MatchRule::kByKey) {
    for (i32 number = 0; number < keyCount(part.type, KeyUse::kSearched); ++number) {
      makeMatchKey(key_, part, childLists_.tolerances(), KeyUse::kSearched, number);
      best = searchShelf(part, best);
    }
  }
  return best == kNone ? kNotFound : best;
}

i32 MatchIndex::firstUniversal() {
  while (firstUniversal_ < universal_.size() && isTaken_[asSize(universal_[firstUniversal_])]) {
    ++firstUniversal_;
  }
  return firstUniversal_ < universal_.size() ? universal_[firstUniversal_] : kNone;
}

i32 MatchIndex::searchShelf(const DrawPart& part, i32 limit) {
  if (key_.isExcluded()) {
    return limit;
  }
  const auto matches = [this, &part](i32 index) {
    return classifyParts(part, list_[index], childLists_.tolerances(), &childLists_) == 0;
  };
  const std::tuple wanted(key_.value(), shapeOf(key_));
  const auto start = std::ranges::lower_bound(
      entries_, wanted, {}, [](const Entry& e) { return std::tuple(e.hash, e.shape); });
  const auto shelf = static_cast<std::size_t>(start - entries_.begin());
  if (start == entries_.end() || std::tuple(start->hash, start->shape) != wanted) {
    return limit;
  }
  auto position = firstFreeEntry(shelf);
  for (int looks = 0; isOnShelf(position, shelf); ++looks) {
    const i32 index = entries_[position].index;
    if (index >= limit) {
      return limit;
    }
    if (looks == kPlainLooks && !key_.values().empty()) {
      return treeOf(shelf).firstNear(key_.values().data(), limit, matches);
    }
    if (matches(index)) {
      return index;
    }
    position = firstFreeEntry(position + 1);
  }
  return limit;
}

PlaceTree& MatchIndex::treeOf(std::size_t shelf) {
  if (const auto known = trees_.find(shelf); known != trees_.end()) {
    return known->second;
  }
  std::vector<PlaceTree::Item> items;
  for (auto p = firstFreeEntry(shelf); isOnShelf(p, shelf); p = firstFreeEntry(p + 1)) {
    items.push_back({values_.data() + entries_[p].firstValue, entries_[p].index});
  }
  const Tolerances& t = childLists_.tolerances();
  std::vector<i32> tolerances(entries_[shelf].shape / 2, t.positionTolerance);
  if (entries_[shelf].shape % 2 != 0) {
    tolerances.front() = t.lineTolerance;
  }
  return trees_.try_emplace(shelf, std::move(items), std::move(tolerances), isTaken_).first->second;
}

bool MatchIndex::isOnShelf(std::size_t position, std::size_t shelf) const {
  return position < entries_.size() && entries_[position].hash == entries_[shelf].hash &&
         entries_[position].shape == entries_[shelf].shape;
}

std::size_t MatchIndex::firstFreeEntry(std::size_t position) {
  std::size_t free = position;
  while (free < entries_.size() && isTaken_[asSize(entries_[free].index)]) {
    nextFree_[free] = std::max(nextFree_[free], free + 1);
    free = nextFree_[free];
  }
  // Path compression: all links that were followed now point straight to the end.
  while (position < free) {
    const std::size_t next = std::max(nextFree_[position], position + 1);
    nextFree_[position] = free;
    position = next;
  }
  return free;
}

}  // namespace rvf
