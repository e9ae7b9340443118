#include "pagemodel/ImageParts.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <new>

#include "base/Sizes.h"
#include "base/Wrapping.h"
#include "pagemodel/PartVersions.h"
#include "pagemodel/PayloadText.h"
#include "pagemodel/Shift.h"

namespace rvf {

// IMAGE

ImageInfo& imageInfo(DrawPart& part) { return *part.payload.at<ImageInfo>(0); }

const ImageInfo& imageInfo(const DrawPart& part) {
  static const ImageInfo kNone;
  return part.fields.image.info == kSetPointer ? *part.payload.at<ImageInfo>(0) : kNone;
}

std::span<const std::byte> imageBytes(const DrawPart& part) {
  if (part.fields.image.data != kSetPointer) {
    return {};
  }
  return {part.payload.at<std::byte>(sizeof(ImageInfo)), part.payload.size() - sizeof(ImageInfo)};
}

namespace {

constexpr i32 kDefaultColourC = 0x00FF00;
constexpr i32 kOldRecordSize = 32;
constexpr i32 kRecordSize = 36;

/// What precedes the pixels in a record.
struct ImageHead {
  i32 pixelWidth = 0;
  i32 pixelHeight = 0;
  i32 dataLength = 0;
  i32 imageKind = 0;
  bool hasLegacyColour = false;
  ImageInfoFields info;
};

void readImageColours(ImageHead& head, eArchive& archive, i32 v) {
  using namespace part_version;
  const KindWord kindWord = v >= kTint ? KindWord::kStored : KindWord::kAbsent;
  head.info.colourA = readColourValue(archive, kindWord);
  head.info.colourB = readColourValue(archive, kindWord);
  if (v >= kImageColourC) {
    head.info.colourC = readColourValue(archive, kindWord);
    head.hasLegacyColour = head.info.colourC.kind == colour_kind::kLegacy;
  } else {
    head.info.colourC.value = kDefaultColourC;
    head.hasLegacyColour = true;
  }
  if (head.hasLegacyColour) {
    head.info.colourC.kind = colour_kind::kRgb;
  }
}

void readImageFlags(ImageInfoFields& info, eArchive& archive, i32 v) {
  using namespace part_version;
  if (v >= kImageByteFlags) {
    info.flagA = archive.ReadU8();
    info.flagB = archive.ReadU8();
    info.flagC = archive.ReadU8();
    info.flagD = archive.ReadU8();
    return;
  }
  info.flagA = readLow8(archive);
  info.flagB = v >= kImageFlagB ? readLow8(archive) : u8{0};
  info.flagC = v >= kImageFlagsCD ? static_cast<u8>(archive.ReadI16()) : u8{0};
  info.flagD = info.flagC;
}

// Old files number image kinds differently and combine into one number what later versions store as
// two values.
void mapOldImageKind(ImageHead& head) {
  constexpr i32 kHighestOldKind = 10;
  constexpr i32 kDetailedKind = 101;
  constexpr i32 kOtherKind = 7;
  const i32 stored = head.imageKind;
  if (stored > kHighestOldKind) {
    head.info.kindValue = stored;
    head.imageKind = kDetailedKind;
  } else if (stored == 0 || stored == 1) {
    head.imageKind = 1;
  } else if (stored != 2) {
    head.imageKind = kOtherKind;
  }
}

ImageHead readImageHead(eArchive& archive, i32 v) {
  using namespace part_version;
  ImageHead head;
  head.info.left = archive.ReadI32();
  head.info.top = archive.ReadI32();
  head.info.right = archive.ReadI32();
  head.info.bottom = archive.ReadI32();
  head.pixelWidth = archive.ReadI32();
  head.pixelHeight = archive.ReadI32();
  head.info.valueA = archive.ReadI32();
  head.info.valueB = archive.ReadI32();
  readImageColours(head, archive, v);
  readImageFlags(head.info, archive, v);
  head.dataLength = archive.ReadI32();
  head.imageKind = archive.ReadI32();
  if (head.dataLength < 0) {
    head.dataLength = wrappingProduct(head.dataLength, -1);
  }
  if (v >= kImageKindValue) {
    head.info.kindValue = archive.ReadI32();
  } else {
    mapOldImageKind(head);
  }
  head.info.valueC = v >= kImageValueC ? archive.ReadI32() : 0;
  return head;
}

// The fields after the pixels.
void readImageTail(ImageInfo& info, eArchive& archive, i32 v) {
  using namespace part_version;
  info.valueE = v >= kImageValueE ? archive.ReadI32() : 0;
  if (v >= kNameValues) {
    const i32 count = archive.checkedCount(archive.ReadI32(), kSmallestNumberedNameValue);
    info.nameValueCount = count;
    info.nameValues = readNameValues(archive, count, count, NameValueForm::kNumbered);
  }
  if (v >= kImageValueD) {
    info.valueD = archive.ReadI32();
    // Quirk that stays: this colour is read and dropped. Storing it in colourD would make images
    // differ that are equal in existing results.
    static_cast<void>(readColourValue(archive, KindWord::kStored));
  }
  info.byteE = v >= kImportFlag ? archive.ReadU8() : u8{0};
  info.imageFlag = v >= kImageFlag ? archive.ReadI32() : 0;
  if (v >= kImageColourE && info.imageFlag != 0) {
    info.colourE = readColourValue(archive, KindWord::kStored);
    info.valueF = archive.ReadI32();
    info.valueG = archive.ReadI32();
  }
}

/// Sizes the payload and makes an ImageInfo at its start; the bytes after it are left as they are.
ImageInfo& makeImageInfo(DrawPart& part, i64 dataLength) {
  part.payload.resize(static_cast<i64>(sizeof(ImageInfo)) + dataLength);
  auto* info = new (part.payload.data()) ImageInfo();
  part.fields.image.info = kSetPointer;
  part.fields.image.data = pointerWord(dataLength > 0);
  return *info;
}

// Each record of an old image grows by four bytes. An incomplete last record is copied unchanged.
i64 widenRecords(DrawPart& part, i32 dataLength) {
  const i32 records = dataLength / kOldRecordSize;
  const i64 widened = i64{dataLength} + i64{records} * (kRecordSize - kOldRecordSize);
  part.payload.resize(static_cast<i64>(sizeof(ImageInfo)) + widened);
  auto* bytes = part.payload.at<std::byte>(sizeof(ImageInfo));
  std::memmove(bytes + i64{records} * kRecordSize, bytes + i64{records} * kOldRecordSize,
               static_cast<std::size_t>(dataLength % kOldRecordSize));
  for (i64 i = records - 1; i >= 0; --i) {
    std::byte* record = bytes + i * kRecordSize;
    std::memmove(record, bytes + i * kOldRecordSize, kOldRecordSize);
    std::memset(record + kOldRecordSize, 0, kRecordSize - kOldRecordSize);
  }
  return widened;
}

}  // namespace

void readImage(DrawPart& part, eArchive& archive, i32 v) {
  const ImageHead head = readImageHead(archive, v);
  const bool hasBytes =
      head.imageKind != image_kind::kWithoutBytes && head.imageKind != -image_kind::kWithoutBytes;
  const i32 stored = hasBytes ? archive.checkedCount(std::abs(i64{head.dataLength}), 1) : 0;
  if (archive.failed()) {
    return;
  }
  part.payload.resize(static_cast<i64>(sizeof(ImageInfo)) + stored);
  archive.ReadWhole(part.payload.at<std::byte>(sizeof(ImageInfo)), stored);

  i64 dataLength = stored;
  if (head.hasLegacyColour && head.imageKind == image_kind::kRecords && stored > 0) {
    dataLength = widenRecords(part, stored);
    if (dataLength > std::numeric_limits<i32>::max()) {
      archive.markDamaged();
      return;
    }
  }
  ImageInfo& info = makeImageInfo(part, dataLength);
  info.setFields(head.info);
  ImageFields& fields = part.fields.image;
  fields.pixelWidth = head.pixelWidth;
  fields.pixelHeight = head.pixelHeight;
  fields.dataLength = hasBytes ? static_cast<i32>(dataLength) : head.dataLength;
  fields.imageKind = head.imageKind;
  readImageTail(info, archive, v);
}

void copyImage(DrawPart& target, const DrawPart& source) {
  if (source.fields.image.info != kSetPointer) {
    target.fields = source.fields;
    return;
  }
  const std::span<const std::byte> bytes = imageBytes(source);
  ImageInfo& info = makeImageInfo(target, static_cast<i64>(bytes.size()));
  target.fields = source.fields;
  std::ranges::copy(bytes, target.payload.at<std::byte>(sizeof(ImageInfo)));

  const ImageInfo& from = imageInfo(source);
  info.setFields(from);
  if (from.wideNameLength > 0) {
    const auto length = static_cast<std::size_t>(from.wideNameLength);
    info.wideName = std::make_unique<char16_t[]>(length);
    std::copy_n(from.wideName.get(), length, info.wideName.get());
    info.wideNameLength = from.wideNameLength;
  }
  if (from.narrowNameLength > 0) {
    const auto length = static_cast<std::size_t>(from.narrowNameLength);
    info.narrowName = std::make_unique<char[]>(length);
    std::copy_n(from.narrowName.get(), length, info.narrowName.get());
    info.narrowNameLength = from.narrowNameLength;
  }
  if (from.hyperlink != nullptr) {
    info.hyperlink = std::make_unique<HyperlinkInfo>(*from.hyperlink);
  }
  info.nameValues = copyOf(from.nameValues);
}

void shiftImage(DrawPart& part, i32 dx, i32 dy) {
  if (part.fields.image.info != kSetPointer) {
    return;
  }
  shiftBox(imageInfo(part), dx, dy);
}

void releaseImage(DrawPart& part) {
  if (part.fields.image.info == kSetPointer) {
    imageInfo(part).~ImageInfo();
    part.fields.image.info = kNullPointer;
    part.fields.image.data = kNullPointer;
  }
}

void releaseImageNames(DrawPart& part) {
  if (part.fields.image.info != kSetPointer) {
    return;
  }
  ImageInfo& info = imageInfo(part);
  info.nameValues.reset();
  info.nameValueCount = 0;
  info.wideName.reset();
  info.wideNameLength = 0;
  info.narrowName.reset();
  info.narrowNameLength = 0;
  info.imageFlag = 0;
}

// RESOURCE

std::span<const std::byte> resourceBytes(const DrawPart& part) {
  const ResourceFields& fields = part.fields.resource;
  if (fields.bytes != kSetPointer) {
    return {};
  }
  return {part.payload.data(), asSize(fields.byteCount)};
}

namespace {

using ResourceLink = std::unique_ptr<HyperlinkInfo>;

// The link follows the bytes and their terminator.
std::size_t linkOffset(const DrawPart& part) {
  const std::size_t end = resourceBytes(part).size() + 1;
  return (end + alignof(ResourceLink) - 1) / alignof(ResourceLink) * alignof(ResourceLink);
}

}  // namespace

const HyperlinkInfo* resourceHyperlink(const DrawPart& part) {
  const bool hasLink = part.fields.resource.hyperlink == kSetPointer;
  return hasLink ? part.payload.at<ResourceLink>(linkOffset(part))->get() : nullptr;
}

void setResourceHyperlink(DrawPart& part, std::unique_ptr<HyperlinkInfo> link) {
  releaseResource(part);
  if (link == nullptr) {
    return;
  }
  const std::size_t offset = linkOffset(part);
  part.payload.resize(static_cast<i64>(offset + sizeof(ResourceLink)));
  new (part.payload.data() + offset) ResourceLink(std::move(link));
  part.fields.resource.hyperlink = kSetPointer;
}

void readResource(DrawPart& part, eArchive& archive, i32 v) {
  using namespace part_version;
  constexpr i32 kWithoutBytes = 0;  // of dataMode: the count is stored, but no bytes
  constexpr i32 kWithBytes = 1;     // any other dataMode is the count itself
  if (v < kResource) {
    return;
  }
  ResourceFields& fields = part.fields.resource;
  fields.resourceKind = readLow8(archive);
  const i32 dataMode = v >= kDataMode ? archive.ReadI32() : kWithBytes;
  const bool hasCount = dataMode == kWithoutBytes || dataMode == kWithBytes;
  const i32 stored = hasCount ? archive.ReadI32() : dataMode;
  if (dataMode == kWithoutBytes) {
    fields.byteCount = std::max(stored, 0);
  } else {
    fields.byteCount = archive.checkedCount(stored, 1);
    fields.bytes = pointerWord(fields.byteCount > 0);
    part.payload.resize(i64{fields.byteCount} + 1);
    archive.ReadWhole(part.payload.data(), fields.byteCount);
    *part.payload.at<u8>(asSize(fields.byteCount)) = 0;
  }
  fields.x = archive.ReadI32();
  fields.y = archive.ReadI32();
  fields.scaleX = v < kResourceExtra ? static_cast<i16>(archive.ReadI32()) : archive.ReadI16();
  fields.scaleY = v < kResourceExtra ? static_cast<i16>(archive.ReadI32()) : archive.ReadI16();
  fields.resourceExtra = v < kResourceExtra ? u16{0} : archive.ReadU16();
  fields.resourceFlag = readLow8(archive);
}

void copyResource(DrawPart& target, const DrawPart& source) {
  target.payload.assign(source.payload);
  target.fields = source.fields;
  target.fields.resource.hyperlink = kNullPointer;
  if (const HyperlinkInfo* link = resourceHyperlink(source)) {
    setResourceHyperlink(target, std::make_unique<HyperlinkInfo>(*link));
  }
}

void shiftResource(DrawPart& part, i32 dx, i32 dy) { shiftPlace(part.fields.resource, dx, dy); }

void releaseResource(DrawPart& part) {
  if (part.fields.resource.hyperlink == kSetPointer) {
    std::destroy_at(part.payload.at<ResourceLink>(linkOffset(part)));
    part.fields.resource.hyperlink = kNullPointer;
  }
}

// IMPORTPAGE

namespace {
constexpr std::size_t kClipValues = 4;
}

std::span<const i32> importClip(const DrawPart& part) {
  if (part.fields.importPage.clip != kSetPointer) {
    return {};
  }
  return {part.payload.at<i32>(0), kClipValues};
}

void readImportPage(DrawPart& part, eArchive& archive, i32 v) {
  using namespace part_version;
  ImportPageFields& fields = part.fields.importPage;
  fields.pageObject = archive.ReadI32();
  fields.pageNumber = archive.ReadU16();
  fields.byteA = readLow8(archive);
  fields.byteB = readLow8(archive);
  fields.x = archive.ReadI32();
  fields.y = archive.ReadI32();
  fields.valueA = archive.ReadI32();
  fields.valueB = archive.ReadI32();
  fields.clip = kSetPointer;
  part.payload.resize(kClipValues * sizeof(i32));
  for (i32& value : std::span(part.payload.at<i32>(0), kClipValues)) {
    value = v >= kClip ? archive.ReadI32() : 0;
  }
  fields.importFlag = v >= kImportFlag ? archive.ReadU8() : u8{0};
}

void shiftImportPage(DrawPart& part, i32 dx, i32 dy) { shiftPlace(part.fields.importPage, dx, dy); }

// BCOCABARCODE

BarcodeOrigin& barcodeOrigin(DrawPart& part) { return *part.payload.at<BarcodeOrigin>(0); }

const BarcodeOrigin& barcodeOrigin(const DrawPart& part) {
  return *part.payload.at<BarcodeOrigin>(0);
}

std::u16string_view barcodeText(const DrawPart& part) {
  const BcocaBarcodeFields& fields = part.fields.barcode;
  if (fields.text != kSetPointer) {
    return {};
  }
  return {part.payload.at<char16_t>(sizeof(BarcodeOrigin)), fields.textLength};
}

void readBarcode(DrawPart& part, eArchive& archive, i32) {
  BcocaBarcodeFields& fields = part.fields.barcode;
  fields.barcodeKind = archive.ReadU8();
  fields.barcodeFlag = archive.ReadU8();
  fields.barcodeCode = archive.ReadU16();
  fields.barcodeValue = archive.ReadI32();
  fields.angle = archive.ReadI16();
  fields.byteA = archive.ReadU8();
  fields.tint = readLow8(archive);
  fields.colour = readColour(archive);
  fields.barcodeExtra = archive.ReadU16();
  fields.byteB = archive.ReadU8();
  const u16 stored = archive.ReadU16();
  const i32 x = archive.ReadI32();
  const i32 y = archive.ReadI32();
  const i32 textLength = archive.checkedCount(stored, characterSize(archive));
  fields.textLength = static_cast<u16>(textLength);
  fields.textCapacity = static_cast<u16>(textLength);
  fields.origin = kSetPointer;
  fields.text = pointerWord(textLength > 0);
  part.payload.resize(static_cast<i64>(sizeof(BarcodeOrigin)) + 2 * i64{textLength});
  barcodeOrigin(part) = {y, x, {0, 0}};
  readPartText(archive, textLength, part.payload.at<char16_t>(sizeof(BarcodeOrigin)));
}

void shiftBarcode(DrawPart& part, i32 dx, i32 dy) {
  if (part.fields.barcode.origin != kSetPointer) {
    return;
  }
  shiftPlace(barcodeOrigin(part), dx, dy);
}

}  // namespace rvf
