#pragma once

#include <memory>

#include "base/Integers.h"
#include "storage/Archive.h"
#include "text/eString.h"

namespace rvf {

/// Link information that a draw part carries in addition to its own fields.
class HyperlinkInfo {
 public:
  HyperlinkInfo() = default;
  /// The copy has its own text, with length and capacity recomputed.
  HyperlinkInfo(const HyperlinkInfo& other);
  HyperlinkInfo& operator=(const HyperlinkInfo& other);

  /// Reads the tagged form. Any failure, including a tag above the limit, sets the archive's
  /// `failed`.
  void read(eArchive& archive);
  /// Writes the tagged form.
  void store(eArchive& archive) const;
  /// Reads the untagged form of draw parts below version 138. The part's `version` determines how
  /// many bytes the text has. Does nothing on a storing archive.
  void readOldForm(eArchive& archive, i32 version);
  /// Makes room for textLength characters, or for `minimumLength` if that is more.
  void reserveText(i32 minimumLength);

  i32 linkValue1 = 0;
  i32 linkValue2 = 0;
  i32 linkValue3 = 0;
  std::unique_ptr<char16_t[]> text;  // null if empty, else zero-terminated at textLength
  u16 textLength = 0;
  u16 textCapacity = 0;  // terminator included
  eString firstLabel;    // empty in the old form
  eString secondLabel;
  i32 reservedA = 0;  // not on disk
  i32 reservedB = 0;

 private:
  void loadFixedFields(eArchive& archive);
};

}  // namespace rvf
