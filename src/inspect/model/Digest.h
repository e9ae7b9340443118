#pragma once

#include <cstring>
#include <span>
#include <string_view>

#include "base/Integers.h"

namespace rvf::inspect {

/// A 64-bit digest of a sequence of values.
///
/// Its keys are drawn anew in every process. Equal digests are taken as equal values: by chance,
/// two different pages or parts share a digest less often than memory fails, and without the keys
/// no file can be made in which they do.
class Digest {
 public:
  Digest() : Digest(kKeysOfProcess) {}
  /// With the same keys in every process, for what is shown or stored. Files with equal ones can be
  /// made, so nothing may be taken as equal because of it.
  [[nodiscard]] static Digest lasting() { return Digest(kLastingKeys); }

  void add(u64 value) { state_ = folded(state_ ^ value, factor_); }
  void addBytes(std::span<const std::byte> bytes) {
    add(bytes.size());
    const std::byte* next = bytes.data();
    std::size_t left = bytes.size();
    // Four chains in parallel, since each step has to wait for the previous one.
    constexpr std::size_t kRow = 4 * sizeof(u64);
    if (left >= 2 * kRow) {
      u64 a = state_, b = ~state_, c = state_ ^ factor_, d = ~state_ ^ factor_;
      for (; left >= kRow; next += kRow, left -= kRow) {
        a = folded(a ^ wordAt(next), factor_);
        b = folded(b ^ wordAt(next + sizeof(u64)), factor_);
        c = folded(c ^ wordAt(next + 2 * sizeof(u64)), factor_);
        d = folded(d ^ wordAt(next + 3 * sizeof(u64)), factor_);
      }
      add(a);
      add(b);
      add(c);
      add(d);
    }
    for (; left >= sizeof(u64); next += sizeof(u64), left -= sizeof(u64)) {
      add(wordAt(next));
    }
    if (left > 0) {
      u64 rest = 0;
      std::memcpy(&rest, next, left);
      add(rest);
    }
  }
  void addText(std::u16string_view text) { addBytes(std::as_bytes(std::span(text))); }
  void addText(std::string_view text) { addBytes(std::as_bytes(std::span(text))); }

  [[nodiscard]] u64 value() const { return folded(state_, factor_); }

 private:
  struct Keys {
    u64 start;
    u64 factor;  // odd: no bit is lost
  };
  static const Keys kKeysOfProcess;
  static const Keys kLastingKeys;

  explicit Digest(const Keys& keys) : state_(keys.start), factor_(keys.factor) {}

  static u64 wordAt(const std::byte* bytes) {
    u64 word = 0;
    std::memcpy(&word, bytes, sizeof word);
    return word;
  }

  // Both halves of the product together: what a difference becomes depends on every bit of both
  // numbers.
  static u64 folded(u64 a, u64 b) {
    __extension__ using Product = unsigned __int128;
    const Product product = Product{a} * b;
    return static_cast<u64>(product) ^ static_cast<u64>(product >> 64);
  }

  u64 state_;
  u64 factor_;
};

}  // namespace rvf::inspect
