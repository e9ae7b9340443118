#pragma once

#include <cstring>
#include <type_traits>

#include "base/Integers.h"

namespace rvf {

/// A hash that differs from process to process, so that no file can be crafted whose values
/// collide. Every value is multiplied by two random factors with a shift in between: the effect of
/// changing a value depends on the factors and cannot be undone by another value.
class SeededHash {
 public:
  template <class T>
  void add(const T& value) {
    static_assert(std::has_unique_object_representations_v<T> && sizeof(T) <= sizeof(u64));
    u64 bits = 0;
    std::memcpy(&bits, &value, sizeof(T));
    mix(bits);
  }
  template <class... Values>
  void addAll(const Values&... values) {
    (add(values), ...);
  }
  /// The size is part of the hash.
  void addBytes(const void* bytes, std::size_t size);

  [[nodiscard]] u64 value() const { return hash_; }

 private:
  struct Seed {
    u64 start;
    u64 firstFactor;  // odd, as is the second: no bit is lost
    u64 secondFactor;
  };
  [[nodiscard]] static Seed makeSeed();
  static const Seed kSeed;

  void mix(u64 bits) {
    hash_ = (hash_ ^ bits) * kSeed.firstFactor;
    hash_ = (hash_ ^ hash_ >> 32) * kSeed.secondFactor;
  }

  u64 hash_ = kSeed.start;
};

}  // namespace rvf
