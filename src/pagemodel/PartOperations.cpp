#include "pagemodel/PartOperations.h"

#include <array>
#include <cstddef>
#include <initializer_list>

#include "pagemodel/AreaParts.h"
#include "pagemodel/EmptyParts.h"
#include "pagemodel/ImageParts.h"
#include "pagemodel/MarkerParts.h"
#include "pagemodel/ReferenceParts.h"
#include "pagemodel/TextParts.h"
#include "pagemodel/VectorParts.h"

namespace rvf {

namespace {

using ReadOperation = void (*)(DrawPart& part, eArchive& archive, i32 version);
using VisitOperation = void (*)(const DrawPart& part, FieldVisitor& visitor);
using CopyOperation = void (*)(DrawPart& target, const DrawPart& source);
using ShiftOperation = void (*)(DrawPart& part, i32 dx, i32 dy);
using ReleaseOperation = void (*)(DrawPart& part);

/// The operations of one type. A new type is a row here.
struct PartOperations {
  PartType type;
  ReadOperation read;
  VisitOperation visit;
  CopyOperation copy;        // null: copyPart does not copy its fields
  ShiftOperation shift;      // null: it has no position
  ReleaseOperation release;  // null: everything it holds is plain bytes in the payload
  u8 pointerWords;           // bit n: word n of its fields is a pointer
};

// For types whose payload is plain bytes.
void copyPlain(DrawPart& target, const DrawPart& source) {
  target.payload.assign(source.payload);
  target.fields = source.fields;
}

constexpr CopyOperation kNotCopied = nullptr;
constexpr ShiftOperation kNotShifted = nullptr;
constexpr ReleaseOperation kPlain = nullptr;

constexpr u8 pointersAt(std::initializer_list<std::size_t> offsets) {
  u8 words = 0;
  for (const std::size_t offset : offsets) {
    words = static_cast<u8>(words | 1U << offset / sizeof(u32));
  }
  return words;
}

constexpr PartOperations emptyPart(PartType type) {
  return {type, readNothing, visitNothing, kNotCopied, kNotShifted, kPlain, 0};
}

// clang-format off
constexpr std::array<PartOperations, kPartTypeCount> kOperations = {{
    {PartType::kUnknown, readWithoutPool, visitNothing, kNotCopied, kNotShifted, kPlain, 0},
    {PartType::kText, readText, visitText, copyPlain, shiftText, kPlain,
     pointersAt({offsetof(TextFields, runs), offsetof(TextFields, text)})},
    {PartType::kLine, readLine, visitLine, copyPlain, shiftLine, kPlain,
     pointersAt({offsetof(LineFields, points)})},
    {PartType::kRect, readRect, visitRect, copyPlain, shiftRect, kPlain, 0},
    {PartType::kPoly, readPoly, visitPoly, copyPoly, shiftPoly, releasePoly,
     pointersAt({offsetof(PolyFields, points), offsetof(PolyFields, style)})},
    {PartType::kImage, readImage, visitImage, copyImage, shiftImage, releaseImage,
     pointersAt({offsetof(ImageFields, data), offsetof(ImageFields, info)})},
    {PartType::kStartEnd, readStartEnd, visitStartEnd, copyStartEnd, shiftStartEnd, releaseStartEnd,
     pointersAt({offsetof(StartEndFields, info)})},
    {PartType::kTextProp, readTextProp, visitTextProp, copyPlain, kNotShifted, kPlain, 0},
    {PartType::kClickArea, readClickArea, visitClickArea, copyPlain, kNotShifted, kPlain, 0},
    {PartType::kStaticRef, readStaticRef, visitStaticRef, copyPlain, shiftStaticRef, kPlain, 0},
    {PartType::kResource, readResource, visitResource, copyResource, shiftResource, releaseResource,
     pointersAt({offsetof(ResourceFields, bytes), offsetof(ResourceFields, hyperlink)})},
    emptyPart(PartType::kTextBox),
    emptyPart(PartType::kTable),
    emptyPart(PartType::kTextWrap),
    {PartType::k1Line, readWithoutPool, visitNothing, kNotCopied, kNotShifted, kPlain, 0},
    {PartType::kLocSearchKey, readLocSearchKey, visitLocSearchKey, kNotCopied, kNotShifted, kPlain,
     pointersAt({offsetof(LocSearchKeyFields, keyText), offsetof(LocSearchKeyFields, keySecondText)})},
    emptyPart(PartType::kFixedText),
    {PartType::kRecompose, readNothing, visitNothing, copyPlain, kNotShifted, kPlain, 0},
    emptyPart(PartType::kInputRadioButton),
    emptyPart(PartType::kInputCheckBox),
    emptyPart(PartType::kInputEditBox),
    emptyPart(PartType::kInputList),
    emptyPart(PartType::kInputFunctionButton),
    {PartType::kUdlIgnoreStartEnd, readUdlIgnore, visitUdlIgnore, copyPlain, kNotShifted, kPlain, 0},
    emptyPart(PartType::kInputHyperlinkButton),
    emptyPart(PartType::kInputCustomButton),
    emptyPart(PartType::kInputOrderList),
    emptyPart(PartType::kInputProcessList),
    emptyPart(PartType::kInputMenuButton),
    emptyPart(PartType::kInputProcessButton),
    {PartType::kJust1Line, readJust1Line, visitJust1Line, copyPlain, shiftJust1Line, kPlain, 0},
    {PartType::kLineSet, readLineSet, visitLineSet, copyPlain, shiftLineSet, kPlain,
     pointersAt({offsetof(LineSetFields, offsets)})},
    {PartType::kBcocaBarcode, readBarcode, visitBarcode, kNotCopied, shiftBarcode, kPlain,
     pointersAt({offsetof(BcocaBarcodeFields, origin), offsetof(BcocaBarcodeFields, text)})},
    {PartType::kImportPage, readImportPage, visitImportPage, copyPlain, shiftImportPage, kPlain,
     pointersAt({offsetof(ImportPageFields, clip)})},
    {PartType::kLayerIgnoreStartEnd, readLayerIgnore, visitLayerIgnore, copyPlain, kNotShifted, kPlain, 0},
    emptyPart(PartType::kInputCustomControl),
    {PartType::kInserterBarcodeStartEnd, readInserterBarcode, visitInserterBarcode, copyPlain, kNotShifted, kPlain, 0},
    {PartType::kMaskedObjectStartEnd, readMaskedObject, visitMaskedObject, copyPlain, kNotShifted, kPlain, 0},
    emptyPart(PartType::kInputFileUpload),
    emptyPart(PartType::kWebPlaceholder),
    {PartType::kHyperlinkArea, readHyperlinkArea, visitHyperlinkArea, copyHyperlinkArea, shiftHyperlinkArea, kPlain,
     pointersAt({offsetof(HyperlinkAreaFields, url)})},
    {PartType::kSubscribe, readSubscribe, visitSubscribe, kNotCopied, kNotShifted, releaseSubscribe,
     pointersAt({offsetof(SubscribeFields, entries)})},
    {PartType::kTaggedObjectStartEnd, readTaggedObject, visitTaggedObject, copyPlain, kNotShifted, kPlain,
     pointersAt({offsetof(TaggedObjectFields, tagText), offsetof(TaggedObjectFields, altText),
                 offsetof(TaggedObjectFields, actualText), offsetof(TaggedObjectFields, language)})},
    {PartType::kBookmark, readBookmark, visitBookmark, kNotCopied, kNotShifted, kPlain,
     pointersAt({offsetof(BookmarkFields, title)})},
    {PartType::kSignatureField, readSignatureField, visitSignatureField, copySignatureField, shiftSignatureField,
     releaseSignatureField,
     pointersAt({offsetof(SignatureFieldFields, rect), offsetof(SignatureFieldFields, fieldName),
                 offsetof(SignatureFieldFields, fieldValue),
                 offsetof(SignatureFieldFields, attributes)})},
}};
// clang-format on

static_assert(rowsStandUnderTheirCodes(kOperations));

constexpr PartOperations kNoOperations = emptyPart(PartType::kUnknown);

const PartOperations& operationsOf(PartType type) {
  return isKnownPartType(type) ? kOperations[partIndex(type)] : kNoOperations;
}

}  // namespace

void readPayload(DrawPart& part, eArchive& archive, i32 version) {
  operationsOf(part.type).read(part, archive, version);
}

void forEachField(const DrawPart& part, FieldVisitor& visitor) {
  operationsOf(part.type).visit(part, visitor);
  visitor.number("extraId", part.extraId);
}

void readHeldPayload(DrawPart& part, HeldInput& held, i32 version) {
  switch (part.type) {
    case PartType::kText:
      return readText(part, held, version);
    case PartType::kLine:
      return readLine(part, held, version);
    case PartType::kRect:
      return readRect(part, held, version);
    case PartType::kStaticRef:
      return readStaticRef(part, held, version);
    case PartType::kJust1Line:
      return readJust1Line(part, held, version);
    case PartType::kLineSet:
      return readLineSet(part, held, version);
    default:
      return held.giveUp();
  }
}

void copyPart(DrawPart& target, const DrawPart& source) {
  if (&target == &source) {
    return;
  }
  const PartType before = target.type;
  makeBlank(target);
  target.extraId = source.extraId;
  target.ownerTag = source.ownerTag;
  if (const CopyOperation copy = operationsOf(source.type).copy) {
    target.type = source.type;
    copy(target, source);
  } else if (source.type != PartType::kUnknown) {
    target.type = before;
  }
}

void shiftPart(DrawPart& part, i32 dx, i32 dy) {
  const ShiftOperation shift = operationsOf(part.type).shift;
  if (shift != nullptr && (dx != 0 || dy != 0)) {
    shift(part, dx, dy);
  }
}

void releasePart(DrawPart& part, i32 keep) {
  if (keep == kKeepHyperlink && part.type == PartType::kImage) {
    releaseImageNames(part);
    return;
  }
  if (const ReleaseOperation release = operationsOf(part.type).release) {
    release(part);
  }
}

void makeBlank(DrawPart& part) {
  if (operationsOf(part.type).release != kPlain) {
    releasePart(part, kReleaseAll);
  }
  part.fields = PartFields();
  part.payload.clear();
  part.extraId = 0;
  part.type = PartType::kUnknown;
  part.poolKind = 0;
}

DrawPart::~DrawPart() { releasePart(*this, kReleaseAll); }

void DrawPart::swap(DrawPart& other) noexcept {
  std::swap(fields, other.fields);
  payload.swap(other.payload);
  std::swap(ownerTag, other.ownerTag);
  std::swap(extraId, other.extraId);
  std::swap(type, other.type);
  std::swap(poolKind, other.poolKind);
}

PartWords partWords(const DrawPart& part) {
  PartWords result{};
  std::memcpy(result.words.data(), &part.fields, sizeof(part.fields));
  const u8 pointers = operationsOf(part.type).pointerWords;
  for (std::size_t i = 0; i < kFieldWords; ++i) {
    const bool isSet = (pointers >> i & 1) != 0 && result.words[i] != 0;
    result.setPointers = static_cast<u8>(result.setPointers | unsigned{isSet} << i);
  }
  return result;
}

}  // namespace rvf
