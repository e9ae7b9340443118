#pragma once

#include <iterator>
#include <string>

#include "storage/RecordFrame.h"
#include "support/Fuzz.h"

namespace rvf::fuzz {

/// A script that is played to both a storing and a loading archive.
class ArchiveScript {
 public:
  explicit ArchiveScript(FuzzInput input) : input_(input) {}

  /// Plays up to the end of the record or of the input.
  void play(eArchive& archive, int depth = 0) {
    constexpr int kKinds = 11, kRecord = 9, kEnd = 10;
    constexpr int kDeepest = 3;
    while (!input_.rest().empty()) {
      const int kind = input_.take() % kKinds;
      if (kind == kEnd) return;
      if (kind < kRecord) {
        (this->*kValues[kind])(archive);
      } else if (depth < kDeepest) {
        record(archive, depth);
      }
    }
  }

 private:
  template <class T, T (eArchive::*kRead)(), void (eArchive::*kWrite)(T)>
  static void number(eArchive& archive, T value) {
    if (!archive.isLoading()) return (archive.*kWrite)(value);
    const T found = (archive.*kRead)();
    require(std::memcmp(&found, &value, sizeof(T)) == 0, "a number comes back");
  }
  template <class T, T (eArchive::*kRead)(), void (eArchive::*kWrite)(T)>
  void number(eArchive& archive) {
    number<T, kRead, kWrite>(archive, input_.take<T>());
  }

  // Repeated, so that short inputs make stretches longer than the buffer.
  std::string takeStretch() {
    const std::string_view once = input_.takeBytes(input_.take() % 64);
    std::string stretch;
    for (int times = input_.take() % 32; times >= 0; --times) stretch += once;
    return stretch;
  }

  void rawBytes(eArchive& archive) {
    const std::string bytes = takeStretch();
    const auto count = static_cast<i32>(bytes.size());
    std::string found(bytes.size(), '\0');
    if (!archive.isLoading()) return archive.WriteRaw(bytes.data(), count);
    require(archive.ReadRaw(found.data(), count) == count && found == bytes, "bytes come back");
  }

  void text(eArchive& archive) {
    const std::string bytes = takeStretch();
    const eString value(std::u16string_view(std::u16string(bytes.begin(), bytes.end())));
    eString found = u"before";
    if (!archive.isLoading()) return archive.WriteString(value);
    archive.ReadString(found);
    require(found.view() == value.view(), "a text comes back");
  }

  // A record of several measured sections, some of which are unknown to the reader.
  void record(eArchive& archive, int depth) {
    constexpr i32 kBaseTags[] = {100, 106, -101};
    const u8 shape = input_.take();
    const i32 baseTag = kBaseTags[shape % std::size(kBaseTags)];
    const i32 away = baseTag < 0 ? -1 : 1;
    const i32 sections = shape >> 2 & 3;
    const i32 known = shape >> 4 & 3;
    const bool hasMark = sections > 0 || (shape & 64) != 0;
    eRecordFrame frame(baseTag);
    frame.BeginRecord();
    frame.fileTag = baseTag + (hasMark ? sections + 1 : 0) * away;
    number<i32, &eArchive::ReadI32, &eArchive::WriteI32>(archive, frame.fileTag);
    for (i32 i = 0; i < sections; ++i) {
      const i32 tag = baseTag + (i + 2) * away;
      archive.isLoading() ? loadSection(archive, frame, tag, i < known, depth)
                          : storeSection(archive, frame, tag, depth);
    }
    if (archive.isLoading()) {
      frame.EndRecord(archive);
    } else if (hasMark) {
      frame.writeEndMark(archive);
    }
  }

  void storeSection(eArchive& archive, eRecordFrame& frame, i32 tag, int depth) {
    ArchiveScript after(*this);
    frame.writeMeasuredSection(archive, tag, [&](eArchive& part) {
      after = *this;
      after.play(part, depth + 1);
    });
    *this = after;
  }

  // EndRecord skips the sections that the reader does not know; the script must do the same.
  void loadSection(eArchive& archive, eRecordFrame& frame, i32 tag, bool isKnown, int depth) {
    eCountingArchive counting;
    ArchiveScript measure(*this);
    measure.play(counting, depth + 1);
    if (isKnown) {
      const bool isThere = frame.ReadSection(archive, tag) == SectionResult::kPresent;
      require(isThere == (counting.countedBytes() > 0), "a section is found");
      play(archive, depth + 1);
    } else {
      *this = measure;
    }
  }

  static constexpr void (ArchiveScript::*kValues[])(eArchive&) = {
      &ArchiveScript::number<u8, &eArchive::ReadU8, &eArchive::WriteU8>,
      &ArchiveScript::number<u16, &eArchive::ReadU16, &eArchive::WriteU16>,
      &ArchiveScript::number<i16, &eArchive::ReadI16, &eArchive::WriteI16>,
      &ArchiveScript::number<i32, &eArchive::ReadI32, &eArchive::WriteI32>,
      &ArchiveScript::number<u32, &eArchive::ReadU32, &eArchive::WriteU32>,
      &ArchiveScript::number<i64, &eArchive::ReadI64, &eArchive::WriteI64>,
      &ArchiveScript::number<f64, &eArchive::ReadF64, &eArchive::WriteF64>,
      &ArchiveScript::rawBytes,
      &ArchiveScript::text};

  FuzzInput input_;
};

}  // namespace rvf::fuzz
