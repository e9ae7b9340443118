#pragma once

#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <string>
#include <string_view>

#include "support/Fuzz.h"

namespace rvf::fuzz {

/// A file in memory, with its own path as long as it exists.
class MemoryFile {
 public:
  explicit MemoryFile(std::string_view bytes = {}) : descriptor_(::memfd_create("fuzz", 0)) {
    require(::write(descriptor_, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size()),
            "there is memory for a file");
  }
  ~MemoryFile() { ::close(descriptor_); }
  MemoryFile(const MemoryFile&) = delete;
  MemoryFile& operator=(const MemoryFile&) = delete;

  [[nodiscard]] std::string path() const { return "/proc/self/fd/" + std::to_string(descriptor_); }
  [[nodiscard]] std::string content() const {
    struct stat status {};
    require(::fstat(descriptor_, &status) == 0, "a file has a size");
    std::string bytes(static_cast<std::size_t>(status.st_size), '\0');
    require(::pread(descriptor_, bytes.data(), bytes.size(), 0) == status.st_size,
            "a file can be read");
    return bytes;
  }

 private:
  int descriptor_;
};

}  // namespace rvf::fuzz
