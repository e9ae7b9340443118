#include "pagemodel/TextParts.h"

#include <algorithm>
#include <cstring>

#include "base/Wrapping.h"
#include "pagemodel/PartVersions.h"
#include "pagemodel/PayloadText.h"

namespace rvf {

namespace {

constexpr i64 kRunSize = sizeof(TextRun);
constexpr u16 kExtensionMarker = 0xFEFE;
constexpr i64 kExtensionHead = 2 * sizeof(u16);  // marker and count
constexpr i64 kOutlineHead = sizeof(u16);        // count
constexpr i64 kOutlineSize = 6 * sizeof(i32);
constexpr u8 kDefaultRunClass = 255;
constexpr u8 kDefaultExtensionClass = 5;

constexpr i32 kSmallestRun = 6;  // two 16-bit positions and a count
constexpr i32 kSmallestExtensionRun = 10;

// Where the pieces of a payload lie, in bytes.
struct TextLayout {
  i64 extensions;
  i64 outlines;
  i64 text;
  i64 end;
};

TextLayout layoutOf(i32 runCapacity, i32 textCapacity, i32 extensionCount, i32 outlineCount) {
  TextLayout layout{};
  layout.extensions = runCapacity * kRunSize;
  layout.outlines = layout.extensions;
  if (extensionCount > 0) {
    layout.outlines += kExtensionHead + extensionCount * kRunSize;
  }
  layout.text = layout.outlines;
  if (outlineCount > 0) {
    layout.text += kOutlineHead + outlineCount * kOutlineSize;
  }
  layout.end = layout.text + 2 * i64{textCapacity};
  return layout;
}

u16 load16(const DrawPart& part, i64 offset) {
  u16 value = 0;
  std::memcpy(&value, part.payload.data() + offset, sizeof(value));
  return value;
}

void store16(DrawPart& part, i64 offset, u16 value) {
  std::memcpy(part.payload.data() + offset, &value, sizeof(value));
}

TextLayout layoutOf(const DrawPart& part) {
  const TextFields& fields = part.fields.text;
  i32 extensionCount = 0;
  i32 outlineCount = 0;
  if ((fields.textFlags & text_flag::kExtensionRuns) != 0) {
    extensionCount = load16(part, fields.runCapacity * kRunSize + i64{sizeof(u16)});
  }
  if ((fields.textFlags & text_flag::kOutlineRecords) != 0) {
    outlineCount = load16(part, layoutOf(fields.runCapacity, 0, extensionCount, 0).outlines);
  }
  return layoutOf(fields.runCapacity, fields.textCapacity, extensionCount, outlineCount);
}

}  // namespace

std::span<TextRun> textRuns(DrawPart& part) {
  return {part.payload.at<TextRun>(0), part.fields.text.runCount};
}

std::span<const TextRun> textRuns(const DrawPart& part) {
  return {part.payload.at<TextRun>(0), part.fields.text.runCount};
}

// The characters end the block, so they are found from its end without a look at what is between.
std::span<char16_t> textCharacters(DrawPart& part) {
  const TextFields& fields = part.fields.text;
  const std::size_t offset = part.payload.size() - 2 * std::size_t{fields.textCapacity};
  return {part.payload.at<char16_t>(offset), fields.textLength};
}

std::span<const char16_t> textCharacters(const DrawPart& part) {
  const TextFields& fields = part.fields.text;
  const std::size_t offset = part.payload.size() - 2 * std::size_t{fields.textCapacity};
  return {part.payload.at<char16_t>(offset), fields.textLength};
}

std::span<TextRun> extensionRuns(DrawPart& part) {
  if ((part.fields.text.textFlags & text_flag::kExtensionRuns) == 0) {
    return {};
  }
  const i64 start = part.fields.text.runCapacity * kRunSize;
  const u16 count = load16(part, start + i64{sizeof(u16)});
  return {part.payload.at<TextRun>(static_cast<std::size_t>(start + kExtensionHead)), count};
}

void reserveText(DrawPart& part, i32 runCapacity, i32 textCapacity, i32 spareRuns,
                 i32 spareCharacters, i32 extensionCount, i32 outlineCount) {
  TextFields& fields = part.fields.text;
  if (fields.runCapacity >= runCapacity && fields.textCapacity >= textCapacity &&
      extensionCount < 1 && outlineCount < 1) {
    return;
  }
  const TextLayout before = layoutOf(part);
  const i64 extensionBytes = std::min(before.text - before.extensions, before.end);
  const u16 newRuns = fields.runCapacity < runCapacity ? static_cast<u16>(runCapacity + spareRuns)
                                                       : fields.runCapacity;
  const u16 newText = fields.textCapacity < textCapacity
                          ? static_cast<u16>(textCapacity + spareCharacters)
                          : fields.textCapacity;
  const TextLayout after = layoutOf(newRuns, newText, extensionCount, outlineCount);
  const i64 textBytes = 2 * i64{fields.textLength};

  // Grown in place, then moved from the back to the front: every piece moves up or stays.
  part.payload.resize(std::max(before.end, after.end));
  std::byte* block = part.payload.data();
  std::memmove(block + after.text, block + before.text, static_cast<std::size_t>(textBytes));
  const i64 keptExtension = std::min(extensionBytes, after.text - after.extensions);
  std::memmove(block + after.extensions, block + before.extensions,
               static_cast<std::size_t>(keptExtension));
  part.payload.resize(after.end);

  fields.runCapacity = newRuns;
  fields.textCapacity = newText;
  constexpr u8 kBoth = text_flag::kExtensionRuns | text_flag::kOutlineRecords;
  fields.textFlags = static_cast<u8>(fields.textFlags & ~kBoth);
  if (extensionCount > 0) {
    fields.textFlags |= text_flag::kExtensionRuns;
  }
  if (outlineCount > 0) {
    fields.textFlags |= text_flag::kOutlineRecords;
  }
}

namespace {

u8 rotationSteps(eArchive& archive, i32 v) {
  constexpr i32 kStep = 5;
  if (v < part_version::kCompactFields) {
    const i64 degrees = archive.ReadI32();
    return static_cast<u8>((degrees < 1 ? degrees - 2 : degrees + 2) / kStep);
  }
  // Unlike the older form, this one never rounds.
  const i32 degrees = archive.ReadI16();
  return static_cast<u8>((degrees < 0 ? degrees + 360 : degrees) / kStep);
}

u8 readRunClass(eArchive& archive, i32 v, u8 defaultClass) {
  if (v < part_version::kRunClass) {
    return defaultClass;
  }
  return v == part_version::kRunClass ? readLow8(archive) : archive.ReadU8();
}

void readRun(TextRun& run, eArchive& archive, i32 v) {
  using namespace part_version;
  if (v >= kCompactFields && v < kWideRunPositions) {
    run.x = archive.ReadU16();
    run.y = archive.ReadU16();
    run.charCount = archive.ReadU16();
  } else {
    run.x = archive.ReadI32();
    run.y = archive.ReadI32();
    run.charCount = v < kCompactFields ? readLow16(archive) : archive.ReadU16();
  }
  run.runClass = readRunClass(archive, v, kDefaultRunClass);
  run.runExtra = v >= kRunExtra ? archive.ReadU16() : u16{0};
}

// A count that needs more than its 16 bits keeps their value; the records beyond are passed over.
void readExtensionRuns(DrawPart& part, eArchive& archive, i32 v) {
  TextFields& fields = part.fields.text;
  const i32 stored = archive.CheckedCount(archive.ReadI32(), kSmallestExtensionRun);
  const u16 kept = static_cast<u16>(stored);
  reserveText(part, fields.runCapacity, fields.textCapacity, 0, 0, kept, 0);
  const i64 start = fields.runCapacity * kRunSize;
  if (kept > 0) {
    store16(part, start, kExtensionMarker);
    store16(part, start + i64{sizeof(u16)}, kept);
  }
  const std::span<TextRun> runs = extensionRuns(part);
  for (i32 i = 0; i < stored && !archive.failed(); ++i) {
    TextRun run{};
    run.x = archive.ReadI32();
    run.y = archive.ReadI32();
    run.charCount = archive.ReadU16();
    run.runClass = readRunClass(archive, v, kDefaultExtensionClass);
    if (i < kept) {
      runs[static_cast<std::size_t>(i)] = run;
    }
  }
}

void readOutlineRecords(DrawPart& part, eArchive& archive) {
  TextFields& fields = part.fields.text;
  const i32 stored = archive.CheckedCount(archive.ReadI32(), kOutlineSize);
  const u16 kept = static_cast<u16>(stored);
  const auto extensionCount = static_cast<i32>(extensionRuns(part).size());
  reserveText(part, fields.runCapacity, fields.textCapacity, 0, 0, extensionCount, kept);
  if (kept > 0) {
    const i64 start = layoutOf(fields.runCapacity, 0, extensionCount, 0).outlines;
    store16(part, start, kept);
    archive.ReadWhole(part.payload.data() + start + kOutlineHead,
                      static_cast<i32>(kept * kOutlineSize));
  }
  archive.Skip(static_cast<i32>((stored - kept) * kOutlineSize));
}

}  // namespace

void readText(DrawPart& part, eArchive& archive, i32 v) {
  using namespace part_version;
  TextFields& fields = part.fields.text;
  u16 runCount = v < kCompactFields ? readLow16(archive) : archive.ReadU16();
  u16 textLength = v < kCompactFields ? readLow16(archive) : archive.ReadU16();
  textLength = static_cast<u16>(archive.CheckedCount(textLength, characterSize(archive)));
  runCount = static_cast<u16>(archive.CheckedCount(runCount, kSmallestRun));
  if (archive.failed()) {
    return;
  }
  part.payload.clear();
  reserveText(part, runCount, textLength, 0, 0, 0, 0);
  fields.runCount = runCount;
  fields.textLength = textLength;
  fields.runs = pointerWord(runCount > 0);
  fields.text = pointerWord(textLength > 0);

  readPartText(archive, textLength, textCharacters(part).data());
  for (TextRun& run : textRuns(part)) {
    run = TextRun{};
    readRun(run, archive, v);
  }
  fields.fontId = archive.ReadI32();
  const u8 textFlags = v >= kTextFlags ? archive.ReadU8() : u8{0};
  fields.rotation = v >= kTextFlags ? archive.ReadU8() : rotationSteps(archive, v);
  fields.colour = readColour(archive);
  fields.tint = v >= kTint ? readLow8(archive) : u8{0};

  constexpr u8 kBoth = text_flag::kExtensionRuns | text_flag::kOutlineRecords;
  fields.textFlags = static_cast<u8>(textFlags & ~kBoth);
  if ((textFlags & text_flag::kExtensionRuns) != 0) {
    readExtensionRuns(part, archive, v);
  }
  if ((textFlags & text_flag::kOutlineRecords) != 0) {
    readOutlineRecords(part, archive);
  }
}

void shiftText(DrawPart& part, i32 dx, i32 dy) {
  const auto shift = [dx, dy](TextRun& run) {
    run.x = wrappingSum(run.x, dx);
    run.y = wrappingSum(run.y, dy);
  };
  std::ranges::for_each(textRuns(part), shift);
  std::ranges::for_each(extensionRuns(part), shift);
}

void readTextProp(DrawPart& part, eArchive& archive, i32 v) {
  using namespace part_version;
  constexpr i32 kFirstExtraKind = 3;
  constexpr i32 kLastExtraKind = 4;
  TextPropFields& fields = part.fields.textProp;
  fields.propKind = archive.ReadI32();
  fields.propValue = archive.ReadI32();
  fields.lengthA = archive.ReadI32();
  fields.lengthB = archive.ReadI32();
  fields.lengthC = v < kLengthD ? readLow16(archive) : archive.ReadU16();
  fields.lengthD = v < kLengthD ? u16{0} : archive.ReadU16();
  const bool hasExtra = fields.propKind >= kFirstExtraKind && fields.propKind <= kLastExtraKind;
  fields.propExtra = hasExtra ? archive.ReadI32() : 0;

  // Lengths whose 32-bit sum is not above 0 mean that no characters follow.
  const i32 sum = wrappingSum(wrappingSum(fields.lengthA, fields.lengthB),
                              i32{fields.lengthC} + fields.lengthD);
  const i32 count = archive.CheckedCount(sum, characterSize(archive));
  part.payload.clear();
  part.payload.resize(2 * i64{count});
  readPartText(archive, count, part.payload.at<char16_t>(0));
}

}  // namespace rvf
