#pragma once

#include <vector>

#include "base/Integers.h"
#include "inspect/model/CaptureFile.h"
#include "inspect/model/Fields.h"

namespace rvf::inspect {

/// The bytes of a capture file as they are, for telling equal stretches without decoding them.
class FileBytes {
 public:
  explicit FileBytes(CaptureFile& file);

  /// Of the bytes from a page's position up to the next thing that the index knows of: those of the
  /// page's body, and of whatever nothing refers to behind it.
  [[nodiscard]] ByteDigest bodyAt(i32 position);
  [[nodiscard]] i64 bodyLengthAt(i32 position);
  [[nodiscard]] ByteDigest stretch(i64 begin, i64 end);
  /// Whether two stretches of one length hold the same bytes.
  [[nodiscard]] bool same(i64 begin, FileBytes& other, i64 otherBegin, i64 length);

 private:
  static constexpr i64 kChunk = 65536;

  [[nodiscard]] std::span<const std::byte> read(i64 begin, i64 length);

  CaptureFile& file_;
  std::vector<i32> boundaries_;  // sorted
  std::size_t next_ = 0;         // the boundary behind the position that was asked for last
  std::vector<std::byte> buffer_;
};

}  // namespace rvf::inspect
