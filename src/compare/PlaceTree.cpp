#include "compare/PlaceTree.h"

#include <algorithm>
#include <utility>

#include "compare/Tolerances.h"

namespace rvf {

namespace {

constexpr std::size_t kLeafSize = 8;
// A split that leaves nearly all items on one side is not worth a node.
constexpr std::size_t kLeastShare = 256;

}  // namespace

PlaceTree::PlaceTree(std::vector<Item> items, std::vector<i32> tolerances,
                     const std::pmr::vector<bool>& isTaken)
    : items_(std::move(items)), tolerances_(std::move(tolerances)), isTaken_(isTaken) {
  static_cast<void>(build(0, items_.size()));
}

i32 PlaceTree::firstNear(const i32* values, i32 limit, const std::function<bool(i32)>& matches) {
  Search s{values, limit, matches};
  search(0, s);
  return s.best;
}

std::size_t PlaceTree::build(std::size_t begin, std::size_t end) {
  const std::size_t node = nodes_.size();
  nodes_.push_back({.begin = begin, .end = end});
  const Split split = end - begin > kLeafSize ? bestSplit(begin, end) : Split();
  if (split.smallerSide > (end - begin) / kLeastShare) {
    splitNode(node, split);
    return node;
  }
  const auto items = std::span(items_).subspan(begin, end - begin);
  std::ranges::sort(items, {}, &Item::index);
  nodes_[node].lowestFree = items.empty() ? kNone : items.front().index;
  nodes_[node].isUniform = items.size() > kLeafSize && !split.anyDiffers;
  return node;
}

void PlaceTree::splitNode(std::size_t node, const Split& split) {
  const std::size_t v = split.value;
  const auto items =
      std::span(items_).subspan(nodes_[node].begin, nodes_[node].end - nodes_[node].begin);
  const auto middleItem = std::partition(items.begin(), items.end(), [&](const Item& item) {
    return item.values[v] <= split.highestLeft;
  });
  const auto leftSize = static_cast<std::size_t>(middleItem - items.begin());
  const auto valueOf = [v](const Item& item) { return item.values[v]; };
  nodes_[node].value = v;
  nodes_[node].leftHighest = valueOf(*std::ranges::max_element(items.first(leftSize), {}, valueOf));
  nodes_[node].rightLowest =
      valueOf(*std::ranges::min_element(items.subspan(leftSize), {}, valueOf));
  const std::size_t middle = nodes_[node].begin + leftSize;
  const std::size_t leftNode = build(nodes_[node].begin, middle);
  const std::size_t rightNode = build(middle, nodes_[node].end);
  nodes_[node].left = leftNode;
  nodes_[node].right = rightNode;
  nodes_[node].lowestFree = std::min(nodes_[leftNode].lowestFree, nodes_[rightNode].lowestFree);
}

// The best value splits the items evenly and leaves few of them so close to the border that a
// search has to look on both sides.
PlaceTree::Split PlaceTree::bestSplit(std::size_t begin, std::size_t end) {
  Split best;
  for (std::size_t v = 0; v < tolerances_.size(); ++v) {
    const i32 pivot = sampleOf(begin, end, v);
    std::size_t below = 0;
    std::size_t above = 0;
    std::size_t near = 0;
    for (std::size_t i = begin; i < end; ++i) {
      const i32 value = items_[i].values[v];
      below += value < pivot ? 1U : 0U;
      above += value > pivot ? 1U : 0U;
      near += exceeds(value, pivot, tolerances_[v]) ? 0U : 1U;
    }
    const std::size_t equal = end - begin - below - above;
    const bool equalToLeft = std::min(below + equal, above) >= std::min(below, above + equal);
    const std::size_t smaller =
        equalToLeft ? std::min(below + equal, above) : std::min(below, above + equal);
    const i64 merit = 2 * static_cast<i64>(smaller) - static_cast<i64>(near);
    const bool anyDiffers = best.anyDiffers || below + above > 0;
    if (smaller > (end - begin) / kLeastShare && (best.smallerSide == 0 || merit > best.merit)) {
      best = {v, equalToLeft ? pivot : pivot - 1, smaller, merit, true};
    }
    best.anyDiffers = anyDiffers;
  }
  return best;
}

// A random median of three, so that no file can provoke bad splits.
i32 PlaceTree::sampleOf(std::size_t begin, std::size_t end, std::size_t value) {
  i32 sample[3];
  for (i32& one : sample) {
    random_.add(value);
    one = items_[begin + (random_.value() >> 32) % (end - begin)].values[value];
  }
  return std::max(std::min(sample[0], sample[1]),
                  std::min(std::max(sample[0], sample[1]), sample[2]));
}

i32 PlaceTree::lowestFree(std::size_t node) {
  Node& n = nodes_[node];
  if (n.lowestFree == kNone || !isTaken(n.lowestFree)) {
    return n.lowestFree;
  }
  if (n.left != 0) {
    return n.lowestFree = std::min(lowestFree(n.left), lowestFree(n.right));
  }
  while (n.begin < n.end && isTaken(items_[n.begin].index)) {
    ++n.begin;
  }
  return n.lowestFree = n.begin < n.end ? items_[n.begin].index : kNone;
}

void PlaceTree::search(std::size_t node, Search& s) {
  if (lowestFree(node) >= s.best) {
    return;
  }
  Node& n = nodes_[node];
  if (n.left == 0) {
    searchLeaf(n, s);
    return;
  }
  const i32 value = s.values[n.value];
  const i32 tolerance = tolerances_[n.value];
  const bool toLeft = value <= n.leftHighest || !exceeds(value, n.leftHighest, tolerance);
  const bool toRight = value >= n.rightLowest || !exceeds(value, n.rightLowest, tolerance);
  // The side with the lower index is searched first, which often rules out the other one.
  const bool leftFirst = lowestFree(n.left) < lowestFree(n.right);
  for (const bool isLeft : {leftFirst, !leftFirst}) {
    if (isLeft ? toLeft : toRight) {
      search(isLeft ? n.left : n.right, s);
    }
  }
}

void PlaceTree::searchLeaf(Node& leaf, Search& s) {
  for (std::size_t i = leaf.begin; i < leaf.end && items_[i].index < s.best; ++i) {
    const Item& item = items_[i];
    if (isTaken(item.index)) {
      continue;
    }
    if (isNear(item.values, s.values)) {
      if (s.matches(item.index)) {
        s.best = item.index;
      }
    } else if (leaf.isUniform) {
      return;
    }
  }
}

bool PlaceTree::isNear(const i32* a, const i32* b) const {
  for (std::size_t v = 0; v < tolerances_.size(); ++v) {
    if (exceeds(a[v], b[v], tolerances_[v])) {
      return false;
    }
  }
  return true;
}

}  // namespace rvf
