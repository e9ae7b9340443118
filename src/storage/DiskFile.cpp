#include "storage/DiskFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <limits>
#include <string>
#include <utility>

#include "messages/MessageReporter.h"
#include "storage/StreamCalls.h"
#include "text/NativeText.h"

namespace rvf {

namespace {

std::string modeString(i32 flags, FileContent content) {
  std::string mode;
  if ((flags & open_flags::kCreate) != 0) {
    mode = (flags & open_flags::kAppend) != 0 ? "a" : "w";
  } else {
    switch (flags & open_flags::kAccessMask) {
      case open_flags::kRead:
        mode = "r";
        break;
      case open_flags::kWrite:
        mode = "w";
        break;
      case open_flags::kReadWrite:
        mode = "r+";
        break;
      default:
        break;
    }
  }
  return content == FileContent::kText ? mode : mode + "b";
}

/// A stream, or null and the system's error number.
struct OpenedStream {
  std::FILE* stream = nullptr;
  int error = 0;
};

OpenedStream openStream(const std::string& path, const std::string& mode) {
  std::FILE* stream = nullptr;
  do {
    stream = std::fopen(path.c_str(), mode.c_str());
  } while (stream == nullptr && errno == EINTR);
  return {stream, stream == nullptr ? errno : 0};
}

/// An ordinary open for writing would block until there is a reader; this one fails with ENXIO if
/// there is none.
OpenedStream openFifoForWriting(const std::string& path, const std::string& mode) {
  const int descriptor = open(path.c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC);
  if (descriptor < 0) {
    return {nullptr, errno};
  }
  std::FILE* stream =
      fcntl(descriptor, F_SETFL, 0) == 0 ? fdopen(descriptor, mode.c_str()) : nullptr;
  if (stream == nullptr) {
    const int error = errno;
    close(descriptor);
    return {nullptr, error};
  }
  return {stream, 0};
}

}  // namespace

eDiskFile::~eDiskFile() {
  try {
    if (stream_ != nullptr) {
      closeStream();
    }
  } catch (...) {
    // A failed close cannot be reported without memory. Callers that need the result close the file
    // explicitly.
  }
}

i64 eDiskFile::GetLength() {
  if (stream_ == nullptr) {
    return -1;
  }
  const off_t position = ftello(stream_);
  if (position >= 0 && fseeko(stream_, 0, SEEK_END) == 0) {
    const off_t length = ftello(stream_);
    if (fseeko(stream_, position, SEEK_SET) == 0) {
      return length;
    }
  }
  Report(MessageNumber::kFileSeekFailed, name_);
  return -1;
}

i32 eDiskFile::Tell() {
  i64 position = 0;
  if (GetPos(position) != 0) {
    if (stream_ != nullptr) {
      Report(MessageNumber::kFileSeekFailed, name_);
    }
    return 0;
  }
  return position > std::numeric_limits<i32>::max() ? 0 : static_cast<i32>(position);
}

i32 eDiskFile::GetPos(i64& position) {
  if (stream_ == nullptr) {
    return -1;
  }
  position = ftello(stream_);
  return position < 0 ? -1 : 0;
}

i32 eDiskFile::SetPos(i64 position) {
  positionChanged();
  return stream_ != nullptr && fseeko(stream_, position, SEEK_SET) == 0 ? 0 : -1;
}

bool eDiskFile::Open(const eString& path, i32 flags, FileContent content) {
  if (stream_ != nullptr) {
    closeStream();
  }
  contentChanged();
  name_ = path;
  failure_ = eString();
  refusedLength_ = 0;
  const std::string nativePath = toNative(path.text());
  const std::string mode = modeString(flags, content);
  struct stat status {};
  const bool exists = stat(nativePath.c_str(), &status) == 0;
  OpenedStream opened;
  if (!exists && errno != ENOENT) {
    // The kind of file is unknown, so opening it might block forever.
    opened.error = errno;
  } else if (exists && S_ISDIR(status.st_mode)) {
    opened.error = EISDIR;
  } else if (exists && mode.starts_with('r') && !S_ISREG(status.st_mode) &&
             (flags & open_flags::kSequential) == 0) {
    opened.error = EINVAL;
    failure_ = u"Not a regular file";
  } else if (exists && mode.starts_with('r') && status.st_size > kLongestFile) {
    opened.error = EFBIG;
    refusedLength_ = status.st_size;
  } else {
    const bool isFifo = exists && S_ISFIFO(status.st_mode) && !mode.starts_with('r');
    opened = isFifo ? openFifoForWriting(nativePath, mode) : openStream(nativePath, mode);
  }
  stream_ = opened.stream;
  isOpen_ = stream_ != nullptr;
  errorState_ = !isOpen_;
  openMode_ = static_cast<char16_t>(mode[0]);
  if (!isOpen_ && failure_.isEmpty()) {
    failure_ = systemErrorText(opened.error);
  }
  if (isOpen_ && (flags & open_flags::kUnbuffered) != 0) {
    std::setvbuf(stream_, nullptr, _IONBF, 0);
  }
  return isOpen_;
}

i32 eDiskFile::Write(const void* source, i32 count) {
  if (count == 0) {
    return 0;
  }
  contentChanged();
  const auto size = static_cast<std::size_t>(count);
  const StreamTransfer moved =
      stream_ == nullptr ? StreamTransfer() : writeBytes(stream_, source, size);
  const bool written = moved.byteCount == size;
  errorState_ = !written;
  failure_ = written ? eString() : systemErrorText(moved.error);
  isDirty_ = isDirty_ || written;
  if (!written) {
    Report(MessageNumber::kFileWriteFailed, count, name_, failure_);
  }
  return written ? 1 : 0;
}

i32 eDiskFile::Seek(i32 offset, SeekOrigin origin) {
  if (stream_ == nullptr) {
    return -1;
  }
  positionChanged();
  if (std::feof(stream_) != 0) {
    std::clearerr(stream_);
  }
  int whence = SEEK_SET;
  if (origin == SeekOrigin::kCurrent) {
    whence = SEEK_CUR;
  } else if (origin == SeekOrigin::kEnd) {
    whence = SEEK_END;
  }
  if (fseeko(stream_, offset, whence) != 0) {
    Report(MessageNumber::kFileSeekFailed, name_);
    return -1;
  }
  return Tell();
}

i32 eDiskFile::Read(void* destination, i32 count) {
  if (stream_ == nullptr) {
    errorState_ = true;
    return 0;
  }
  positionChanged();
  const StreamTransfer got = readBytes(stream_, destination, static_cast<std::size_t>(count));
  atEnd_ = std::feof(stream_) != 0;
  errorState_ = std::ferror(stream_) != 0;
  if (errorState_) {
    Report(MessageNumber::kFileReadFailed, count, name_, systemErrorText(got.error));
  }
  return static_cast<i32>(got.byteCount);
}

void eDiskFile::Close() {
  if (!isOpen_) {
    Report(MessageNumber::kFileNotOpen, name_);
    return;
  }
  closeStream();
}

std::FILE* eDiskFile::releaseStream() {
  isOpen_ = false;
  return std::exchange(stream_, nullptr);
}

// The stream is released before anything is reported: if the report ran out of memory, it would
// otherwise be closed twice.
void eDiskFile::closeStream() {
  std::FILE* const stream = releaseStream();
  errno = 0;
  if (std::fclose(stream) != 0) {
    Report(MessageNumber::kFileCloseFailed, name_, systemErrorText(errno));
  }
}

}  // namespace rvf
