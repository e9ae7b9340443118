#pragma once

#include <bit>
#include <cstring>
#include <type_traits>

#include "base/Integers.h"
#include "pagemodel/DrawPart.h"

namespace rvf {

/// What a part must share with another to be told from it by no difference: a hash of the fields
/// that have to be equal under the tolerances, and a place that has to lie within the position
/// tolerance. Parts that match have the same hash and near places; the reverse is for classifyParts
/// to say.
class MatchKey {
 public:
  explicit MatchKey(PartType type) { add(type); }

  template <class T>
  void add(const T& value) {
    static_assert(std::is_trivially_copyable_v<T> && sizeof(T) <= sizeof(u64));
    u64 bits = 0;
    std::memcpy(&bits, &value, sizeof(T));
    mix(bits);
  }
  template <class... Values>
  void addAll(const Values&... values) {
    (add(values), ...);
  }
  void addBytes(const void* bytes, std::size_t size);
  /// A value that has to lie within the tolerance. Without a tolerance that is an equal one.
  void addWithin(i32 value, i32 tolerance) {
    if (tolerance <= 0) {
      add(value);
    }
  }
  /// A place that has to lie within the tolerance. With a tolerance the first place of a part
  /// counts for all of them; a part without any is near every other.
  void addPlace(i32 x, i32 y, i32 tolerance) {
    if (tolerance <= 0) {
      addAll(x, y);
    } else if (!hasPlace_) {
      placeX_ = x;
      placeY_ = y;
      hasPlace_ = true;
    }
  }

  [[nodiscard]] bool hasPlace() const { return hasPlace_; }
  /// The hash with the cell of the place, in a grid of `cellSize`, moved by whole cells.
  [[nodiscard]] u64 inCell(i64 cellSize, i32 moveX, i32 moveY) const;

 private:
  // The product carries the low bits upwards, and the rotation brings the high ones down again.
  void mix(u64 bits) {
    constexpr u64 kFactor = 0xBF58476D1CE4E5B9ULL;
    hash_ = std::rotl((hash_ ^ bits) * kFactor, 29);
  }

  u64 hash_ = 0x9E3779B97F4A7C15ULL;
  i32 placeX_ = 0;
  i32 placeY_ = 0;
  bool hasPlace_ = false;
};

}  // namespace rvf
