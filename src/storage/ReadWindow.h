#pragma once

#include <cstddef>
#include <cstdlib>
#include <memory>

#include "base/Integers.h"

namespace rvf {

class FileObject;

/// The stretch of a file that is in memory. The archives that load from one file object, one after
/// the other, share its window: a page that follows the last one costs no more of the system than
/// its own bytes.
///
/// It keeps track of what the file has to be asked for only once: its length, and where it stands
/// after the last read.
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

  /// Empties the window at the place where the file stands.
  void moveToFilePosition();
  /// The byte at `offset`, if it is in memory; its end counts too. Null otherwise.
  [[nodiscard]] std::byte* find(i64 offset);
  /// Empties the window at `offset` and moves the file there. False if the file refuses, which is
  /// reported.
  [[nodiscard]] bool moveTo(i64 offset) { return moveTo(offset, Failure::kTold); }
  /// Keeps the last `tail` bytes and reads on behind them, into all the room there is. Returns the
  /// bytes that came: 0 at the end of the file, or of what can be addressed. `failed` tells of an
  /// error of the system below, which is reported.
  [[nodiscard]] i32 readOn(i64 tail, bool& failed);

  /// Makes `length` bytes from `offset` on stand in memory together, as far as the file and the
  /// window have room, and keeps what stands there already. Null if they cannot all be had, which
  /// nobody is told: a reader that goes on from `offset` meets the failure itself.
  [[nodiscard]] const std::byte* hold(i64 offset, i64 length);

  /// The content of the file has changed: nothing that was read holds any more.
  void forget();
  /// Somebody else has moved the file.
  void forgetPosition() { streamOffset_ = kUnknown; }

 private:
  static constexpr i64 kUnknown = -1;
  /// Behind the window, for what a reader usually carries over: the rest of a value that its end
  /// cuts.
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
  // Zeroed, since a value behind the end of the file is taken from what stands here; by the system,
  // which does it for a page of memory at the moment it is first used.
  std::unique_ptr<std::byte[], FreeBlock> buffer_;
  i64 startOffset_ = 0;  // of the first byte that is held
  i64 held_ = 0;
  bool hasJumped_ = false;       // the next read does not follow the last one
  i64 streamOffset_ = kUnknown;  // where the file stands
  i64 fileLength_ = kUnknown;
};

}  // namespace rvf
