#pragma once

#include <cstddef>
#include <cstdio>

namespace rvf {

// fread and fwrite for bytes. An interrupted system call (EINTR, which some network file systems
// return) is not a failure: it is resumed where it stopped.

struct StreamTransfer {
  std::size_t byteCount = 0;
  /// When fewer bytes than asked for were moved, the system's error number, or 0 at the end of the
  /// file.
  int error = 0;
};

[[nodiscard]] StreamTransfer readBytes(std::FILE* stream, void* destination, std::size_t count);

/// The count is exact on an unbuffered stream only: of a buffer that is written out in part, the
/// stream does not know how much was.
[[nodiscard]] StreamTransfer writeBytes(std::FILE* stream, const void* source, std::size_t count);

}  // namespace rvf
