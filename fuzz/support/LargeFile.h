#pragma once

#include <algorithm>
#include <cstring>
#include <string_view>

#include "storage/FileObject.h"

namespace rvf::fuzz {

/// A file of zeroes with some bytes at its start and others at a distant offset, where it ends. It
/// takes no more memory than these bytes. It is unreadable after kMostRead bytes, because reading
/// the zeroes as parts may take time and memory in proportion to their number.
class LargeFile final : public FileObject {
 public:
  LargeFile(std::string_view front, i64 offset, std::string_view back)
      : front_(front), offset_(offset), back_(back) {
    isOpen_ = true;
  }

  [[nodiscard]] bool IsMemory() const override { return true; }
  [[nodiscard]] i64 GetLength() override { return offset_ + static_cast<i64>(back_.size()); }
  [[nodiscard]] i32 Tell() override { return static_cast<i32>(position_); }
  i32 GetPos(i64&) override { return -1; }
  i32 SetPos(i64) override { return -1; }
  void SetLength(i32) override {}
  [[nodiscard]] bool Open(const eString&, i32, FileContent) override { return false; }
  i32 Write(const void*, i32) override { return 0; }
  i32 Seek(i32 offset, SeekOrigin origin) override {
    positionChanged();
    const i64 base = origin == SeekOrigin::kEnd ? GetLength() : 0;
    if (base + offset < 0) return -1;
    position_ = base + offset;
    return static_cast<i32>(position_);
  }
  i32 Read(void* destination, i32 count) override {
    positionChanged();
    const i64 end = std::clamp(position_ + count, position_, std::max(GetLength(), position_));
    left_ -= end - position_;
    if (left_ < 0) return 0;
    std::memset(destination, 0, static_cast<std::size_t>(end - position_));
    copy(destination, end, 0, front_);
    copy(destination, end, offset_, back_);
    const i64 start = position_;
    position_ = end;
    return static_cast<i32>(end - start);
  }
  void Close() override {}

 private:
  void copy(void* destination, i64 end, i64 offset, std::string_view bytes) const {
    const i64 from = std::max(position_, offset);
    const i64 to = std::min(end, offset + static_cast<i64>(bytes.size()));
    if (from >= to) return;
    std::memcpy(static_cast<char*>(destination) + (from - position_),
                bytes.data() + (from - offset), static_cast<std::size_t>(to - from));
  }

  std::string_view front_;
  i64 offset_;
  std::string_view back_;
  static constexpr i64 kMostRead = 1 << 20;
  i64 position_ = 0;
  i64 left_ = kMostRead;
};

}  // namespace rvf::fuzz
