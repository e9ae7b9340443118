#include "storage/Archive.h"

#include <algorithm>
#include <cerrno>
#include <limits>

#include "base/Sizes.h"
#include "messages/MessageReporter.h"
#include "storage/StreamCalls.h"
#include "text/NativeText.h"

namespace rvf {

namespace {

// The forms of a string's count. 0xFFFE is never a count: after 0xFF it is the marker of wide text.
constexpr u8 kLongerLength = 0xFF;
constexpr u16 kWideMarker = 0xFFFE;
constexpr u16 kLongestLength = 0xFFFF;
constexpr i32 kShortForms = 255;     // counts below this have one byte
constexpr i32 kMiddleForms = 65534;  // counts below this have three bytes, others seven
constexpr i64 kMarkerFound = -1;

}  // namespace

eArchive::eArchive(FileObject& file, Mode mode, i32 bufferSize, bool flushEachWrite)
    : mode_(mode), flushEachWrite_(flushEachWrite) {
  attach(file, bufferSize);
}

eArchive::eArchive(const eString& path, Mode mode, i32 bufferSize, bool flushEachWrite)
    : mode_(mode), ownFile_(std::make_unique<eDiskFile>()), flushEachWrite_(flushEachWrite) {
  using namespace open_flags;
  const i32 access = isLoading() ? kRead : kWrite | kCreate;
  const bool isOpen = ownFile_->Open(path, access | kUnbuffered, FileContent::kBinary);
  attach(*ownFile_, bufferSize);
  if (!isOpen) {
    Report(MessageNumber::kArchiveOpenFailed, name_, ownFile_->failure());
    failAt(0);
  }
}

void eArchive::attach(FileObject& file, i32 bufferSize) {
  name_ = file.name();
  stream_ = file.stream();
  file_ = &file;
  if (isLoading()) {
    // The view starts empty: the first access fills the window, unless a Seek finds its target in
    // it.
    window_ = &file.readWindow(bufferSize);
    bufferStart_ = window_->start();
    bufferEnd_ = bufferStart_;
    cursor_ = bufferStart_;
  } else {
    makeBuffer(bufferSize);
  }
}

eArchive::eArchive(i32 bufferSize) : mode_(Mode::kStore) { makeBuffer(bufferSize); }

eArchive::~eArchive() {
  try {
    if (file_ != nullptr) {
      eArchive::Flush();
      closeFile();
    }
  } catch (...) {
    // Lost bytes cannot be reported without memory. Callers that need the result flush explicitly.
  }
}

void eArchive::makeBuffer(i32 size) {
  buffer_ = std::make_unique<std::byte[]>(asSize(size));
  bufferStart_ = buffer_.get();
  bufferEnd_ = bufferStart_ + size;
  cursor_ = bufferStart_;
}

void eArchive::takePlace() {
  if (!hasPlace_) {
    hasPlace_ = true;
    window_->moveToFilePosition();
  }
}

void eArchive::lookIntoWindow(std::byte* cursor) {
  bufferStart_ = window_->start();
  bufferEnd_ = window_->end();
  cursor_ = cursor;
}

// False if nothing could be read. From then on, loads return the bytes at the start of the window.
bool eArchive::readOn(i64 tail) {
  takePlace();
  bool hasError = false;
  const bool isMore = !isExhausted_ && window_->readOn(tail, hasError) > 0;
  if (hasError) {
    failAt(window_->endOffset());
  }
  if (isMore) {
    lookIntoWindow(window_->start());
    isExhausted_ = hasError;
    return true;
  }
  isExhausted_ = true;
  cursor_ = window_->start();
  bufferEnd_ = window_->start();
  return false;
}

void eArchive::Fill(i32 needed) {
  const i64 tail = unread();
  if (!readOn(tail)) {
    failAt(window_->endOffset() - tail);
  } else if (unread() < needed) {
    markDamaged();
  }
}

// Everything before the first failure is valid, so the offset of that failure is the one to report.
void eArchive::failAt(i64 offset) {
  if (!failed_) {
    failed_ = true;
    failureOffset_ = offset;
  }
}

i64 eArchive::currentOffset() {
  if (!isLoading()) {
    return storeCount_ + (cursor_ - bufferStart());
  }
  takePlace();
  return window_->endOffset() - unread();
}

i32 eArchive::ReadRaw(void* destination, i32 count) {
  auto* out = static_cast<std::byte*>(destination);
  i32 remaining = std::max(count, 0);
  while (remaining > 0) {
    const auto taken = static_cast<i32>(std::min<i64>(unread(), remaining));
    if (taken > 0) {
      std::memcpy(out, cursor_, asSize(taken));
      cursor_ += taken;
      out += taken;
      remaining -= taken;
      continue;
    }
    if (isExhausted_ || !readOn(0)) {
      break;
    }
  }
  return std::max(count, 0) - remaining;
}

bool eArchive::ReadWhole(void* destination, i32 count) {
  const i32 got = ReadRaw(destination, count);
  if (got == std::max(count, 0)) {
    return true;
  }
  failAt(window_->endOffset() - got);
  return false;
}

void eArchive::skip(i32 count) {
  for (i32 remaining = count; remaining > 0;) {
    if (unread() == 0) {
      Fill(1);
      if (failed_) {
        return;
      }
    }
    const auto taken = static_cast<i32>(std::min<i64>(unread(), remaining));
    cursor_ += taken;
    remaining -= taken;
  }
}

void eArchive::WriteRaw(const void* source, i64 count) {
  const auto* in = static_cast<const std::byte*>(source);
  for (i64 remaining = count; remaining > 0 && !failed_;) {
    if (cursor_ == bufferEnd_) {
      Flush();
    }
    const i64 taken = std::min<i64>(bufferEnd_ - cursor_, remaining);
    std::memcpy(cursor_, in, asSize(taken));
    cursor_ += taken;
    in += taken;
    remaining -= taken;
  }
}

void eArchive::writePhysical(i32 count) {
  file_->contentChanged();
  if (stream_ == nullptr) {
    file_->Write(bufferStart(), count);
    if (file_->errorState()) {
      failAt(storeCount_);
    }
    storeCount_ += count;
    return;
  }
  const StreamTransfer written = writeBytes(stream_, bufferStart(), asSize(count));
  storeCount_ += static_cast<i64>(written.byteCount);
  const bool isFlushed = !flushEachWrite_ || std::fflush(stream_) == 0;
  if (written.byteCount < asSize(count) || !isFlushed) {
    const int error = isFlushed ? written.error : errno;
    Report(MessageNumber::kArchiveWriteFailed, name_, systemErrorText(error), count);
    failAt(storeCount_);
  }
}

void eArchive::Flush() {
  if (isLoading() || cursor_ == bufferStart()) {
    return;
  }
  if (file_ != nullptr && !failed_) {
    writePhysical(static_cast<i32>(cursor_ - bufferStart()));
  }
  // Without a file the bytes are dropped, so a store always has room.
  cursor_ = bufferStart();
}

void eArchive::Close() {
  Flush();
  closeFile();
}

void eArchive::closeFile() {
  if (ownFile_ != nullptr && ownFile_->isOpen()) {
    errno = 0;
    if (std::fclose(ownFile_->releaseStream()) != 0) {
      Report(MessageNumber::kArchiveCloseFailed, name_, systemErrorText(errno));
      failAt(storeCount_);
    }
  }
  stream_ = nullptr;
  file_ = nullptr;
}

void eArchive::abandon() {
  cursor_ = bufferStart();
  stream_ = nullptr;
  file_ = nullptr;
}

i32 eArchive::Seek(i32 offset) {
  if (file_ == nullptr) {
    return -1;
  }
  if (!isLoading()) {
    Flush();
    storeCount_ = offset;
    const i32 reached = file_->Seek(offset, SeekOrigin::kStart);
    if (reached != offset) {
      failAt(offset);
    }
    return reached;
  }
  hasPlace_ = true;
  isExhausted_ = false;
  if (std::byte* held = window_->find(offset)) {
    lookIntoWindow(held);
    return offset;
  }
  const bool isMoved = window_->moveTo(offset);
  if (!isMoved) {
    failAt(offset);
    isExhausted_ = true;  // a read would only be refused again
  }
  lookIntoWindow(window_->end());
  return isMoved ? offset : -1;
}

i64 eArchive::GetPosition() {
  if (isLoading()) {
    return currentOffset();
  }
  if (stream_ != nullptr) {
    Flush();
    return storeCount_;
  }
  const i64 base = file_ == nullptr ? storeCount_ : file_->Tell();
  return base + (cursor_ - bufferStart());
}

i32 eArchive::checkedCount(i64 count, i32 smallestItem) {
  if (count <= 0 || failed_) {
    return 0;
  }
  if (count > std::numeric_limits<i32>::max() || count * smallestItem > bytesLeft()) {
    markDamaged();
    return 0;
  }
  return static_cast<i32>(count);
}

void eArchive::markDamaged() {
  markFailed();
  if (!damageReported_) {
    damageReported_ = Report(MessageNumber::kArchiveDamaged, u"Exception in eArchive class.") != 0;
  }
}

void eArchive::markTooNew(const NewerRecord& record) {
  if (!failed_) {
    newerRecord_ = record;
    damageReported_ = true;
  }
  markFailed();
}

// -1 means the wide marker. A count from the file is never negative.
i64 eArchive::readLength() {
  const u8 shortForm = ReadU8();
  if (shortForm != kLongerLength) {
    return shortForm;
  }
  const u16 middleForm = ReadU16();
  if (middleForm == kWideMarker) {
    return kMarkerFound;
  }
  return middleForm == kLongestLength ? std::max(ReadI32(), 0) : middleForm;
}

void eArchive::writeLength(i32 length) {
  if (length < kShortForms) {
    WriteU8(static_cast<u8>(length));
    return;
  }
  WriteU8(kLongerLength);
  if (length < kMiddleForms) {
    WriteU16(static_cast<u16>(length));
    return;
  }
  WriteU16(kLongestLength);
  WriteI32(length);
}

void eArchive::ReadString(eString& target) {
  const i64 count = readLength();
  if (count == kMarkerFound) {
    readMarkedString(target, readLength());
  } else {
    readUnmarkedString(target, count);
  }
}

void eArchive::readMarkedString(eString& target, i64 storedCount) {
  const i32 count = checkedCount(storedCount, sizeof(char16_t));
  if (failed_) {
    return;
  }
  const i32 byteCount = count * static_cast<i32>(sizeof(char16_t));
  if (wideStrings_) {
    ReadWhole(target.getBufferSetLength(count), byteCount);
    return;
  }
  // In a narrow file, a text ends at its first zero character, and a short read leaves the old
  // text.
  eString text;
  if (ReadWhole(text.getBufferSetLength(count), byteCount)) {
    const auto length = static_cast<i32>(text.text().size());
    target.AssignCounted(length, text.c_str());
  }
}

void eArchive::readUnmarkedString(eString& target, i64 storedCount) {
  const i32 count = checkedCount(storedCount, 1);
  if (failed_) {
    return;
  }
  if (wideStrings_) {
    char16_t* chars = target.getBufferSetLength(count);
    std::fill_n(chars, count, u'\0');
    ReadWhole(chars, count);
    return;
  }
  scratch_.resize(asSize(count));
  if (!ReadWhole(scratch_.data(), count)) {
    return;
  }
  const auto end = std::find(scratch_.begin(), scratch_.end(), u8{0});
  const auto length = static_cast<i32>(end - scratch_.begin());
  std::copy(scratch_.begin(), end, target.getBufferSetLength(length));
}

void eArchive::WriteString(const eString& text) {
  if (wideStrings_) {
    WriteU8(kLongerLength);
    WriteU16(kWideMarker);
  }
  // Quirk that stays: without wide strings the characters still have two bytes each but no marker,
  // a form that no reader understands. Everything that a run stores is stored wide.
  writeLength(text.length());
  WriteRaw(text.c_str(), i64{text.length()} * static_cast<i64>(sizeof(char16_t)));
}

i64 eCountingArchive::countedBytes() {
  Flush();
  return storeCount_;
}

void eCountingArchive::Flush() {
  storeCount_ += cursor_ - bufferStart();
  cursor_ = bufferStart();
}

}  // namespace rvf
