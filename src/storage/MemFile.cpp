#include "storage/MemFile.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>

namespace rvf {

eMemFile::eMemFile(i32 growBy) : growBy_(growBy) {
  name_ = eString(u"MemoryFile");
  isOpen_ = true;
}

eMemFile::eMemFile(std::byte* block, i32 size, i32 growBy) : eMemFile(growBy) {
  Attach(block, size, growBy);
}

void eMemFile::Attach(std::byte* block, i32 size, i32 growBy) {
  contentChanged();
  owned_.reset();
  growBy_ = growBy;
  position_ = 0;
  capacity_ = size;
  length_ = growBy == 0 ? size : 0;
  buffer_ = block;
}

std::unique_ptr<std::byte[]> eMemFile::Detach() {
  contentChanged();
  position_ = 0;
  capacity_ = 0;
  length_ = 0;
  buffer_ = nullptr;
  return std::move(owned_);
}

void eMemFile::SetLength(i32 size) {
  contentChanged();
  GrowTo(size);
  length_ = size;
  position_ = std::min(position_, size);
}

i32 eMemFile::Write(const void* source, i32 count) {
  if (count == 0) {
    return 0;
  }
  contentChanged();
  GrowTo(static_cast<i64>(position_) + count);
  std::memcpy(buffer_ + position_, source, static_cast<std::size_t>(count));
  position_ += count;
  length_ = std::max(length_, position_);
  return count;
}

i32 eMemFile::Seek(i32 offset, SeekOrigin origin) {
  positionChanged();
  i64 target = offset;
  if (origin == SeekOrigin::kCurrent) {
    target += position_;
  } else if (origin == SeekOrigin::kEnd) {
    target += length_;
  }
  if (target < 0 || target > std::numeric_limits<i32>::max()) {
    return -1;
  }
  position_ = static_cast<i32>(target);
  return position_;
}

i32 eMemFile::Read(void* destination, i32 count) {
  if (count <= 0 || position_ > length_) {
    return 0;
  }
  positionChanged();
  const i32 delivered = std::min(count, length_ - position_);
  if (delivered > 0) {
    std::memcpy(destination, buffer_ + position_, static_cast<std::size_t>(delivered));
  }
  position_ += delivered;
  return delivered;
}

void eMemFile::Close() { Attach(nullptr, 0, 0); }

void eMemFile::GrowTo(i64 size) {
  if (size <= capacity_) {
    return;
  }
  i64 newCapacity = capacity_ == 0 ? growBy_ : capacity_;
  if (growBy_ <= 0 || size > std::numeric_limits<i32>::max()) {
    throw eMemException();
  }
  while (newCapacity < size) {
    newCapacity *= 2;
  }
  newCapacity = std::min<i64>(newCapacity, std::numeric_limits<i32>::max());
  std::unique_ptr<std::byte[]> block(new (std::nothrow)
                                         std::byte[static_cast<std::size_t>(newCapacity)]());
  if (block == nullptr) {
    throw eMemException();
  }
  if (capacity_ > 0) {
    std::memcpy(block.get(), buffer_, static_cast<std::size_t>(capacity_));
  }
  owned_ = std::move(block);
  buffer_ = owned_.get();
  capacity_ = static_cast<i32>(newCapacity);
}

}  // namespace rvf
