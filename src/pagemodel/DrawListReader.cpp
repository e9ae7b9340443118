#include "pagemodel/DrawListReader.h"

#include <algorithm>

#include "pagemodel/ImageParts.h"
#include "pagemodel/PartOperations.h"
#include "pagemodel/PartVersions.h"
#include "pagemodel/PayloadText.h"
#include "pagemodel/ReferenceParts.h"
#include "storage/HyperlinkInfo.h"
#include "storage/RecordFrame.h"

namespace rvf {

namespace {

constexpr i32 kSmallestPart = 5;  // a version and a one-byte type

// Slots are allocated as parts are read, so that a count alone never takes memory.
DrawPart& slotAt(DrawList& list, i32 index, i32 count) {
  constexpr std::size_t kFirstSlots = 64;
  const auto position = static_cast<std::size_t>(index);
  if (position >= list.slots.size()) {
    const std::size_t grown = std::max(2 * list.slots.size(), kFirstSlots);
    list.slots.resize(std::min(grown, static_cast<std::size_t>(count)));
  }
  return list.slots[position];
}

void readParts(DrawList& list, eArchive& archive, i32 count, const StaticLookup* statics) {
  for (i32 i = 0; i < count; ++i) {
    DrawPart& part = slotAt(list, i, count);
    readDrawPart(part, archive);
    if (archive.failed()) {
      return;
    }
    if (statics != nullptr && part.type == PartType::kStaticRef) {
      setChildList(part, referencedList(part.fields.staticRef, *statics));
    }
    list.count = i + 1;
  }
}

// The link that follows the fields of an image. Other types cannot hold one, so a link found in a
// damaged record of theirs is read and dropped.
void readPartLink(DrawPart& part, eArchive& archive, i32 v) {
  auto link = std::make_unique<HyperlinkInfo>();
  if (v < part_version::kTaggedLinks) {
    link->readOldForm(archive, std::max(v, part_version::kNarrowOldLinks));
  } else {
    link->read(archive);
  }
  if (part.type == PartType::kImage && part.fields.image.info == kSetPointer) {
    imageInfo(part).hyperlink = std::move(link);
  }
}

// Before kPlainTail, a part has sections: 127 holds the link flag, the others are reserved and
// empty.
void readSectionedTail(DrawPart& part, eArchive& archive, eRecordFrame& frame) {
  constexpr i32 kReservedBefore[] = {122, 123, 124, 125, 126};
  constexpr i32 kLinkSection = 127;
  constexpr i32 kReservedBehind[] = {128, 129, 130, 131};
  for (const i32 number : kReservedBefore) {
    static_cast<void>(frame.ReadFixedSection(archive, 0, number));
    if (archive.failed()) {
      return;
    }
  }
  if (frame.ReadSection(archive, kLinkSection) == SectionResult::kPresent &&
      archive.ReadI32() != 0) {
    readPartLink(part, archive, frame.fileTag);
  }
  for (const i32 number : kReservedBehind) {
    if (archive.failed()) {
      return;
    }
    static_cast<void>(frame.ReadFixedSection(archive, 0, number));
  }
  frame.EndRecord(archive);
}

void readPartTail(DrawPart& part, eArchive& archive, eRecordFrame& frame) {
  if (frame.fileTag < part_version::kPlainTail) {
    readSectionedTail(part, archive, frame);
  } else if (archive.ReadI32() != 0) {
    readPartLink(part, archive, frame.fileTag);
  }
}

// The fast path for most parts: a version with a plain tail, a frequent type, no link, and all
// bytes in memory. For any other part the input fails.
void readHeldPart(DrawPart& part, HeldInput& held) {
  using namespace part_version;
  const i32 v = held.ReadI32();
  if (v < kPlainTail || v > kHighest) {
    held.giveUp();
    return;
  }
  part.type = static_cast<PartType>(held.ReadU8());
  readHeldPayload(part, held, v);
  const bool hasLink = held.ReadI32() != 0;
  part.extraId = v >= kExtraId ? held.ReadI32() : 0;
  if (hasLink) {
    held.giveUp();
  }
}

void readWholePart(DrawPart& part, eArchive& archive) {
  using namespace part_version;
  eRecordFrame frame(kBaseTag);
  frame.BeginRecord();
  makeBlank(part);

  const i32 v = archive.ReadI32();
  if (archive.failed()) {
    return;
  }
  if (tagMagnitude(v) > kHighest) {
    archive.markTooNew({u"DRAWPART", v, kHighest});
    return;
  }
  frame.fileTag = v;
  part.type = static_cast<PartType>(v < kByteType ? readLow8(archive) : archive.ReadU8());
  if (archive.failed()) {
    return;
  }
  readPayload(part, archive, v);
  if (archive.failed()) {
    return;
  }
  readPartTail(part, archive, frame);
  if (v >= kExtraId) {
    part.extraId = archive.ReadI32();
  }
}

void readList(DrawList& list, eArchive& archive, const StaticLookup* statics) {
  using namespace list_version;
  eRecordFrame frame(kBaseTag);
  frame.BeginRecord();
  list.count = 0;
  const i32 v = archive.ReadI32();
  if (archive.failed()) {
    return;
  }
  if (tagMagnitude(v) > kHighest) {
    archive.markTooNew({u"DRAWLIST", v, kHighest});
    return;
  }
  frame.fileTag = v;
  list.originX = archive.ReadI32();
  list.originY = archive.ReadI32();
  const i32 count = archive.checkedCount(archive.ReadI32(), kSmallestPart);
  list.contentTally = v >= kContentTally ? archive.ReadI32() : 0;
  archive.skip(v >= kSkippedByte ? 1 : 0);
  const bool hasBytes = v >= kBytes && archive.ReadI32() != 0;
  list.byteA = hasBytes ? readLow8(archive) : kDefaultByteA;
  list.byteB = hasBytes ? readLow8(archive) : u8{0};
  if ((list.listFlags & list_flag::kBorrowed) != 0) {
    list.listFlags &= static_cast<u8>(~list_flag::kBorrowed);
    list.slots.clear();
  }
  list.listMark = 0;
  if (archive.failed()) {
    return;
  }
  readParts(list, archive, count, statics);
  if (archive.failed()) {
    return;
  }
  list.listFlags = v >= kListFlags ? archive.ReadU8() : list.listFlags;
  list.valueA = v >= kValues ? archive.ReadI32() : 0;
  list.valueB = v >= kValues ? archive.ReadI32() : 0;
  list.listExtra = v >= kListExtra ? archive.ReadU16() : u16{0};
  frame.EndRecord(archive);
}

}  // namespace

void readDrawPart(DrawPart& part, eArchive& archive) {
  if (HeldInput::hasEnough(archive)) {
    HeldInput held(archive);
    makeBlank(part);
    readHeldPart(part, held);
    if (!held.failed()) {
      archive.advanceTo(held.next());
      return;
    }
  }
  readWholePart(part, archive);
}

void storeDrawList(eArchive& archive) { archive.WriteI32(kEndMark); }

void readDrawList(DrawList& list, eArchive& archive, const StaticLookup& statics) {
  readList(list, archive, &statics);
}

void readDrawList(DrawList& list, eArchive& archive) { readList(list, archive, nullptr); }

}  // namespace rvf
