#include "pagemodel/ReferenceParts.h"

#include "base/Wrapping.h"
#include "pagemodel/DrawStatic.h"
#include "pagemodel/HeldDecoding.h"
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

template <class Input>
void readOldStaticRef(StaticRefFields& fields, Input& input, i32 v) {
  using namespace part_version;
  fields.objectType = readLow16(input);
  fields.width = input.ReadI32();
  fields.height = input.ReadI32();
  if (v < kCompactFields) {
    fields.refA = readLow16(input);
    fields.refB = v >= kReferenceB ? readLow16(input) : u16{0};
    fields.useSecond = readLow8(input);
    fields.secondIsHidden = readLow8(input);
    fields.staticIndex = readLow16(input);
  } else {
    fields.refA = input.ReadU16();
    fields.refB = input.ReadU16();
    fields.useSecond = input.ReadU8();
    fields.secondIsHidden = input.ReadU8();
    fields.staticIndex = input.ReadU16();
  }
  fields.x = input.ReadI32();
  fields.y = input.ReadI32();
  fields.refC = readLow16(input);
  fields.layerByteA = kNoLayer;
  fields.layerByteB = kNoLayer;
}

template <class Input>
void readLayeredStaticRef(StaticRefFields& fields, Input& input) {
  fields.objectType = input.ReadU16();
  fields.width = input.ReadI32();
  fields.height = input.ReadI32();
  fields.refA = input.ReadU16();
  fields.refB = input.ReadU16();
  fields.useSecond = input.ReadU8();
  fields.secondIsHidden = input.ReadU8();
  fields.staticIndex = input.ReadU16();
  fields.x = input.ReadI32();
  fields.y = input.ReadI32();
  fields.refC = input.ReadU16();
  fields.refD = input.ReadU16();
  fields.layerByteA = readLow8(input);
  fields.layerByteB = readLow8(input);
}

}  // namespace

ObjectList listNamedBy(const StaticRefFields& fields) {
  const bool namesSecond = fields.useSecond != 0 && fields.secondIsHidden == 0;
  return namesSecond ? ObjectList::kSecond : ObjectList::kFirst;
}

const DrawList* referencedList(const StaticRefFields& fields, const StaticLookup& tables) {
  const DrawStatic* found = tables.FindStatic(fields.objectType, fields.staticIndex);
  if (found == nullptr) {
    return nullptr;
  }
  return listNamedBy(fields) == ObjectList::kSecond ? &found->secondList : &found->firstList;
}

namespace {

template <class Input>
void decodeStaticRef(DrawPart& part, Input& input, i32 v) {
  using namespace part_version;
  constexpr i32 kOldScale = 100;
  StaticRefFields& fields = part.fields.staticRef;
  if (v < kLayers) {
    readOldStaticRef(fields, input, v);
  } else {
    readLayeredStaticRef(fields, input);
  }
  if (v < kWholeScale) {
    fields.height = wrappingProduct(fields.height, kOldScale);
  }
}

}  // namespace

void readStaticRef(DrawPart& part, eArchive& archive, i32 v) { decodeStaticRef(part, archive, v); }

void readStaticRef(DrawPart& part, HeldInput& held, i32 v) {
  decodeHeld(held, v, [&part, v](HeldInput& input) { decodeStaticRef(part, input, v); });
}

void shiftStaticRef(DrawPart& part, i32 dx, i32 dy) { shiftPlace(part.fields.staticRef, dx, dy); }

}  // namespace rvf
