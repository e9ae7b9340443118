#pragma once

#include <functional>
#include <memory>

#include "base/Integers.h"
#include "storage/Archive.h"
#include "storage/MemFile.h"

namespace rvf {

// A versioned record on disk: a tag (the number of the newest section that its writer knew, which
// is the record's version), the fixed fields, numbered sections (number, byte count, bytes), and
// the end mark. Tags count away from zero, upward from a positive base tag, downward from a
// negative one. A record whose tag is its base tag has neither sections nor end mark.

/// Closes every record that is newer than its base form. Frozen on disk.
constexpr i32 kEndMark = 0x42F00757;

/// The absolute value of a tag, which decides whether a section is known. 64 bits, so that the most
/// negative tag has one, too.
[[nodiscard]] constexpr i64 tagMagnitude(i32 tag) { return tag < 0 ? -i64{tag} : i64{tag}; }

/// What the reader of a section found.
enum class SectionResult : i32 {
  kAbsent = 1,   // the writer did not know the section, or it is empty
  kPresent = 2,  // its content follows
  kFailed = 4,   // another section or size was found; the archive has failed
};

/// The state of a record while it is read or written.
class eRecordFrame {
 public:
  explicit eRecordFrame(i32 baseTag) : baseTag_(baseTag) {}

  /// The tag found in the file; the record's own code fills it in.
  i32 fileTag = 0;

  void BeginRecord() { sectionCursor_ = step(baseTag_); }

  [[nodiscard]] SectionResult ReadSection(eArchive& archive, i32 number);
  /// The same for a section that must have `expectedSize` bytes.
  [[nodiscard]] SectionResult ReadFixedSection(eArchive& archive, i32 expectedSize, i32 number);
  /// Skips the sections that this program does not know, up to the end mark. If anything else is
  /// found, the archive's `failed` is set.
  void EndRecord(eArchive& archive);

  void WriteSectionTag(eArchive& archive, i32 number);
  void WriteFixedSection(eArchive& archive, i32 size, i32 number);
  void writeEndMark(eArchive& archive) const { archive.WriteI32(kEndMark); }

  /// Writes a section whose size is not known in advance, in two passes: `content` is called once
  /// for measuring, with messages muted, and once for storing.
  void writeMeasuredSection(eArchive& archive, i32 number,
                            const std::function<void(eArchive&)>& content);

  /// The two steps of the second pass, which writeMeasuredSection combines: the first returns an
  /// archive of `size` bytes for the content; the second stores the content, preceded by its
  /// length.
  [[nodiscard]] eArchive& BeginSubArchive(i32 size);
  void EndSubArchive(eArchive& archive);

 private:
  [[nodiscard]] static i32 step(i32 tag) { return tag > 0 ? tag + 1 : tag - 1; }

  [[nodiscard]] bool isKnownToWriter(i32 number) const {
    return tagMagnitude(fileTag) >= tagMagnitude(number);
  }
  /// Loads the section number and returns whether it is the next one.
  [[nodiscard]] bool readSectionTag(eArchive& archive, i32 number);

  i32 baseTag_;
  i32 sectionCursor_ = 0;
  std::unique_ptr<eMemFile> subFile_;     // storing only
  std::unique_ptr<eArchive> subArchive_;  // on subFile_
};

}  // namespace rvf
