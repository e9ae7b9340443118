#include "storage/StreamCalls.h"

#include <cerrno>

namespace rvf {

namespace {

// A stream that is interrupted this often without moving a byte has failed.
constexpr int kMostInterruptions = 1000;

/// Calls `move(offset)`, which moves bytes from that offset on, until `count` bytes have been moved
/// or it stops for any reason other than an interruption.
template <class Move>
StreamTransfer moveBytes(std::FILE* stream, std::size_t count, Move move) {
  std::size_t moved = 0;
  for (int interruptions = 0;;) {
    errno = 0;
    const std::size_t now = move(moved);
    moved += now;
    interruptions = now > 0 ? 0 : interruptions + 1;
    const bool isInterrupted = moved < count && std::ferror(stream) != 0 && errno == EINTR;
    if (!isInterrupted || interruptions == kMostInterruptions) {
      return {moved, moved < count ? errno : 0};
    }
    std::clearerr(stream);
  }
}

}  // namespace

StreamTransfer readBytes(std::FILE* stream, void* destination, std::size_t count) {
  auto* bytes = static_cast<char*>(destination);
  return moveBytes(stream, count, [=](std::size_t offset) {
    return std::fread(bytes + offset, 1, count - offset, stream);
  });
}

StreamTransfer writeBytes(std::FILE* stream, const void* source, std::size_t count) {
  const auto* bytes = static_cast<const char*>(source);
  return moveBytes(stream, count, [=](std::size_t offset) {
    return std::fwrite(bytes + offset, 1, count - offset, stream);
  });
}

}  // namespace rvf
