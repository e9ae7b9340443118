#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <string>
#include <string_view>

#include "support/FuzzRun.h"
#include "text/NativeText.h"
#include "text/eString.h"

namespace rvf::fuzz {

/// A file that lies in memory and has a path, for code that opens what it reads.
class PathOfBytes {
 public:
  explicit PathOfBytes(std::string_view bytes) : descriptor_(memfd_create("input", MFD_CLOEXEC)) {
    const auto size = static_cast<ssize_t>(bytes.size());
    require(write(descriptor_, bytes.data(), bytes.size()) == size, "memory takes the input");
  }
  PathOfBytes(const PathOfBytes&) = delete;
  PathOfBytes& operator=(const PathOfBytes&) = delete;
  ~PathOfBytes() { close(descriptor_); }

  [[nodiscard]] eString path() const {
    return fromNative("/proc/self/fd/" + std::to_string(descriptor_));
  }

 private:
  int descriptor_;
};

}  // namespace rvf::fuzz
