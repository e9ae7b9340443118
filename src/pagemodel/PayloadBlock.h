#pragma once

#include <cstddef>
#include <cstdlib>
#include <memory>
#include <type_traits>

#include "base/Integers.h"

namespace rvf {

/// The one heap block for a part's variable data. It stays with its slot from page to page and only
/// grows, so reading allocates nothing after the largest page.
///
/// The block holds untyped bytes, whose layout depends on the part's type and is described in the
/// header of its family. Objects in it that own memory are constructed and destroyed by the type's
/// operations.
class PayloadBlock {
 public:
  PayloadBlock() = default;
  PayloadBlock(PayloadBlock&& other) noexcept { swap(other); }
  PayloadBlock& operator=(PayloadBlock&& other) noexcept {
    swap(other);
    return *this;
  }

  void swap(PayloadBlock& other) noexcept {
    std::swap(block_, other.block_);
    std::swap(capacity_, other.capacity_);
    std::swap(size_, other.size_);
  }

  [[nodiscard]] std::byte* data() { return block_.get(); }
  [[nodiscard]] const std::byte* data() const { return block_.get(); }
  /// Bytes in use.
  [[nodiscard]] u32 size() const { return size_; }
  [[nodiscard]] u32 capacity() const { return capacity_; }

  /// Sets the number of bytes in use and keeps the existing ones. The block may move, so it must
  /// not hold an object that owns memory. Throws std::bad_alloc.
  void resize(i64 size) {
    if (size > capacity_) {
      grow(size);
    }
    size_ = static_cast<u32>(size);
  }
  void clear() { size_ = 0; }
  void assign(const PayloadBlock& other);

  /// The block's bytes from `offset` on, as objects of type `T`.
  template <class T>
  [[nodiscard]] T* at(std::size_t offset) {
    return reinterpret_cast<T*>(block_.get() + offset);
  }
  template <class T>
  [[nodiscard]] const T* at(std::size_t offset) const {
    return reinterpret_cast<const T*>(block_.get() + offset);
  }

 private:
  void grow(i64 size);

  struct Free {
    void operator()(std::byte* block) const { std::free(block); }
  };
  std::unique_ptr<std::byte, Free> block_;
  u32 capacity_ = 0;
  u32 size_ = 0;
};

}  // namespace rvf
