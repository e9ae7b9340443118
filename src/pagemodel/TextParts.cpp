#include "pagemodel/TextParts.h"

#include <algorithm>
#include <cstring>

#include "base/Wrapping.h"
#include "pagemodel/HeldDecoding.h"
#include "pagemodel/PartVersions.h"
#include "pagemodel/PayloadText.h"
#include "pagemodel/Shift.h"

namespace rvf {

namespace {

constexpr u16 kExtensionMarker = 0xFEFE;
constexpr std::size_t kExtensionHead = 2 * sizeof(u16);  // marker and count
constexpr i32 kOutlineSize = sizeof(OutlineRecord);
constexpr u8 kDefaultRunClass = 255;
constexpr u8 kDefaultExtensionClass = 5;

constexpr i32 kSmallestRun = 6;  // two 16-bit positions and a count
constexpr i32 kSmallestExtensionRun = 10;

// Shared by the const and the non-const function.
template <class Run, class Part>
std::span<Run> extensionRunsOf(Part& part) {
  if ((part.fields.text.textFlags & text_flag::kExtensionRuns) == 0) {
    return {};
  }
  const std::size_t area = textRuns(part).size_bytes();
  const u16 count = *part.payload.template at<u16>(area + sizeof(kExtensionMarker));
  return {part.payload.template at<TextRun>(area + kExtensionHead), count};
}

}  // namespace

std::span<TextRun> extensionRuns(DrawPart& part) { return extensionRunsOf<TextRun>(part); }

std::span<const TextRun> extensionRuns(const DrawPart& part) {
  return extensionRunsOf<const TextRun>(part);
}

std::vector<OutlineRecord> outlineRecords(const DrawPart& part) {
  const u8 flags = part.fields.text.textFlags;
  if ((flags & text_flag::kOutlineRecords) == 0) {
    return {};
  }
  std::size_t area = textRuns(part).size_bytes();
  if ((flags & text_flag::kExtensionRuns) != 0) {
    area += kExtensionHead + extensionRuns(part).size_bytes();
  }
  const u16 count = *part.payload.at<u16>(area);
  std::vector<OutlineRecord> records(count);
  if (count > 0) {
    std::memcpy(records.data(), part.payload.data() + area + sizeof(count),
                records.size() * sizeof(OutlineRecord));
  }
  return records;
}

namespace {

template <class Input>
u8 rotationSteps(Input& input, i32 v) {
  constexpr i32 kStep = 5;
  if (v < part_version::kCompactFields) {
    const i64 degrees = input.ReadI32();
    return static_cast<u8>((degrees < 1 ? degrees - 2 : degrees + 2) / kStep);
  }
  // Unlike the older form, this one never rounds.
  const i32 degrees = input.ReadI16();
  return static_cast<u8>((degrees < 0 ? degrees + 360 : degrees) / kStep);
}

template <class Input>
u8 readRunClass(Input& input, i32 v, u8 defaultClass) {
  if (v < part_version::kRunClass) {
    return defaultClass;
  }
  return v == part_version::kRunClass ? readLow8(input) : input.ReadU8();
}

template <class Input>
void readRun(TextRun& run, Input& input, i32 v) {
  using namespace part_version;
  if (v >= kCompactFields && v < kWideRunPositions) {
    run.x = input.ReadU16();
    run.y = input.ReadU16();
    run.charCount = input.ReadU16();
  } else {
    run.x = input.ReadI32();
    run.y = input.ReadI32();
    run.charCount = v < kCompactFields ? readLow16(input) : input.ReadU16();
  }
  run.runClass = readRunClass(input, v, kDefaultRunClass);
  run.runExtra = v >= kRunExtra ? input.ReadU16() : u16{0};
}

// Makes room before the characters, which are at the end of the block.
std::byte* insertBeforeCharacters(DrawPart& part, std::size_t size) {
  const std::size_t textBytes = textCharacters(part).size_bytes();
  const std::size_t start = part.payload.size() - textBytes;
  part.payload.resize(static_cast<i64>(start + size + textBytes));
  std::byte* room = part.payload.data() + start;
  std::memmove(room + size, room, textBytes);
  return room;
}

// All 32 bits of a count determine whether there are records, but only the low 16 are kept, and
// only that many records; the rest is skipped. An area can therefore consist of its head alone.

void readExtensionRuns(DrawPart& part, eArchive& archive, i32 v) {
  const i32 stored = archive.checkedCount(archive.ReadI32(), kSmallestExtensionRun);
  if (stored == 0) {
    return;
  }
  const u16 head[] = {kExtensionMarker, static_cast<u16>(stored)};
  const u16 kept = head[1];
  std::byte* area = insertBeforeCharacters(part, sizeof(head) + kept * sizeof(TextRun));
  std::memcpy(area, head, sizeof(head));
  part.fields.text.textFlags |= text_flag::kExtensionRuns;
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
  const i32 stored = archive.checkedCount(archive.ReadI32(), kOutlineSize);
  if (stored == 0) {
    return;
  }
  const u16 kept = static_cast<u16>(stored);
  std::byte* area = insertBeforeCharacters(part, sizeof(kept) + std::size_t{kept} * kOutlineSize);
  std::memcpy(area, &kept, sizeof(kept));
  part.fields.text.textFlags |= text_flag::kOutlineRecords;
  archive.ReadWhole(area + sizeof(kept), kept * kOutlineSize);
  archive.skip((stored - kept) * kOutlineSize);
}

void readAreas(DrawPart& part, eArchive& archive, i32 v, u8 textFlags) {
  if ((textFlags & text_flag::kExtensionRuns) != 0) {
    readExtensionRuns(part, archive, v);
  }
  if ((textFlags & text_flag::kOutlineRecords) != 0) {
    readOutlineRecords(part, archive);
  }
}

// Few texts have them.
void readAreas(DrawPart&, HeldInput& input, i32, u8) { input.giveUp(); }

template <class Input>
void decodeText(DrawPart& part, Input& input, i32 v) {
  using namespace part_version;
  TextFields& fields = part.fields.text;
  u16 runCount = v < kCompactFields ? readLow16(input) : input.ReadU16();
  u16 textLength = v < kCompactFields ? readLow16(input) : input.ReadU16();
  textLength = static_cast<u16>(input.checkedCount(textLength, characterSize(input)));
  runCount = static_cast<u16>(input.checkedCount(runCount, kSmallestRun));
  if (input.failed()) {
    return;
  }
  part.payload.resize(runCount * i64{sizeof(TextRun)} + textLength * i64{sizeof(char16_t)});
  const std::span<TextRun> runs(part.payload.at<TextRun>(0), runCount);
  fields.runCount = runCount;
  fields.runCapacity = runCount;
  fields.textLength = textLength;
  fields.textCapacity = textLength;
  fields.runs = pointerWord(runCount > 0);
  fields.text = pointerWord(textLength > 0);

  readPartText(input, textLength, part.payload.at<char16_t>(runs.size_bytes()));
  for (TextRun& run : runs) {
    if (input.failed()) {
      return;
    }
    run = TextRun{};
    readRun(run, input, v);
  }
  fields.fontId = input.ReadI32();
  const u8 textFlags = v >= kTextFlags ? input.ReadU8() : u8{0};
  fields.rotation = v >= kTextFlags ? input.ReadU8() : rotationSteps(input, v);
  fields.colour = readColour(input);
  fields.tint = v >= kTint ? readLow8(input) : u8{0};

  constexpr u8 kBoth = text_flag::kExtensionRuns | text_flag::kOutlineRecords;
  fields.textFlags = static_cast<u8>(textFlags & ~kBoth);
  if ((textFlags & kBoth) != 0) {
    readAreas(part, input, v, textFlags);
  }
}

}  // namespace

void readText(DrawPart& part, eArchive& archive, i32 v) { decodeText(part, archive, v); }

void readText(DrawPart& part, HeldInput& held, i32 v) {
  decodeHeld(held, v, [&part, v](HeldInput& input) { decodeText(part, input, v); });
}

void shiftText(DrawPart& part, i32 dx, i32 dy) {
  const auto shift = [dx, dy](TextRun& run) { shiftPlace(run, dx, dy); };
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
  const i32 count = archive.checkedCount(sum, characterSize(archive));
  part.payload.clear();
  part.payload.resize(2 * i64{count});
  readPartText(archive, count, part.payload.at<char16_t>(0));
}

}  // namespace rvf
