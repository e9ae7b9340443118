#pragma once

#include <cstddef>
#include <exception>
#include <memory>

#include "storage/DiskFile.h"

namespace rvf {

/// A memory file had to grow but may not, or there was no memory.
class eMemException final : public std::exception {
 public:
  [[nodiscard]] const char* what() const noexcept override {
    return "Exception in eMemFile class.";
  }
};

/// A file in a growing block of memory, used to assemble the sections of a record. The inherited
/// Open is not called by a run: archives would use the stream that it opens, while the file's own
/// operations still use the block.
class eMemFile final : public eDiskFile {
 public:
  /// An empty file that owns its block. `growBy` is the size of the first allocation; later ones
  /// double. 0: the block may not grow.
  explicit eMemFile(i32 growBy);
  /// A file on a block that stays the caller's. With `growBy` 0, its `size` bytes are the content;
  /// otherwise the file is empty, and a block that it outgrows is replaced by its own.
  eMemFile(std::byte* block, i32 size, i32 growBy);

  /// Switches to another block, with the rules of the constructor.
  void Attach(std::byte* block, i32 size, i32 growBy);
  /// Gives up the block that the file owns and leaves the file empty.
  [[nodiscard]] std::unique_ptr<std::byte[]> Detach();

  [[nodiscard]] i32 capacity() const { return capacity_; }
  [[nodiscard]] const std::byte* data() const { return buffer_; }

  [[nodiscard]] bool IsMemory() const override { return true; }
  [[nodiscard]] i64 GetLength() override { return length_; }
  [[nodiscard]] i32 Tell() override { return position_; }
  i32 GetPos(i64&) override { return 0; }
  i32 SetPos(i64) override { return 0; }
  /// Grows the block if needed, and moves the position back to `size` if it is beyond that.
  void SetLength(i32 size) override;
  /// Returns `count`. Throws eMemException if the block cannot grow.
  i32 Write(const void* source, i32 count) override;
  /// The target may lie beyond the end; a negative one gives -1 and moves nothing.
  i32 Seek(i32 offset, SeekOrigin origin) override;
  i32 Read(void* destination, i32 count) override;
  /// Empties the file and frees the block if the file owns it.
  void Close() override;

 private:
  void GrowTo(i64 size);

  i32 growBy_ = 0;
  i32 position_ = 0;
  i32 capacity_ = 0;
  i32 length_ = 0;  // the highest offset written, or the length that was set
  std::byte* buffer_ = nullptr;
  std::unique_ptr<std::byte[]> owned_;  // the block, if the file owns it
};

}  // namespace rvf
