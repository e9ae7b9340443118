#pragma once

#include <memory>
#include <span>
#include <string_view>

#include "pagemodel/DrawPart.h"
#include "pagemodel/FieldVisitor.h"
#include "pagemodel/NameValue.h"
#include "pagemodel/colour/ColourValue.h"
#include "storage/Archive.h"
#include "storage/HyperlinkInfo.h"

namespace rvf {

// IMAGE, RESOURCE, IMPORTPAGE and BCOCABARCODE.
//
// Payloads: the ImageInfo of an IMAGE and then its bytes; the bytes of a RESOURCE, a terminating
// zero, and its link, if it was given one; the clip rectangle of an IMPORTPAGE; the origin of a
// BCOCABARCODE and then its characters.

namespace image_kind {
constexpr i32 kWithoutBytes = 11;  // by absolute value
constexpr i32 kRecords = 10;       // the bytes are an array of records
}  // namespace image_kind

struct ImageInfoFields {
  i32 left = 0, top = 0, right = 0, bottom = 0;
  i32 reservedA = 0;
  i32 kindValue = 0;
  u8 flagA = 0, flagB = 0, flagC = 0, flagD = 0;
  i32 valueA = 0;
  i32 valueB = 0;
  i32 valueC = 0;
  ColourValue colourA, colourB, colourC;
  /// Never read: the colour stored for it is dropped, which comparisons rely on.
  ColourValue colourD;
  i32 valueD = 0;
  i32 reservedB = 0;
  i32 valueE = 0;
  i32 imageFlag = 0;
  ColourValue colourE;
  i32 valueF = 0;
  i32 valueG = -1;
  i32 nameValueCount = 0;
  u8 byteE = 0;

  bool operator==(const ImageInfoFields&) const = default;
};

/// What an image carries besides its pixels. Quirk that stays: two of them are equal only if all
/// fields are the same and neither owns any object, because owned objects are compared by identity.
/// Existing results depend on this.
struct ImageInfo : ImageInfoFields {
  /// Copies everything except what the image owns.
  void setFields(const ImageInfoFields& fields) { ImageInfoFields::operator=(fields); }

  std::unique_ptr<char16_t[]> wideName;  // set by an owner of the part, not on disk
  i32 wideNameLength = 0;
  std::unique_ptr<char[]> narrowName;
  i32 narrowNameLength = 0;
  std::unique_ptr<HyperlinkInfo> hyperlink;
  std::unique_ptr<NameValues> nameValues;

  bool operator==(const ImageInfo&) const = default;
};

struct BarcodeOrigin {
  i32 y;
  i32 x;
  i32 reserved[2];
};
static_assert(sizeof(BarcodeOrigin) == 16);

[[nodiscard]] ImageInfo& imageInfo(DrawPart& part);
[[nodiscard]] const ImageInfo& imageInfo(const DrawPart& part);
/// The bytes of an image; empty for a kind that stores none.
[[nodiscard]] std::span<const std::byte> imageBytes(const DrawPart& part);
[[nodiscard]] std::span<const std::byte> resourceBytes(const DrawPart& part);
/// Null if there is no link. Records never hold one: it is added to a part after reading.
[[nodiscard]] const HyperlinkInfo* resourceHyperlink(const DrawPart& part);
void setResourceHyperlink(DrawPart& part, std::unique_ptr<HyperlinkInfo> link);
[[nodiscard]] std::span<const i32> importClip(const DrawPart& part);
[[nodiscard]] BarcodeOrigin& barcodeOrigin(DrawPart& part);
[[nodiscard]] const BarcodeOrigin& barcodeOrigin(const DrawPart& part);
[[nodiscard]] std::u16string_view barcodeText(const DrawPart& part);

void readImage(DrawPart& part, eArchive& archive, i32 v);
void visitImage(const DrawPart& part, FieldVisitor& visitor);
/// The copy has its own bytes, names, link and values.
void copyImage(DrawPart& target, const DrawPart& source);
void shiftImage(DrawPart& part, i32 dx, i32 dy);
void releaseImage(DrawPart& part);
/// Frees the names and values of an image and keeps the rest, its link included.
void releaseImageNames(DrawPart& part);

void readResource(DrawPart& part, eArchive& archive, i32 v);
void visitResource(const DrawPart& part, FieldVisitor& visitor);
/// The copy has its own link.
void copyResource(DrawPart& target, const DrawPart& source);
void shiftResource(DrawPart& part, i32 dx, i32 dy);
void releaseResource(DrawPart& part);

void readImportPage(DrawPart& part, eArchive& archive, i32 v);
void visitImportPage(const DrawPart& part, FieldVisitor& visitor);
void shiftImportPage(DrawPart& part, i32 dx, i32 dy);

void readBarcode(DrawPart& part, eArchive& archive, i32 v);
void visitBarcode(const DrawPart& part, FieldVisitor& visitor);
void shiftBarcode(DrawPart& part, i32 dx, i32 dy);

}  // namespace rvf
