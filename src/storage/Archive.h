#pragma once

#include <cstddef>
#include <cstdio>
#include <cstring>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "base/Integers.h"
#include "storage/DiskFile.h"
#include "storage/FileObject.h"
#include "storage/ReadWindow.h"
#include "text/eString.h"

namespace rvf {

/// A record whose version is above the highest that this program knows.
struct NewerRecord {
  const char16_t* label = nullptr;  // what kind of record; a literal
  i32 version = 0;
  i32 highest = 0;
};

/// The buffered, typed stream through which all binary files are read and written: fixed-width
/// little-endian integers, raw bytes, strings, versioned records (RecordFrame.h). An archive lives
/// for one pass over a file object, which it either owns or is outlived by.
///
/// Any failure sets `failed`, which is never cleared; an archive throws no exceptions. A failed
/// archive drops what is stored, but loads continue and return stale bytes from the buffer. Readers
/// therefore test `failed` before each item and pass every count through checkedCount before they
/// allocate anything for it.
class eArchive {
 public:
  enum class Mode : u32 { kStore = 0, kLoad = 1 };

  /// The buffers for the files of a run, and for measuring and assembling sections.
  static constexpr i32 kFileBufferSize = 65536;
  /// The window of the capture files, large enough to hold most pages whole.
  static constexpr i32 kCaptureWindowSize = 262144;
  static constexpr i32 kSectionBufferSize = 4096;

  /// Starts at the file's current position. Archives that load from the same file share its window,
  /// so only one of them may be in use at a time; a storing archive has its own buffer. With
  /// `flushEachWrite`, the stream is flushed after every physical write.
  eArchive(FileObject& file, Mode mode, i32 bufferSize, bool flushEachWrite = false);
  /// Opens the file and owns it: an existing file for loading, an empty one for storing. Reports
  /// kArchiveOpenFailed and sets `failed` if it cannot be opened. Part of the interface; a run
  /// opens its files itself.
  eArchive(const eString& path, Mode mode, i32 bufferSize, bool flushEachWrite = false);
  eArchive(const eArchive&) = delete;
  eArchive& operator=(const eArchive&) = delete;
  /// Closes the archive if it is still attached to its file.
  virtual ~eArchive();

  [[nodiscard]] bool isLoading() const { return mode_ == Mode::kLoad; }
  [[nodiscard]] bool failed() const { return failed_; }
  /// The file offset of the first failure; -1 if there was none.
  [[nodiscard]] i64 failureOffset() const { return failureOffset_; }
  /// Set only if the archive failed because of a record that is too new.
  [[nodiscard]] const std::optional<NewerRecord>& newerRecord() const { return newerRecord_; }
  [[nodiscard]] const eString& name() const { return name_; }

  /// Whether text has two bytes per character. Initially on.
  [[nodiscard]] bool wideStrings() const { return wideStrings_; }
  void setWideStrings(bool wide) { wideStrings_ = wide; }

  [[nodiscard]] u8 ReadU8() { return load<u8>(); }
  [[nodiscard]] u16 ReadU16() { return load<u16>(); }
  [[nodiscard]] i16 ReadI16() { return load<i16>(); }
  [[nodiscard]] i32 ReadI32() { return load<i32>(); }
  [[nodiscard]] u32 ReadU32() { return load<u32>(); }
  [[nodiscard]] i64 ReadI64() { return load<i64>(); }
  [[nodiscard]] f64 ReadF64() { return load<f64>(); }

  void WriteU8(u8 value) { store(value); }
  void WriteU16(u16 value) { store(value); }
  void WriteI16(i16 value) { store(value); }
  void WriteI32(i32 value) { store(value); }
  void WriteU32(u32 value) { store(value); }
  void WriteI64(i64 value) { store(value); }
  void WriteF64(f64 value) { store(value); }

  /// Returns the number of bytes read. The caller must test for a short count.
  [[nodiscard]] i32 ReadRaw(void* destination, i32 count);
  /// Like ReadRaw, but a short read sets `failed`.
  bool ReadWhole(void* destination, i32 count);
  /// Skips `count` bytes; sets `failed` if there are fewer.
  void skip(i32 count);
  void WriteRaw(const void* source, i64 count);

  /// A string is a count and its characters, preceded by the marker FF FE FF if they have two bytes
  /// each. The bytes of an unmarked string in a file of wide text end up packed into the front of
  /// the characters: unusable as text, but compared as they are.
  void ReadString(eString& target);
  void WriteString(const eString& text);

