#pragma once

#include <algorithm>
#include <bit>
#include <string>
#include <vector>

#include "storage/RecordFrame.h"
#include "support/FuzzInput.h"
#include "support/FuzzRun.h"

namespace rvf::fuzz {

/// A sequence of stores that an input describes: one byte for the kind of a value, then the value.
/// The same script is played to a storing and to a loading archive.
class ArchiveScript {
 public:
  explicit ArchiveScript(FuzzInput input) : input_(input) {}

  /// Plays up to the end of the record or of the input.
  void play(eArchive& archive, int depth = 0) {
    constexpr u8 kEnd = 10;
    for (u8 kind = nextKind(); kind != kEnd; kind = nextKind()) {
      playValue(archive, kind, depth);
    }
  }

 private:
  static constexpr i32 kBaseTags[] = {100, 106, -101};
  static constexpr int kDeepest = 3;

  u8 nextKind() { return input_.isEmpty() ? u8{10} : static_cast<u8>(input_.take() % 11); }

  void playValue(eArchive& a, u8 kind, int depth) {
    switch (kind) {
      case 0:
        return number<u8>(a, &eArchive::ReadU8, &eArchive::WriteU8);
      case 1:
        return number<u16>(a, &eArchive::ReadU16, &eArchive::WriteU16);
      case 2:
        return number<i16>(a, &eArchive::ReadI16, &eArchive::WriteI16);
      case 3:
        return number<i32>(a, &eArchive::ReadI32, &eArchive::WriteI32);
      case 4:
        return number<u32>(a, &eArchive::ReadU32, &eArchive::WriteU32);
      case 5:
        return number<i64>(a, &eArchive::ReadI64, &eArchive::WriteI64);
      case 6:
        return floating(a);
      case 7:
        return rawBytes(a);
      case 8:
        return text(a);
      default:
        return depth < kDeepest ? record(a, depth) : void();
    }
  }

  template <class T>
  void number(eArchive& archive, T (eArchive::*read)(), void (eArchive::*write)(T)) {
    const T value = input_.take<T>();
    if (archive.isLoading()) {
      require((archive.*read)() == value, "a number comes back");
    } else {
      (archive.*write)(value);
    }
  }

  void floating(eArchive& archive) {
    const auto bits = input_.take<i64>();
    if (archive.isLoading()) {
      require(std::bit_cast<i64>(archive.ReadF64()) == bits, "a floating number comes back");
    } else {
      archive.WriteF64(std::bit_cast<f64>(bits));
    }
  }

  // Repeated, so that short inputs make stretches that are longer than the buffer.
  std::string takeStretch() {
    const std::string_view once = input_.takeBytes(input_.take() % 64);
    std::string stretch;
    for (int times = input_.take() % 32; times >= 0; --times) {
      stretch += once;
    }
    return stretch;
  }

  void rawBytes(eArchive& archive) {
    const std::string bytes = takeStretch();
    const auto count = static_cast<i32>(bytes.size());
    if (!archive.isLoading()) {
      archive.WriteRaw(bytes.data(), count);
      return;
    }
    std::string found(bytes.size(), '\0');
    require(archive.ReadRaw(found.data(), count) == count && found == bytes, "bytes come back");
  }

  void text(eArchive& archive) {
    const std::string bytes = takeStretch();
    const eString value(std::u16string_view(std::u16string(bytes.begin(), bytes.end())));
    if (!archive.isLoading()) {
      archive.WriteString(value);
      return;
    }
    eString found = u"before";
    archive.ReadString(found);
    require(found.view() == value.view(), "a text comes back");
  }

  // A record of some measured sections, of which a reader knows a part.
  void record(eArchive& archive, int depth) {
    const u8 shape = input_.take();
    const i32 baseTag = kBaseTags[shape % std::size(kBaseTags)];
    const i32 away = baseTag < 0 ? -1 : 1;
    const i32 sections = shape >> 2 & 3;
    const i32 known = shape >> 4 & 3;
    const bool hasMark = sections > 0 || (shape & 64) != 0;
    eRecordFrame frame(baseTag);
    frame.BeginRecord();
    frame.fileTag = baseTag + (hasMark ? sections + 1 : 0) * away;
    if (archive.isLoading()) {
      require(archive.ReadI32() == frame.fileTag, "a tag comes back");
    } else {
      archive.WriteI32(frame.fileTag);
    }
    for (i32 i = 0; i < sections; ++i) {
      const i32 tag = baseTag + (i + 2) * away;
      if (archive.isLoading()) {
        loadSection(archive, frame, tag, i < known, depth);
      } else {
        storeSection(archive, frame, tag, depth);
      }
    }
    if (archive.isLoading()) {
      frame.EndRecord(archive);
    } else if (hasMark) {
      frame.WriteEndMark(archive);
    }
  }

  void storeSection(eArchive& archive, eRecordFrame& frame, i32 tag, int depth) {
    ArchiveScript after(input_);
    frame.WriteMeasuredSection(archive, tag, [&](eArchive& part) {
      after = *this;
      after.play(part, depth + 1);
    });
    input_ = after.input_;
  }

  // EndRecord passes over the sections that the reader does not know; the script has to follow.
  void loadSection(eArchive& archive, eRecordFrame& frame, i32 tag, bool isKnown, int depth) {
    eCountingArchive counting;
    ArchiveScript measure(*this);
    measure.play(counting, depth + 1);
    const bool isEmpty = counting.CountedBytes() == 0;
    if (isKnown) {
      const SectionResult result = frame.ReadSection(archive, tag);
      require(result == (isEmpty ? SectionResult::kAbsent : SectionResult::kPresent),
              "a section is found");
      play(archive, depth + 1);
    } else {
      input_ = measure.input_;
    }
  }

  FuzzInput input_;
};

}  // namespace rvf::fuzz
