#include "compare/EqualBodies.h"

#include <algorithm>

#include "compare/CompareImageParts.h"
#include "compare/PartComparison.h"
#include "pagemodel/ImageParts.h"
#include "pagemodel/ReferenceParts.h"

namespace rvf {

namespace {

bool equalsItsCopy(const DrawPart& part, const CompareContext& second,
                   ChildListResults& childLists) {
  switch (part.type) {
    // These compare only plain fields and arrays, which are known to be equal.
    case PartType::kText:
    case PartType::kLine:
    case PartType::kRect:
    case PartType::kPoly:
    case PartType::kJust1Line:
    case PartType::kLineSet:
      return true;
    case PartType::kImage:
      return ownsNothing(imageInfo(part));
    case PartType::kStaticRef: {
      const DrawList* own = childList(part);
      const DrawList* other = referencedList(part.fields.staticRef, second);
      return own == nullptr || other == nullptr || childLists.areEqual(*own, *other);
    }
    default:
      return equalsOwnFields(part);
  }
}

bool equalsItsCopy(const DrawList& list, const CompareContext& second,
                   ChildListResults& childLists) {
  return std::ranges::all_of(
      list.parts(), [&](const DrawPart& part) { return equalsItsCopy(part, second, childLists); });
}

}  // namespace

bool equalByBytes(const CompareContext& first, CompareContext& second, i32 position,
                  ChildListResults& childLists) {
  if (position < 0 || first.doubleByteText != second.doubleByteText) {
    return false;
  }
  const std::span<const std::byte> body = first.bodyBytes();
  if (body.empty() || !second.hasBytesAt(position, body)) {
    return false;
  }
  bool isEqual = equalsItsCopy(first.pageList, second, childLists);
  for (i32 i = 0; i < first.staticCount && isEqual; ++i) {
    isEqual = equalsItsCopy(first.staticList(i), second, childLists);
  }
  return isEqual;
}

}  // namespace rvf