  /// Moves to an absolute offset. Returns it, or -1 if the file cannot seek (reported). Does not
  /// clear `failed`.
  i32 Seek(i32 offset);
  [[nodiscard]] i64 GetPosition();
  /// When loading, the offset just past the bytes in the buffer. Part of the interface.
  [[nodiscard]] i64 loadPosition() const { return window_->endOffset(); }
  /// When storing, the offset just past the bytes that have left the buffer. Part of the interface.
  [[nodiscard]] i64 storeCount64() const { return storeCount_; }
  /// Writes the buffer to the file. If bytes are lost, reports kArchiveWriteFailed and sets
  /// `failed`.
  virtual void Flush();
  /// Flushes and detaches from the file, which stays open unless the archive owns it. Reports
  /// kArchiveCloseFailed if closing an owned file loses bytes.
  void Close();
  /// Discards the buffer and detaches from the file: for an output that is given up.
  void abandon();

  /// The bytes in memory, starting with the next one to load.
  [[nodiscard]] std::span<const std::byte> held() const {
    return {cursor_, static_cast<std::size_t>(unread())};
  }
  /// Skips held bytes, up to `next`.
  void advanceTo(const std::byte* next) { cursor_ += next - cursor_; }

  /// Bytes from the position to the end of the file as it was when the archive was made.
  [[nodiscard]] i64 bytesLeft() {
    takePlace();
    return window_->fileLength() - window_->endOffset() + unread();
  }
  /// The number of items to read for a count found in the file. A negative count gives 0. So does a
  /// count of items that would not fit into the remaining bytes at `smallestItem` bytes each, which
  /// is treated as damage.
  [[nodiscard]] i32 checkedCount(i64 count, i32 smallestItem);
  /// For bytes that no writer can have produced: sets `failed` and reports kArchiveDamaged, once
  /// per archive.
  void markDamaged();
  /// Sets `failed` and nothing else.
  void markFailed() { failAt(currentOffset()); }
  /// For a record that is newer than this program, so that its end cannot be found. Sets `failed`
  /// and newerRecord and reports nothing, now or later; the caller decides what to do with the
  /// file.
  void markTooNew(const NewerRecord& record);

 protected:
  /// An archive without a file, for the measuring pass.
  explicit eArchive(i32 bufferSize);

  [[nodiscard]] std::byte* bufferStart() { return bufferStart_; }

  i64 storeCount_ = 0;           // bytes physically written, reset by Seek
  std::byte* cursor_ = nullptr;  // the next byte to load or store

 private:
  void closeFile();
  template <class T>
  T load() {
    if (bufferEnd_ - cursor_ < static_cast<std::ptrdiff_t>(sizeof(T))) [[unlikely]] {
      Fill(sizeof(T));
    }
    T value;
    std::memcpy(&value, cursor_, sizeof(T));
    cursor_ += sizeof(T);
    return value;
  }

  template <class T>
  void store(T value) {
    if (failed_) {
      return;
    }
    if (bufferEnd_ - cursor_ < static_cast<std::ptrdiff_t>(sizeof(T))) [[unlikely]] {
      Flush();
    }
    std::memcpy(cursor_, &value, sizeof(T));
    cursor_ += sizeof(T);
  }

  void Fill(i32 needed);
  void failAt(i64 offset);
  [[nodiscard]] i64 currentOffset();
  void attach(FileObject& file, i32 bufferSize);
  void makeBuffer(i32 size);
  void takePlace();
  void lookIntoWindow(std::byte* cursor);
  [[nodiscard]] bool readOn(i64 tail);
  void writePhysical(i32 count);
  [[nodiscard]] i64 unread() const { return cursor_ < bufferEnd_ ? bufferEnd_ - cursor_ : 0; }
  [[nodiscard]] i64 readLength();
  void writeLength(i32 length);
  void readMarkedString(eString& target, i64 storedCount);
  void readUnmarkedString(eString& target, i64 storedCount);

  bool wideStrings_ = true;
  Mode mode_;
  eString name_;
  std::unique_ptr<eDiskFile> ownFile_;  // of an archive that opened it
  std::FILE* stream_ = nullptr;         // the file object's, used directly if there is one
  FileObject* file_ = nullptr;          // not owned
  bool flushEachWrite_ = false;
  ReadWindow* window_ = nullptr;         // loading: the file's
  std::unique_ptr<std::byte[]> buffer_;  // storing
  std::byte* bufferStart_ = nullptr;
  /// When loading, one past the last valid byte; when storing, one past the buffer.
  std::byte* bufferEnd_ = nullptr;
  bool failed_ = false;
  i64 failureOffset_ = -1;
  std::optional<NewerRecord> newerRecord_;
  bool damageReported_ = false;  // or must never be
  bool hasPlace_ = false;        // loading: the window is at this archive's position
  bool isExhausted_ = false;     // the file has ended or refused a read: no more are tried
  std::vector<u8> scratch_;
};

/// Counts the bytes stored into it, to find the length of a section before it is written. It has no
/// file.
class eCountingArchive final : public eArchive {
 public:
  eCountingArchive() : eArchive(kSectionBufferSize) {}
  /// The bytes stored so far. Flushes.
  [[nodiscard]] i64 countedBytes();

  void Flush() override;
};

}  // namespace rvf
