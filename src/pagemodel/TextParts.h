#pragma once

#include <array>
#include <span>
#include <vector>

#include "pagemodel/DrawPart.h"
#include "pagemodel/FieldVisitor.h"
#include "storage/HeldInput.h"

namespace rvf {

// TEXT and TEXTPROP.
//
// The payload of a TEXT part is one block: runCapacity runs, the extension area, the characters.
// The extension area, which follows the last of the runCapacity runs, holds the extension runs
// (marker 0xFEFE, u16 count, that many runs) if textFlags has kExtensionRuns, and then the outline
// records (u16 count, that many of six i32) if it has kOutlineRecords. On disk the counts have 32
// bits, and the flags depend on all of them: a multiple of 65536 sets the flag and leaves a stored
// count of 0.

namespace text_flag {
constexpr u8 kExtensionRuns = 4;
constexpr u8 kOutlineRecords = 8;
}  // namespace text_flag

/// A run of characters and its position. Runs are compared as 16 bytes each, so all of them have
/// defined values.
struct TextRun {
  i32 y;
  i32 x;
  u16 charCount;
  u16 runExtra;
  u8 runClass;
  u8 unused[3];
};
static_assert(sizeof(TextRun) == 16);

using OutlineRecord = std::array<i32, 6>;

[[nodiscard]] inline std::span<TextRun> textRuns(DrawPart& part) {
  return {part.payload.at<TextRun>(0), part.fields.text.runCount};
}

[[nodiscard]] inline std::span<const TextRun> textRuns(const DrawPart& part) {
  return {part.payload.at<TextRun>(0), part.fields.text.runCount};
}

// The characters are at the end of the block, so they can be found without parsing what precedes
// them.
[[nodiscard]] inline std::span<char16_t> textCharacters(DrawPart& part) {
  const TextFields& fields = part.fields.text;
  const std::size_t offset = part.payload.size() - 2 * std::size_t{fields.textCapacity};
  return {part.payload.at<char16_t>(offset), fields.textLength};
}

[[nodiscard]] inline std::span<const char16_t> textCharacters(const DrawPart& part) {
  const TextFields& fields = part.fields.text;
  const std::size_t offset = part.payload.size() - 2 * std::size_t{fields.textCapacity};
  return {part.payload.at<char16_t>(offset), fields.textLength};
}

[[nodiscard]] std::span<TextRun> extensionRuns(DrawPart& part);
[[nodiscard]] std::span<const TextRun> extensionRuns(const DrawPart& part);
/// Returns copies, since the records are unaligned in the payload.
[[nodiscard]] std::vector<OutlineRecord> outlineRecords(const DrawPart& part);

void readText(DrawPart& part, eArchive& archive, i32 v);
void readText(DrawPart& part, HeldInput& held, i32 v);
void visitText(const DrawPart& part, FieldVisitor& visitor);
void shiftText(DrawPart& part, i32 dx, i32 dy);

void readTextProp(DrawPart& part, eArchive& archive, i32 v);
void visitTextProp(const DrawPart& part, FieldVisitor& visitor);

}  // namespace rvf
