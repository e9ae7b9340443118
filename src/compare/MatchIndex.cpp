#include "compare/MatchIndex.h"

#include <algorithm>
#include <numeric>
#include <tuple>

#include "compare/PartComparison.h"

namespace rvf {

namespace {

std::size_t asSize(i32 index) { return static_cast<std::size_t>(index); }

}  // namespace

// A cell is as wide as two places may lie apart, so that matching ones stand in neighbouring cells.
MatchIndex::MatchIndex(const DrawList& list, const std::pmr::vector<bool>& isTaken,
                       const Tolerances& tolerances)
    : list_(list),
      isTaken_(isTaken),
      tolerances_(tolerances),
      cellSize_(i64{std::max(tolerances.positionTolerance, 0)} + 1) {
  entries_.reserve(asSize(list.count));
  for (i32 i = 0; i < list.count; ++i) {
    addItem(list[i], i);
  }
  std::ranges::sort(entries_, {}, [](const Entry& e) { return std::tuple(e.key, e.index); });
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
      entries_.push_back({wordsKey(item).inCell(cellSize_, 0, 0), index});
      break;
    case MatchRule::kByKey:
      entries_.push_back({matchKey(item, tolerances_).inCell(cellSize_, 0, 0), index});
      break;
  }
}

i32 MatchIndex::firstFree(const DrawPart& part) {
  i32 best = kNotFound;
  while (firstUniversal_ < universal_.size() && isTaken_[asSize(universal_[firstUniversal_])]) {
    ++firstUniversal_;
  }
  if (firstUniversal_ < universal_.size()) {
    best = universal_[firstUniversal_];
  }
  if (hasWordItems_) {
    searchShelf(part, wordsKey(part).inCell(cellSize_, 0, 0), best);
  }
  if (matchRuleOf(part.type) != MatchRule::kByKey) {
    return best;
  }
  const MatchKey key = matchKey(part, tolerances_);
  const i32 reach = key.hasPlace() && cellSize_ > 1 ? 1 : 0;
  for (i32 x = -reach; x <= reach; ++x) {
    for (i32 y = -reach; y <= reach; ++y) {
      searchShelf(part, key.inCell(cellSize_, x, y), best);
    }
  }
  return best;
}

void MatchIndex::searchShelf(const DrawPart& part, u64 key, i32& best) {
  const auto start = std::ranges::lower_bound(entries_, key, {}, &Entry::key);
  auto position = firstFreeEntry(static_cast<std::size_t>(start - entries_.begin()));
  while (position < entries_.size() && entries_[position].key == key) {
    const i32 index = entries_[position].index;
    if (best != kNotFound && index >= best) {
      return;
    }
    if (classifyParts(part, list_[index], tolerances_) == 0) {
      best = index;
      return;
    }
    position = firstFreeEntry(position + 1);
  }
}

std::size_t MatchIndex::firstFreeEntry(std::size_t position) {
  std::size_t free = position;
  while (free < entries_.size() && isTaken_[asSize(entries_[free].index)]) {
    nextFree_[free] = std::max(nextFree_[free], free + 1);
    free = nextFree_[free];
  }
  // All that were passed lead straight to the end of the way from now on.
  while (position < free) {
    const std::size_t next = std::max(nextFree_[position], position + 1);
    nextFree_[position] = free;
    position = next;
  }
  return free;
}

}  // namespace rvf
