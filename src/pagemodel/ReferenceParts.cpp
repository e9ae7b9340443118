#include "pagemodel/ReferenceParts.h"

#include "base/Wrapping.h"
#include "pagemodel/DrawStatic.h"
#include "pagemodel/PartVersions.h"
#include "pagemodel/PayloadText.h"
#include "pagemodel/Shift.h"

namespace rvf {

const DrawList* childList(const DrawPart& part) {
  return part.payload.size() == 0 ? nullptr : *part.payload.at<const DrawList*>(0);
}

void setChildList(DrawPart& part, const DrawList* list) {
  part.payload.clear();
  if (list != nullptr) {
    part.payload.resize(sizeof(void*));
    *part.payload.at<const DrawList*>(0) = list;
  }
}

namespace {

constexpr u8 kNoLayer = 255;

void readOldStaticRef(StaticRefFields& fields, eArchive& archive, i32 v) {
  using namespace part_version;
  fields.objectType = readLow16(archive);
  fields.width = archive.ReadI32();
  fields.height = archive.ReadI32();
  if (v < kCompactFields) {
    fields.refA = readLow16(archive);
    fields.refB = v >= kReferenceB ? readLow16(archive) : u16{0};
    fields.useSecond = readLow8(archive);
    fields.secondIsHidden = readLow8(archive);
    fields.staticIndex = readLow16(archive);
  } else {
    fields.refA = archive.ReadU16();
    fields.refB = archive.ReadU16();
    fields.useSecond = archive.ReadU8();
    fields.secondIsHidden = archive.ReadU8();
    fields.staticIndex = archive.ReadU16();
  }
  fields.x = archive.ReadI32();
  fields.y = archive.ReadI32();
  fields.refC = readLow16(archive);
  fields.layerByteA = kNoLayer;
  fields.layerByteB = kNoLayer;
}

void readLayeredStaticRef(StaticRefFields& fields, eArchive& archive) {
  fields.objectType = archive.ReadU16();
  fields.width = archive.ReadI32();
  fields.height = archive.ReadI32();
  fields.refA = archive.ReadU16();
  fields.refB = archive.ReadU16();
  fields.useSecond = archive.ReadU8();
  fields.secondIsHidden = archive.ReadU8();
  fields.staticIndex = archive.ReadU16();
  fields.x = archive.ReadI32();
  fields.y = archive.ReadI32();
  fields.refC = archive.ReadU16();
  fields.refD = archive.ReadU16();
  fields.layerByteA = readLow8(archive);
  fields.layerByteB = readLow8(archive);
}

}  // namespace

const DrawList* referencedList(const StaticRefFields& fields, const StaticLookup& tables) {
  const DrawStatic* found = tables.FindStatic(fields.objectType, fields.staticIndex);
  if (found == nullptr) {
    return nullptr;
  }
  const bool wantsSecond = fields.useSecond != 0 && fields.secondIsHidden == 0;
  return wantsSecond ? &found->secondList : &found->firstList;
}

void readStaticRef(DrawPart& part, eArchive& archive, i32 v) {
  using namespace part_version;
  constexpr i32 kOldScale = 100;
  StaticRefFields& fields = part.fields.staticRef;
  if (v < kLayers) {
    readOldStaticRef(fields, archive, v);
  } else {
    readLayeredStaticRef(fields, archive);
  }
  if (v < kWholeScale) {
    fields.height = wrappingProduct(fields.height, kOldScale);
  }
  setChildList(part, currentContext == nullptr ? nullptr : referencedList(fields, *currentContext));
}

void shiftStaticRef(DrawPart& part, i32 dx, i32 dy) { shiftPlace(part.fields.staticRef, dx, dy); }

}  // namespace rvf
