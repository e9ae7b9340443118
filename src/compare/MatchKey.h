#pragma once

#include <span>
#include <vector>

#include "base/Integers.h"
#include "compare/SeededHash.h"
#include "compare/Tolerances.h"
#include "pagemodel/DrawPart.h"

namespace rvf {

/// Parts of some types have several keys: those that they are filed under in an index, and those
/// that are looked up when they are searched for.
enum class KeyUse { kFiled, kSearched };

/// What parts of one type must share to be told apart by no difference: a hash of all that has to
/// be equal, and the values that have to lie within the tolerances. Two parts match if one of the
/// keys that the first is searched with has the hash of one of the keys that the second is filed
/// under, and near values. The reverse holds too but for a hash that is the same by chance.
class MatchKey : public SeededHash {
 public:
  MatchKey() = default;
  /// Begins the key of this number, counted from 0, over what was there.
  void start(PartType type, KeyUse use, i32 number);

  [[nodiscard]] KeyUse use() const { return use_; }
  [[nodiscard]] i32 number() const { return number_; }

  /// There is no key of this number, or nothing that matches the part.
  void exclude() { isExcluded_ = true; }
  [[nodiscard]] bool isExcluded() const { return isExcluded_; }

  /// A width, which comes before all positions. Without a tolerance it has to be equal.
  void addWidth(i32 width, const Tolerances& tolerances);
  void addPosition(i32 position, const Tolerances& tolerances);
  void addPlace(i32 x, i32 y, const Tolerances& tolerances) {
    addPosition(x, tolerances);
    addPosition(y, tolerances);
  }

  /// The width, if there is one, and the positions that have to lie within tolerance.
  [[nodiscard]] std::span<const i32> values() const { return values_; }
  [[nodiscard]] bool hasWidth() const { return hasWidth_; }

 private:
  std::vector<i32> values_;
  KeyUse use_ = KeyUse::kFiled;
  i32 number_ = 0;
  bool hasWidth_ = false;
  bool isExcluded_ = false;
};

}  // namespace rvf
