#include "compare/CompareImageParts.h"

#include "compare/PartBytes.h"

namespace rvf {

bool ownsNothing(const ImageInfo& info) {
  return info.hyperlink == nullptr && info.nameValues == nullptr && info.wideName == nullptr &&
         info.narrowName == nullptr;
}

bool equalImages(const DrawPart& left, const DrawPart& right) {
  const ImageFields& a = left.fields.image;
  const ImageFields& b = right.fields.image;
  return a.pixelWidth == b.pixelWidth && a.pixelHeight == b.pixelHeight &&
         a.dataLength == b.dataLength && a.imageKind == b.imageKind &&
         imageInfo(left) == imageInfo(right) && sameBytes(imageBytes(left), imageBytes(right));
}

// No tolerance applies, not even to the position.
DiffFlags classifyImages(const DrawPart&, const DrawPart&, const Tolerances&) {
  return diff::kImages;
}

void addImageToKey(MatchKey& key, const DrawPart& part, const Tolerances&) {
  const ImageFields& fields = part.fields.image;
  const ImageInfo& info = imageInfo(part);
  if (!ownsNothing(info)) {
    key.exclude();
    return;
  }
  key.addAll(fields.pixelWidth, fields.pixelHeight, fields.dataLength, fields.imageKind, info.left,
             info.top, info.right, info.bottom, info.reservedA, info.kindValue, info.flagA,
             info.flagB, info.flagC, info.flagD, info.valueA, info.valueB, info.valueC,
             info.colourA, info.colourB, info.colourC, info.colourD, info.valueD, info.reservedB,
             info.valueE, info.imageFlag, info.colourE, info.valueF, info.valueG,
             info.nameValueCount, info.byteE);
  const std::span<const std::byte> bytes = imageBytes(part);
  key.addBytes(bytes.data(), bytes.size());
}

// Quirk that stays: the bytes of a resource are not compared, only their number. Existing results
// depend on this.
bool equalResources(const DrawPart& left, const DrawPart& right) {
  // byteCount, x, y, both scales, and resourceExtra with resourceFlag and resourceKind.
  constexpr u8 kWords = 0b0101'1110;
  return sameWords(left, right, kWords);
}

}  // namespace rvf
