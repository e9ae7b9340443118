#pragma once

#include <cstddef>
#include <cstdio>

namespace rvf {

// fread and fwrite for single bytes, as the files of a run use them: a call of the system that is
// interrupted (EINTR, which some network file systems answer with) is no failure and goes on where
// it stopped. Both return the bytes moved. Fewer than `count` mean the end of the file or an error,
// which the stream's error indicator and errno tell.

[[nodiscard]] std::size_t readBytes(std::FILE* stream, void* destination, std::size_t count);

/// Exact on an unbuffered stream only: a buffer that is written out in part does not tell how much
/// of it was.
[[nodiscard]] std::size_t writeBytes(std::FILE* stream, const void* source, std::size_t count);

}  // namespace rvf
