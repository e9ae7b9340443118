#pragma once

#include <cstddef>
#include <cstdlib>
#include <memory>

#include "base/Integers.h"

namespace rvf {

class FileObject;

/// The part of a file that is in memory. Archives that load from the same file object one after
/// another share its window, so that going on to the next page costs no extra system calls.
///
/// It also caches what would otherwise take a system call each time: the length of the file and its
/// position after the last read.
class ReadWindow {
 public:
  /// `size` bytes are read at a time. `file` must outlive the window.
  ReadWindow(FileObject& file, i32 size);

  [[nodiscard]] i32 size() const { return size_; }
  [[nodiscard]] std::byte* start() { return buffer_.get(); }
  /// One past the last byte that is in memory, and the offset in the file that it corresponds to.
  [[nodiscard]] std::byte* end() { return buffer_.get() + held_; }
  [[nodiscard]] i64 endOffset() const { return startOffset_ + held_; }
  [[nodiscard]] i64 fileLength();

  /// Empties the window and places it at the file's position.
  void moveToFilePosition();
  /// The byte at `offset` if it is in memory, or end() for the offset just past the window. Null
  /// otherwise.
  [[nodiscard]] std::byte* find(i64 offset);
  /// Empties the window and moves it and the file to `offset`. False if the file cannot seek, which
  /// is reported.
  [[nodiscard]] bool moveTo(i64 offset) { return moveTo(offset, Failure::kTold); }
  /// Keeps the last `tail` bytes and fills the rest of the window after them. Returns the number of
  /// bytes read: 0 at the end of the file or of the addressable range. `failed` is set on a system
  /// error, which is reported.
  [[nodiscard]] i32 readOn(i64 tail, bool& failed);

  /// Brings `length` bytes from `offset` into memory as one block, reusing what is already held.
  /// Null if that is impossible, which is not reported: a reader that continues at `offset` will
  /// run into the failure itself.
  [[nodiscard]] const std::byte* hold(i64 offset, i64 length);

  /// Must be called when the content of the file has changed: everything read so far is discarded.
  void forget();
  /// Must be called when the file's position was changed elsewhere.
  void forgetPosition() { streamOffset_ = kUnknown; }

 private:
  static constexpr i64 kUnknown = -1;
  /// Extra room after the window, for what readers usually carry over: the first bytes of a value
  /// that is cut off by its end.
  static constexpr i32 kTailRoom = 16;

  struct FreeBlock {
    void operator()(std::byte* block) const noexcept { std::free(block); }
  };
  enum class Failure { kTold, kUntold };

  [[nodiscard]] bool moveTo(i64 offset, Failure telling);
  [[nodiscard]] i32 readOn(i64 tail, bool& failed, Failure telling);
  [[nodiscard]] i32 readPhysical(i32 count, bool& failed, Failure telling);
  [[nodiscard]] bool moveFileToEnd(Failure telling);
  [[nodiscard]] bool moveFile(i64 offset);
  [[nodiscard]] i32 nextReadSize() const;
  [[nodiscard]] i64 streamOffset();

  FileObject& file_;
  i32 size_;
  // Zeroed, because values beyond the end of the file are taken from it. calloc leaves this to the
  // system, which zeroes each page of memory on first use.
  std::unique_ptr<std::byte[], FreeBlock> buffer_;
  i64 startOffset_ = 0;  // of the first byte that is held
  i64 held_ = 0;
  bool hasJumped_ = false;       // the next read does not follow the last one
  i64 streamOffset_ = kUnknown;  // the file's position
  i64 fileLength_ = kUnknown;
};

}  // namespace rvf
