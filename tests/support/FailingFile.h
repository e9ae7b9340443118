#pragma once

#include <algorithm>
#include <limits>
#include <string>
#include <utility>

#include "storage/FileObject.h"

namespace rvf::test {

/// A file in memory where one operation fails, or all from that one on. It reports nothing: only
/// errorState and the result of the operation show the failure, so a test sees whether its user
/// checks them.
class FailingFile final : public FileObject {
 public:
  static constexpr int kNever = std::numeric_limits<int>::max();

  /// `failsAt` counts the operations from 1.
  FailingFile(std::string bytes, int failsAt, bool failsOn)
      : bytes_(std::move(bytes)), failsAt_(failsAt), failsOn_(failsOn) {
    isOpen_ = true;
  }

  const std::string& bytes() const { return bytes_; }
  bool hasFailed() const { return operations_ >= failsAt_; }

  [[nodiscard]] bool IsMemory() const override { return true; }
  [[nodiscard]] i64 GetLength() override { return fails() ? -1 : static_cast<i64>(bytes_.size()); }
  [[nodiscard]] i32 Tell() override { return static_cast<i32>(position_); }
  i32 GetPos(i64&) override { return -1; }
  i32 SetPos(i64) override { return -1; }
  void SetLength(i32) override {}
  [[nodiscard]] bool Open(const eString&, i32, FileContent) override { return false; }
  i32 Write(const void* source, i32 count) override {
    if (fails()) return 0;
    bytes_.replace(position_, std::string::npos, static_cast<const char*>(source),
                   static_cast<std::size_t>(count));
    position_ = bytes_.size();
    return 1;
  }
  i32 Seek(i32 offset, SeekOrigin origin) override {
    positionChanged();
    if (fails()) return -1;
    const i64 base = origin == SeekOrigin::kEnd       ? static_cast<i64>(bytes_.size())
                     : origin == SeekOrigin::kCurrent ? static_cast<i64>(position_)
                                                      : 0;
    if (base + offset < 0) return -1;
    position_ = static_cast<std::size_t>(base + offset);
    return static_cast<i32>(position_);
  }
  /// A failing read delivers half of the available bytes.
  i32 Read(void* destination, i32 count) override {
    positionChanged();
    const std::size_t start = std::min(position_, bytes_.size());
    std::size_t size = std::min(static_cast<std::size_t>(count), bytes_.size() - start);
    size = fails() ? size / 2 : size;
    bytes_.copy(static_cast<char*>(destination), size, start);
    position_ = start + size;
    return static_cast<i32>(size);
  }
  void Close() override {}

 private:
  bool fails() {
    operations_ += 1;
    errorState_ = operations_ == failsAt_ || (operations_ > failsAt_ && failsOn_);
    return errorState_;
  }

  std::string bytes_;
  std::size_t position_ = 0;
  int failsAt_;
  bool failsOn_;
  int operations_ = 0;
};

}  // namespace rvf::test
