#include "compare/MatchKey.h"

#include <cassert>

namespace rvf {

void MatchKey::start(PartType type, KeyUse use, i32 number) {
  static_cast<SeededHash&>(*this) = SeededHash();
  add(type);
  values_.clear();
  use_ = use;
  number_ = number;
  hasWidth_ = false;
  isExcluded_ = false;
}

void MatchKey::addWidth(i32 width, const Tolerances& tolerances) {
  assert(values_.empty());
  if (tolerances.lineTolerance <= 0) {
    add(width);
    return;
  }
  values_.push_back(width);
  hasWidth_ = true;
}

void MatchKey::addPosition(i32 position, const Tolerances& tolerances) {
  if (tolerances.positionTolerance <= 0) {
    add(position);
  } else {
    values_.push_back(position);
  }
}

}  // namespace rvf
