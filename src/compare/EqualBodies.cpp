#include "compare/EqualBodies.h"

#include <algorithm>

#include "compare/DrawListMatch.h"
#include "compare/PartComparison.h"
#include "pagemodel/ImageParts.h"
#include "pagemodel/ReferenceParts.h"

namespace rvf {

namespace {

// What an image owns counts by its identity, which a copy does not share.
bool ownsNothing(const ImageInfo& info) {
  return info.hyperlink == nullptr && info.nameValues == nullptr && info.wideName == nullptr &&
         info.narrowName == nullptr;
}

bool equalsItsCopy(const DrawPart& part, const CompareContext& second) {
  if (part.type == PartType::kImage) {
    return ownsNothing(imageInfo(part));
  }
  if (part.type == PartType::kStaticRef) {
    const DrawList* own = childList(part);
    const DrawList* other = referencedList(part.fields.staticRef, second);
    return own == nullptr || other == nullptr || listsEqual(*own, *other);
  }
  return equalsOwnFields(part);
}

bool equalsItsCopy(const DrawList& list, const CompareContext& second) {
  return std::ranges::all_of(
      list.parts(), [&second](const DrawPart& part) { return equalsItsCopy(part, second); });
}

}  // namespace

bool equalByBytes(const CompareContext& first, CompareContext& second, i32 position) {
  if (position < 0 || first.doubleByteText != second.doubleByteText) {
    return false;
  }
  const std::span<const std::byte> body = first.bodyBytes();
  if (body.empty() || !second.hasBytesAt(position, body)) {
    return false;
  }
  bool isEqual = equalsItsCopy(first.pageList, second);
  for (i32 i = 0; i < first.staticCount && isEqual; ++i) {
    isEqual = equalsItsCopy(first.staticList(i), second);
  }
  return isEqual;
}

}  // namespace rvf
