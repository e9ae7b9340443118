#pragma once

#include <span>
#include <vector>

#include "base/Integers.h"
#include "compare/SeededHash.h"
#include "compare/Tolerances.h"
#include "pagemodel/DrawPart.h"

namespace rvf {

/// Parts of some types have several keys: those under which they are filed in an index, and those
/// that are looked up to find a match for them.
enum class KeyUse { kFiled, kSearched };

/// What parts of one type must share to classify as the same: a hash of everything that has to be
/// equal, and the values that have to be within tolerance. If two parts match, one of the keys
/// looked up for the first has the same hash as one of the keys under which the second is filed,
/// and values within tolerance. The reverse also holds, except for chance collisions of hashes.
class MatchKey : public SeededHash {
 public:
  MatchKey() = default;
  /// Starts key `number`, counted from 0, and discards the previous one.
  void start(PartType type, KeyUse use, i32 number);

  [[nodiscard]] KeyUse use() const { return use_; }
  [[nodiscard]] i32 number() const { return number_; }

  /// Marks the key as void: the part has no key of this number, or nothing can match it.
  void exclude() { isExcluded_ = true; }
  [[nodiscard]] bool isExcluded() const { return isExcluded_; }

  /// A width, which comes before all positions. Without a tolerance it has to be equal.
  void addWidth(i32 width, const Tolerances& tolerances);
  void addPosition(i32 position, const Tolerances& tolerances);
  void addPlace(i32 x, i32 y, const Tolerances& tolerances) {
    addPosition(x, tolerances);
    addPosition(y, tolerances);
  }

  /// The width, if there is one, and the positions that have to be within tolerance.
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
