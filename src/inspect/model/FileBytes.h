#pragma once

#include <vector>

#include "base/Integers.h"
#include "inspect/model/CaptureFile.h"
#include "inspect/model/Fields.h"

namespace rvf::inspect {

/// The raw bytes of a capture file, for comparing ranges without decoding them.
class FileBytes {
 public:
  explicit FileBytes(CaptureFile& file);

  /// Digest of the bytes from a page's position up to the next place that the index knows: those of
  /// the page's body, and any unreferenced bytes after it.
  [[nodiscard]] ByteDigest bodyAt(i32 position);
  [[nodiscard]] i64 bodyLengthAt(i32 position);
  [[nodiscard]] ByteDigest stretch(i64 begin, i64 end);
  /// Whether two ranges of the same length have the same bytes.
  [[nodiscard]] bool same(i64 begin, FileBytes& other, i64 otherBegin, i64 length);

 private:
  static constexpr i64 kChunk = 65536;

  [[nodiscard]] std::span<const std::byte> read(i64 begin, i64 length);

  CaptureFile& file_;
  std::vector<i32> boundaries_;  // sorted
  std::size_t next_ = 0;         // the boundary after the last position requested
  std::vector<std::byte> buffer_;
};

}  // namespace rvf::inspect
