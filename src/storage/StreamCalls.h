#pragma once

#include <cstddef>
#include <cstdio>

namespace rvf {

// fread and fwrite for bytes. An interrupted system call (EINTR, which some network file systems
// return) is not a failure: it is resumed where it stopped.

struct StreamTransfer {
  std::size_t byteCount = 0;
  /// If fewer bytes than requested were moved: the system's error number, or 0 at the end of the
  /// file.
  int error = 0;
};

[[nodiscard]] StreamTransfer readBytes(std::FILE* stream, void* destination, std::size_t count);

/// The count is exact only for an unbuffered stream: a stream does not know how much of a partly
/// written buffer has reached the file.
[[nodiscard]] StreamTransfer writeBytes(std::FILE* stream, const void* source, std::size_t count);

}  // namespace rvf
