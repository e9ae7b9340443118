#include "pagemodel/AreaParts.h"

#include <new>
#include <utility>

#include "base/Wrapping.h"
#include "pagemodel/PartVersions.h"
#include "pagemodel/PayloadText.h"
#include "pagemodel/Shift.h"

namespace rvf {

// CLICKAREA

void readClickArea(DrawPart& part, eArchive& archive, i32 v) {
  using namespace part_version;
  constexpr i32 kOldScale = 100;
  ClickAreaFields& fields = part.fields.clickArea;
  fields.left = archive.ReadI32();
  fields.top = archive.ReadI32();
  fields.right = archive.ReadI32();
  fields.bottom = archive.ReadI32();
  fields.areaA = archive.ReadI32();
  fields.areaB = archive.ReadI32();
  const i32 areaScale = archive.ReadI32();
  fields.areaScale = v < kWholeScale ? wrappingProduct(areaScale, kOldScale) : areaScale;
  fields.areaCode = v < kCompactFields ? readLow16(archive) : archive.ReadU16();
  fields.areaFlag = v < kCompactFields ? readLow8(archive) : archive.ReadU8();
}

// HYPERLINKAREA

std::u16string_view storedUrl(const DrawPart& part) {
  const bool hasUrl = part.fields.hyperlinkArea.url == kSetPointer;
  return hasUrl ? wholeText(part.payload) : std::u16string_view();
}

std::u16string_view hyperlinkUrl(const DrawPart& part) {
  const bool hasUrl = part.fields.hyperlinkArea.url == kSetPointer;
  return hasUrl ? terminatedText(part.payload, 0) : std::u16string_view();
}

void readHyperlinkArea(DrawPart& part, eArchive& archive, i32 v) {
  using namespace part_version;
  HyperlinkAreaFields& fields = part.fields.hyperlinkArea;
  part.payload.clear();
  fields.url = pointerWord(appendPartText(archive, archive.ReadI32(), part.payload) > 0);
  fields.left = archive.ReadI32();
  fields.top = archive.ReadI32();
  fields.right = archive.ReadI32();
  fields.bottom = archive.ReadI32();
  fields.linkFlagB = archive.ReadU8();
  fields.linkFlagA = archive.ReadU8();
  fields.linkValue = archive.ReadI32();
  fields.linkCode = v >= kLinkCode ? archive.ReadU16() : u16{0};
  if (v >= kLinkValues) {
    fields.linkValueB = archive.ReadU16();
    fields.linkValueC = archive.ReadU16();
  } else {
    fields.linkFlagA = fields.linkFlagA > 0 ? u8{1} : u8{0};
  }
}

void copyHyperlinkArea(DrawPart& target, const DrawPart& source) {
  target.payload.assign(source.payload);
  target.fields = source.fields;
  // Copies are made for display, where these three fields are not used.
  target.fields.hyperlinkArea.linkFlagB = 0;
  target.fields.hyperlinkArea.linkValueB = 0;
  target.fields.hyperlinkArea.linkValueC = 0;
}

void shiftHyperlinkArea(DrawPart& part, i32 dx, i32 dy) {
  shiftBox(part.fields.hyperlinkArea, dx, dy);
}

// SIGNATUREFIELD

const SignatureInfo* signatureInfo(const DrawPart& part) {
  const bool isThere = part.fields.signatureField.rect == kSetPointer;
  return isThere ? part.payload.at<SignatureInfo>(0) : nullptr;
}

namespace {

SignatureInfo& makeSignatureInfo(DrawPart& part) {
  part.payload.resize(sizeof(SignatureInfo));
  auto* info = new (part.payload.data()) SignatureInfo();
  SignatureFieldFields& fields = part.fields.signatureField;
  fields.rect = kSetPointer;
  return *info;
}

// Quirk that stays: the length counts characters, but only that many bytes are stored. They fill
// the first half of the text, and the rest is zero.
std::u16string readHalfFilledText(eArchive& archive) {
  const i32 length = archive.checkedCount(archive.ReadI32(), 1);
  std::u16string text(static_cast<std::size_t>(length), u'\0');
  archive.ReadWhole(text.data(), length);
  return text;
}

}  // namespace

void readSignatureField(DrawPart& part, eArchive& archive, i32 v) {
  using namespace part_version;
  SignatureFieldFields& fields = part.fields.signatureField;
  if (v >= kSignature) {
    SignatureInfo& info = makeSignatureInfo(part);
    info.left = archive.ReadI32();
    info.top = archive.ReadI32();
    info.right = archive.ReadI32();
    info.bottom = archive.ReadI32();
    fields.fieldFlagA = archive.ReadU8();
    info.fieldName = readHalfFilledText(archive);
    info.fieldValue = readHalfFilledText(archive);
    fields.fieldFlagB = archive.ReadU8();
    const i32 count = archive.checkedCount(archive.ReadI32(), kSmallestNameValue);
    if (const auto attributes = readNameValues(archive, count, count, NameValueForm::kPlain)) {
      info.attributes = std::move(*attributes);
    }
    fields.fieldName = pointerWord(!info.fieldName.empty());
    fields.fieldValue = pointerWord(!info.fieldValue.empty());
    fields.attributes = pointerWord(!info.attributes.empty());
  }
  fields.fieldId = v >= kFieldId ? archive.ReadI32() : -1;
}

void copySignatureField(DrawPart& target, const DrawPart& source) {
  if (const SignatureInfo* from = signatureInfo(source)) {
    makeSignatureInfo(target) = *from;
  }
  target.fields = source.fields;
}

void shiftSignatureField(DrawPart& part, i32 dx, i32 dy) {
  if (part.fields.signatureField.rect != kSetPointer) {
    return;
  }
  shiftBox(*part.payload.at<SignatureInfo>(0), dx, dy);
}

void releaseSignatureField(DrawPart& part) {
  if (part.fields.signatureField.rect == kSetPointer) {
    part.payload.at<SignatureInfo>(0)->~SignatureInfo();
    SignatureFieldFields& fields = part.fields.signatureField;
    fields.rect = kNullPointer;
    fields.fieldName = kNullPointer;
    fields.fieldValue = kNullPointer;
    fields.attributes = kNullPointer;
  }
}

}  // namespace rvf
