#pragma once

#include <cstddef>
#include <utility>
#include <vector>

#include "base/Integers.h"

namespace rvf::inspect {

/// A set of digests, which are as good as random: they need no hash function, and eight bytes each
/// in one block instead of a node of their own.
class DigestSet {
 public:
  /// Returns whether the digest was not there yet.
  bool insert(u64 digest) {
    if (2 * (size_ + 1) > slots_.size()) {
      grow();
    }
    u64& slot = slotFor(stored(digest));
    const bool isNew = slot == kFree;
    slot = stored(digest);
    size_ += isNew ? 1 : 0;
    return isNew;
  }
  [[nodiscard]] bool contains(u64 digest) { return size_ > 0 && slotFor(stored(digest)) != kFree; }
  [[nodiscard]] std::size_t size() const { return size_; }

 private:
  static constexpr u64 kFree = 0;
  static constexpr std::size_t kLeastSlots = 1024;

  // The value of a free slot stands for another digest, which is as rare.
  static u64 stored(u64 digest) { return digest == kFree ? ~kFree : digest; }

  /// The slot that holds a digest, or the free one where it belongs.
  u64& slotFor(u64 digest) {
    const std::size_t last = slots_.size() - 1;  // the size is a power of two
    std::size_t i = digest & last;
    while (slots_[i] != kFree && slots_[i] != digest) {
      i = (i + 1) & last;
    }
    return slots_[i];
  }

  void grow() {
    const std::size_t size = slots_.empty() ? kLeastSlots : 2 * slots_.size();
    const std::vector<u64> before = std::exchange(slots_, std::vector<u64>(size, kFree));
    for (const u64 digest : before) {
      if (digest != kFree) {
        slotFor(digest) = digest;
      }
    }
  }

  std::vector<u64> slots_;
  std::size_t size_ = 0;
};

}  // namespace rvf::inspect
