#pragma once

#include "storage/FileObject.h"

namespace rvf {

/// A file on disk, through a stdio stream.
class eDiskFile : public FileObject {
 public:
  eDiskFile() = default;
  /// Closes the file if it is still open; a failed close is reported.
  ~eDiskFile() override;

  [[nodiscard]] bool IsMemory() const override { return false; }
  /// Both report kFileSeekFailed when the system call fails; Tell then returns 0.
  [[nodiscard]] i64 GetLength() override;
  [[nodiscard]] i32 Tell() override;
  i32 GetPos(i64& position) override;
  i32 SetPos(i64 position) override;
  /// Does nothing: a file on disk has the length of what was written to it.
  void SetLength(i32) override {}
  /// Anything that could block or be read forever is refused before it is opened: for reading,
  /// everything but regular files (EISDIR for a directory, EINVAL for the others, which kSequential
  /// allows); for writing, a FIFO without a reader. A file too long to be addressed is also refused
  /// for reading (EFBIG).
  [[nodiscard]] bool Open(const eString& path, i32 flags, FileContent content) override;
  /// Returns 1 if all bytes were written, otherwise 0: items, not bytes. Reports kFileWriteFailed.
  i32 Write(const void* source, i32 count) override;
  /// Reports kFileSeekFailed.
  i32 Seek(i32 offset, SeekOrigin origin) override;
  /// Reports kFileReadFailed for an error, not for the end of the file.
  i32 Read(void* destination, i32 count) override;
  /// Reports kFileNotOpen for a file that is already closed and kFileCloseFailed if buffered bytes
  /// were lost. The file is closed in any case.
  void Close() override;
  [[nodiscard]] std::FILE* stream() const override { return stream_; }
  /// Hands the open stream over to the caller, who closes it. The file is then considered closed.
  [[nodiscard]] std::FILE* releaseStream();
  /// Whether anything was written, and the first letter of how the file was opened (r, w, a). Part
  /// of the interface.
  [[nodiscard]] bool isDirty() const { return isDirty_; }
  [[nodiscard]] char16_t openMode() const { return openMode_; }

  /// The size of the file if the last Open refused it as too large, otherwise 0.
  [[nodiscard]] i64 refusedLength() const { return refusedLength_; }

 private:
  void closeStream();

  std::FILE* stream_ = nullptr;
  i64 refusedLength_ = 0;
  bool isDirty_ = false;
  char16_t openMode_ = 0;
};

}  // namespace rvf
