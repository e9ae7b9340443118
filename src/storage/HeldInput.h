#pragma once

#include <cassert>
#include <cstring>
#include <iterator>

#include "base/Integers.h"
#include "storage/Archive.h"

namespace rvf {

/// A fast view of the bytes that a loading archive has in memory, for records that lie entirely
/// within them. It has the loads of eArchive, but they do not test for the end of the bytes.
/// Instead, the last kMargin bytes are reserved for overruns, and a decoder must test `failed`
/// before it has loaded that many: checkedCount and ReadWhole do so themselves, and loops must do
/// so for each item.
///
/// A failure does not mean that the file is damaged. The decoded fields are invalid, and the record
/// must be read again from the archive, whose position is unchanged.
class HeldInput {
 public:
  static constexpr std::ptrdiff_t kMargin = 256;

  /// Whether there are enough bytes to make an input at all.
  [[nodiscard]] static bool hasEnough(const eArchive& archive) {
    return !archive.failed() && std::ssize(archive.held()) > kMargin;
  }

  explicit HeldInput(const eArchive& archive)
      : safeEnd_(archive.held().data() + archive.held().size() - kMargin),
        wideStrings_(archive.wideStrings()),
        next_(archive.held().data()) {
    assert(hasEnough(archive));
  }

  [[nodiscard]] bool failed() const { return next_ > safeEnd_; }
  [[nodiscard]] bool wideStrings() const { return wideStrings_; }
  /// Where the next load begins. After a success, the archive must be advanced to this point.
  [[nodiscard]] const std::byte* next() const { return next_; }
  /// Fails permanently. Requires that at least one value has been loaded.
  void giveUp() { safeEnd_ = next_ - 1; }

  [[nodiscard]] u8 ReadU8() { return load<u8>(); }
  [[nodiscard]] u16 ReadU16() { return load<u16>(); }
  [[nodiscard]] i16 ReadI16() { return load<i16>(); }
  [[nodiscard]] i32 ReadI32() { return load<i32>(); }
  [[nodiscard]] u32 ReadU32() { return load<u32>(); }
  [[nodiscard]] f64 ReadF64() { return load<f64>(); }

  bool ReadWhole(void* destination, i32 count) {
    if (count > safeEnd_ - next_) {
      giveUp();
      return false;
    }
    if (count > 0) {  // otherwise the destination may be null
      std::memcpy(destination, next_, static_cast<std::size_t>(count));
      next_ += count;
    }
    return true;
  }

  [[nodiscard]] i32 checkedCount(i64 count, i32 smallestItem) {
    if (count > 0 && count * smallestItem > safeEnd_ - next_) {
      giveUp();
      return 0;
    }
    return count > 0 ? static_cast<i32>(count) : 0;
  }

 private:
  template <class T>
  T load() {
    assert(next_ + sizeof(T) <= safeEnd_ + kMargin);
    T value;
    std::memcpy(&value, next_, sizeof(T));
    next_ += sizeof(T);
    return value;
  }

  const std::byte* safeEnd_;
  bool wideStrings_;
  // The last one, so that a copy reads it alone: a wider load that covers what was just stored and
  // its neighbour has to wait for the store.
  const std::byte* next_;
};

}  // namespace rvf
