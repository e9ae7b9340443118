#include "storage/DiskFile.h"

#include <sys/stat.h>

#include <cerrno>
#include <limits>
#include <string>

#include "messages/MessageReporter.h"
#include "text/NativeText.h"

namespace rvf {

namespace {

std::string modeString(i32 flags, bool isText) {
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
  return isText ? mode : mode + "b";
}

bool isDirectory(const std::string& path) {
  struct stat status {};
  return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

}  // namespace

eDiskFile::~eDiskFile() {
  if (isOpen_) {
    closeStream();
  }
}

i64 eDiskFile::GetLength() {
  if (stream_ == nullptr) {
    return -1;
  }
  const off_t position = ftello(stream_);
  if (position < 0 || fseeko(stream_, 0, SEEK_END) != 0) {
    return -1;
  }
  const off_t length = ftello(stream_);
  return fseeko(stream_, position, SEEK_SET) == 0 ? length : -1;
}

i32 eDiskFile::Tell() {
  i64 position = 0;
  if (GetPos(position) != 0 || position > std::numeric_limits<i32>::max()) {
    return 0;
  }
  return static_cast<i32>(position);
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

bool eDiskFile::Open(const eString& path, i32 flags, bool isText) {
  name_ = path;
  contentChanged();
  const std::string nativePath = toNative(path.text());
  errno = 0;
  if (isDirectory(nativePath)) {
    errno = EISDIR;
  } else {
    stream_ = std::fopen(nativePath.c_str(), modeString(flags, isText).c_str());
  }
  if (stream_ != nullptr && (flags & open_flags::kUnbuffered) != 0) {
    std::setvbuf(stream_, nullptr, _IONBF, 0);
  }
  isOpen_ = stream_ != nullptr;
  errorState_ = !isOpen_;
  return isOpen_;
}

i32 eDiskFile::Write(const void* source, i32 count) {
  if (count == 0) {
    return 0;
  }
  contentChanged();
  errno = 0;
  const bool written =
      stream_ != nullptr && std::fwrite(source, static_cast<std::size_t>(count), 1, stream_) == 1;
  errorState_ = !written;
  if (!written) {
    Report(MessageNumber::kFileWriteFailed, count, name_, systemErrorText(errno));
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
  errno = 0;
  const std::size_t got = std::fread(destination, 1, static_cast<std::size_t>(count), stream_);
  atEnd_ = std::feof(stream_) != 0;
  errorState_ = std::ferror(stream_) != 0;
  if (errorState_) {
    Report(MessageNumber::kFileReadFailed, count, name_, systemErrorText(errno));
  }
  return static_cast<i32>(got);
}

void eDiskFile::Close() {
  if (!isOpen_) {
    Report(MessageNumber::kFileNotOpen, name_);
    return;
  }
  closeStream();
}

void eDiskFile::closeStream() {
  errno = 0;
  if (std::fclose(stream_) != 0) {
    Report(MessageNumber::kFileCloseFailed, name_, systemErrorText(errno));
  }
  stream_ = nullptr;
  isOpen_ = false;
}

}  // namespace rvf
