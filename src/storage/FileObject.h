#pragma once

#include <cstdio>
#include <memory>

#include "base/Integers.h"
#include "storage/ReadWindow.h"
#include "text/eString.h"

namespace rvf {

/// Bytes of the longest file that can be addressed: offsets on disk are signed 32-bit values.
constexpr i64 kLongestFile = 2147483647;

/// What an offset passed to Seek is relative to.
enum class SeekOrigin : i32 { kStart = 0, kCurrent = 1, kEnd = 2 };

/// How a file is opened.
namespace open_flags {
constexpr i32 kRead = 0;
constexpr i32 kWrite = 1;
constexpr i32 kReadWrite = 2;
constexpr i32 kAccessMask = 0xF;
constexpr i32 kCreate = 0x1000;  // creates or empties, whatever the access
constexpr i32 kAppend = 0x2000;  // with kCreate: keeps the content and appends to it
/// Every read and write goes straight to the system, so that a failing write is reported where it
/// happens: for archives, which have their own buffer, and for the message file.
constexpr i32 kUnbuffered = 0x10000;
/// The file is only read from front to end, so that it may be a pipe or a device.
constexpr i32 kSequential = 0x20000;
}  // namespace open_flags

/// Whether line ends are left as they are or translated to the system's.
enum class FileContent { kBinary, kText };

/// One interface for files on disk and blocks of memory. Failures are reported by message number,
/// as documented for each operation, and set errorState.
class FileObject {
 public:
  FileObject() = default;
  FileObject(const FileObject&) = delete;
  FileObject& operator=(const FileObject&) = delete;
  virtual ~FileObject() = default;

  [[nodiscard]] virtual bool IsMemory() const = 0;
  /// Bytes in the file; the position does not change. -1 if the length is unknown.
  [[nodiscard]] virtual i64 GetLength() = 0;
  [[nodiscard]] virtual i32 Tell() = 0;
  /// The position in 64 bits; -1 when the file is not open.
  virtual i32 GetPos(i64& position) = 0;
  virtual i32 SetPos(i64 position) = 0;
  virtual void SetLength(i32 size) = 0;
  /// Returns whether the file was opened. A failure is not reported, since only the caller knows
  /// what it means; `failure` gives the reason.
  [[nodiscard]] virtual bool Open(const eString& path, i32 flags, FileContent content) = 0;
  /// The result depends on the kind of file (see the classes); errorState says whether it failed.
  virtual i32 Write(const void* source, i32 count) = 0;
  /// Returns the new position, or -1.
  virtual i32 Seek(i32 offset, SeekOrigin origin) = 0;
  /// Returns the number of bytes read: fewer than requested at the end of the file or on an error.
  virtual i32 Read(void* destination, i32 count) = 0;
  virtual void Close() = 0;
  /// The underlying stdio stream, for an archive that uses it directly; null if there is none.
  [[nodiscard]] virtual std::FILE* stream() const { return nullptr; }

  /// The window shared by all archives that load from this file; it reads `size` bytes at a time.
  /// Only one archive may load at a time.
  [[nodiscard]] ReadWindow& readWindow(i32 size) {
    if (window_ == nullptr || window_->size() != size) {
      window_ = std::make_unique<ReadWindow>(*this, size);
    }
    return *window_;
  }
  /// Must be called after the file was written to behind this object's back.
  void contentChanged() {
    if (window_ != nullptr) {
      window_->forget();
    }
  }

  /// The path, for messages.
  [[nodiscard]] const eString& name() const { return name_; }
  [[nodiscard]] bool isOpen() const { return isOpen_; }
  [[nodiscard]] bool errorState() const { return errorState_; }
  [[nodiscard]] bool atEnd() const { return atEnd_; }
  /// Why the last Open or Write failed, as text; empty if it did not.
  [[nodiscard]] const eString& failure() const { return failure_; }

 protected:
  void positionChanged() {
    if (window_ != nullptr) {
      window_->forgetPosition();
    }
  }

  eString name_;
  eString failure_;
  bool isOpen_ = false;
  bool errorState_ = false;  // the last operation failed
  bool atEnd_ = false;       // the last read reached the end of the file

 private:
  std::unique_ptr<ReadWindow> window_;
};

}  // namespace rvf
