#include "compare/ChildListResults.h"

#include "compare/DrawListMatch.h"

namespace rvf {

bool ChildListResults::areEqual(const DrawList& a, const DrawList& b) {
  const Pair pair{&a, &b};
  if (const auto known = equal_.find(pair); known != equal_.end()) {
    return known->second;
  }
  return equal_[pair] = listsEqual(a, b, this);
}

DiffFlags ChildListResults::matched(const DrawList& a, const DrawList& b) {
  const Pair pair{&a, &b};
  if (const auto known = bits_.find(pair); known != bits_.end()) {
    return known->second;
  }
  return keep(pair, matchLists(a, b, *this));
}

DiffFlags ChildListResults::leftOver(const DrawList* list) {
  const Pair pair{list, nullptr};
  if (const auto known = bits_.find(pair); known != bits_.end()) {
    return known->second;
  }
  return keep(pair, leftOverChildBits(list));
}

DiffFlags ChildListResults::keep(const Pair& pair, DiffFlags bits) {
  if (bits_.size() >= kMostBits) {
    bits_.clear();
  }
  bits_[pair] = bits;
  return bits;
}

}  // namespace rvf
