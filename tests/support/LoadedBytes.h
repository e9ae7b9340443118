#pragma once

#include <string>
#include <utility>

#include "storage/Archive.h"
#include "storage/MemFile.h"

namespace rvf::test {

/// A loading archive on bytes in memory. By default, its buffer is so small that most records cross
/// its end.
class LoadedBytes {
 public:
  explicit LoadedBytes(std::string bytes, bool wide = false, i32 bufferSize = 64)
      : bytes_(std::move(bytes)),
        file_(reinterpret_cast<std::byte*>(bytes_.data()), static_cast<i32>(bytes_.size()), 0),
        archive(file_, eArchive::Mode::kLoad, bufferSize) {
    archive.setWideStrings(wide);
  }

 private:
  std::string bytes_;
  eMemFile file_;

 public:
  eArchive archive;
};

}  // namespace rvf::test
