#include "pagemodel/PayloadBlock.h"

#include <cstring>
#include <limits>
#include <new>

namespace rvf {

void PayloadBlock::grow(i64 size) {
  if (size > std::numeric_limits<u32>::max()) {
    throw std::bad_alloc();
  }
  auto* grown = static_cast<std::byte*>(std::realloc(block_.get(), static_cast<std::size_t>(size)));
  if (grown == nullptr) {
    throw std::bad_alloc();
  }
  static_cast<void>(block_.release());
  block_.reset(grown);
  capacity_ = static_cast<u32>(size);
}

void PayloadBlock::assign(const PayloadBlock& other) {
  resize(other.size_);
  if (other.size_ > 0) {
    std::memcpy(block_.get(), other.block_.get(), other.size_);
  }
}

}  // namespace rvf
