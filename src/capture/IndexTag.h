#pragma once

#include "base/Integers.h"
#include "storage/Archive.h"
#include "storage/RecordFrame.h"

namespace rvf {

/// The tags of customer and page records. The oldest form has none.
namespace index_tag {
constexpr i32 kBase = -101;
constexpr i32 kNewest = -102;         // the tag that is written
constexpr i32 kSmallestField = -100;  // any value below this is a tag
}  // namespace index_tag

/// Reads a field that follows the tag, which the oldest form lacks, and stores the tag in the
/// frame.
[[nodiscard]] inline i32 readTaggedValue(eRecordFrame& frame, eArchive& archive) {
  const i32 found = archive.ReadI32();
  if (found >= index_tag::kSmallestField) {
    frame.fileTag = index_tag::kBase;
    return found;
  }
  frame.fileTag = found;
  return archive.ReadI32();
}

}  // namespace rvf
