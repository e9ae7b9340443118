#pragma once

#include <functional>
#include <memory_resource>
#include <span>
#include <vector>

#include "base/Integers.h"
#include "compare/SeededHash.h"

namespace rvf {

/// A tree of items with the same number of values each. It finds the first free item whose values
/// are all within tolerance of given ones.
///
/// A node splits its items in two by one of the values and knows the lowest free index among them.
/// If two or three values vary, a search visits a small part of the nodes, whatever the items are.
class PlaceTree {
 public:
  struct Item {
    const i32* values;
    i32 index;
  };

  /// `tolerances` has one entry per value, none negative. The values and `isTaken` must outlive the
  /// tree; items once taken must stay taken.
  PlaceTree(std::vector<Item> items, std::vector<i32> tolerances,
            const std::pmr::vector<bool>& isTaken);

  static constexpr i32 kNone = 2147483647;
  /// The lowest index below `limit` of a free item that has near values and is accepted by
  /// `matches`; `limit` if there is none.
  [[nodiscard]] i32 firstNear(const i32* values, i32 limit,
                              const std::function<bool(i32)>& matches);

 private:
  struct Node {
    std::size_t begin = 0, end = 0;  // items
    std::size_t value = 0;           // the one that splits them
    i32 leftHighest = 0;             // of the value
    i32 rightLowest = 0;
    std::size_t left = 0, right = 0;  // nodes; 0: a leaf
    i32 lowestFree = kNone;           // a lower bound of the lowest free index
    bool isUniform = false;           // a leaf whose items have the same values
  };
  struct Split {
    std::size_t value = 0;
    i32 highestLeft = 0;
    std::size_t smallerSide = 0;
    i64 merit = 0;
    bool anyDiffers = false;
  };
  struct Search {
    const i32* values;
    i32 best;
    const std::function<bool(i32)>& matches;
  };

  std::size_t build(std::size_t begin, std::size_t end);
  void splitNode(std::size_t node, const Split& split);
  [[nodiscard]] Split bestSplit(std::size_t begin, std::size_t end);
  [[nodiscard]] i32 sampleOf(std::size_t begin, std::size_t end, std::size_t value);
  [[nodiscard]] i32 lowestFree(std::size_t node);
  void search(std::size_t node, Search& s);
  void searchLeaf(Node& leaf, Search& s);
  [[nodiscard]] bool isNear(const i32* a, const i32* b) const;
  [[nodiscard]] bool isTaken(i32 index) const { return isTaken_[static_cast<std::size_t>(index)]; }

  std::vector<Item> items_;
  std::vector<i32> tolerances_;
  const std::pmr::vector<bool>& isTaken_;
  std::vector<Node> nodes_;
  SeededHash random_;
};

}  // namespace rvf
