#include "storage/ReadWindow.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <limits>

#include "messages/MessageReporter.h"
#include "storage/FileObject.h"
#include "text/NativeText.h"

namespace rvf {

ReadWindow::ReadWindow(FileObject& file, i32 size)
    : file_(file),
      size_(size),
      buffer_(new std::byte[static_cast<std::size_t>(size) + kTailRoom]()) {}

i64 ReadWindow::fileLength() {
  if (fileLength_ == kUnknown) {
    // Offsets have 32 bits, so what lies behind the last of them is out of reach.
    fileLength_ = std::min<i64>(file_.GetLength(), std::numeric_limits<i32>::max());
  }
  return fileLength_;
}

i64 ReadWindow::streamOffset() {
  if (streamOffset_ == kUnknown) {
    streamOffset_ = file_.Tell();
  }
  return streamOffset_;
}

void ReadWindow::moveToFilePosition() {
  startOffset_ = streamOffset();
  held_ = 0;
}

std::byte* ReadWindow::find(i64 offset) {
  const bool isHeld = held_ > 0 && offset >= startOffset_ && offset <= endOffset();
  return isHeld ? start() + (offset - startOffset_) : nullptr;
}

bool ReadWindow::moveTo(i32 offset) {
  startOffset_ = offset;
  held_ = 0;
  return moveFileToEnd();
}

bool ReadWindow::moveFileToEnd() {
  if (streamOffset() == endOffset()) {
    return true;
  }
  const auto target = static_cast<i32>(endOffset());
  const bool isMoved = file_.Seek(target, SeekOrigin::kStart) == target;
  streamOffset_ = isMoved ? endOffset() : kUnknown;
  return isMoved;
}

i32 ReadWindow::readOn(i64 tail, bool& failed) {
  std::memmove(start(), end() - tail, static_cast<std::size_t>(tail));
  startOffset_ = endOffset() - tail;
  held_ = tail;
  if (!moveFileToEnd()) {
    failed = true;
    return 0;
  }
  const i32 got = readPhysical(failed);
  held_ += got;
  streamOffset_ = endOffset();
  return got;
}

i32 ReadWindow::readPhysical(bool& failed) {
  std::FILE* stream = file_.stream();
  if (stream == nullptr) {
    const i32 got = file_.Read(end(), size_);
    failed = file_.errorState();
    return got;
  }
  // What an earlier reader ran into is not this one's failure.
  std::clearerr(stream);
  errno = 0;
  const std::size_t got = std::fread(end(), 1, static_cast<std::size_t>(size_), stream);
  failed = got < static_cast<std::size_t>(size_) && std::ferror(stream) != 0;
  if (failed) {
    Report(MessageNumber::kFileReadFailed, size_, file_.name(), systemErrorText(errno));
  }
  return static_cast<i32>(got);
}

void ReadWindow::forget() {
  startOffset_ = 0;
  held_ = 0;
  streamOffset_ = kUnknown;
  fileLength_ = kUnknown;
}

}  // namespace rvf
