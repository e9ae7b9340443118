#include "storage/ReadWindow.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>

#include "messages/MessageReporter.h"
#include "storage/FileObject.h"
#include "storage/StreamCalls.h"
#include "text/NativeText.h"

namespace rvf {

ReadWindow::ReadWindow(FileObject& file, i32 size)
    : file_(file),
      size_(size),
      buffer_(static_cast<std::byte*>(std::calloc(static_cast<std::size_t>(size) + kTailRoom, 1))) {
  if (buffer_ == nullptr) {
    throw std::bad_alloc();
  }
}

i64 ReadWindow::fileLength() {
  if (fileLength_ == kUnknown) {
    fileLength_ = file_.GetLength();
  }
  return fileLength_;
}

i64 ReadWindow::streamOffset() {
  if (streamOffset_ == kUnknown) {
    // The file object would report a failed stream. Here the seek that follows does so.
    std::FILE* stream = file_.stream();
    streamOffset_ = stream == nullptr ? file_.Tell() : ftello(stream);
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

bool ReadWindow::moveTo(i64 offset, Failure telling) {
  hasJumped_ = offset != endOffset();
  startOffset_ = offset;
  held_ = 0;
  return moveFileToEnd(telling);
}

bool ReadWindow::moveFileToEnd(Failure telling) {
  if (endOffset() >= 0 && streamOffset() == endOffset()) {
    return true;
  }
  const bool isMoved = endOffset() >= 0 && moveFile(endOffset());
  streamOffset_ = isMoved ? endOffset() : kUnknown;
  if (!isMoved && telling == Failure::kTold) {
    Report(MessageNumber::kFileSeekFailed, file_.name());
  }
  return isMoved;
}

// Bypasses the file object's Seek, which reports failures.
bool ReadWindow::moveFile(i64 offset) {
  if (std::FILE* stream = file_.stream(); stream != nullptr) {
    return fseeko(stream, offset, SEEK_SET) == 0;
  }
  const auto target = static_cast<i32>(offset);
  return file_.Seek(target, SeekOrigin::kStart) == target;
}

i32 ReadWindow::readOn(i64 tail, bool& failed) { return readOn(tail, failed, Failure::kTold); }

i32 ReadWindow::readOn(i64 tail, bool& failed, Failure telling) {
  std::memmove(start(), end() - tail, static_cast<std::size_t>(tail));
  startOffset_ = endOffset() - tail;
  held_ = tail;
  if (!moveFileToEnd(telling)) {
    failed = true;
    return 0;
  }
  const i32 got = readPhysical(nextReadSize(), failed, telling);
  hasJumped_ = false;
  held_ += got;
  streamOffset_ = endOffset();
  return got;
}

// Reads less after a jump, so that the bytes around scattered pages are not read many times over.
i32 ReadWindow::nextReadSize() const {
  constexpr i32 kReadAfterJump = 65536;
  const i64 room = std::min(
      {i64{size_}, size_ + kTailRoom - held_, std::max<i64>(kLongestFile - endOffset(), 0)});
  return static_cast<i32>(hasJumped_ ? std::min<i64>(room, kReadAfterJump) : room);
}

i32 ReadWindow::readPhysical(i32 count, bool& failed, Failure telling) {
  std::FILE* stream = file_.stream();
  if (stream == nullptr) {
    const i32 got = file_.Read(end(), count);
    failed = file_.errorState();
    return got;
  }
  // An earlier reader may have left the stream in a failed state.
  std::clearerr(stream);
  const StreamTransfer got = readBytes(stream, end(), static_cast<std::size_t>(count));
  failed = got.byteCount < static_cast<std::size_t>(count) && std::ferror(stream) != 0;
  if (failed && telling == Failure::kTold) {
    Report(MessageNumber::kFileReadFailed, count, file_.name(), systemErrorText(got.error));
  }
  return static_cast<i32>(got.byteCount);
}

const std::byte* ReadWindow::hold(i64 offset, i64 length) {
  if (length > size_ || (fileLength_ != kUnknown && offset + length > fileLength_)) {
    return nullptr;
  }
  const std::byte* found = find(offset);
  if (found == nullptr && !moveTo(offset, Failure::kUntold)) {
    return nullptr;
  }
  bool failed = false;
  while (endOffset() - offset < length) {
    if (readOn(endOffset() - offset, failed, Failure::kUntold) == 0 || failed) {
      return nullptr;
    }
  }
  return find(offset);
}

void ReadWindow::forget() {
  startOffset_ = 0;
  held_ = 0;
  streamOffset_ = kUnknown;
  fileLength_ = kUnknown;
}

}  // namespace rvf
