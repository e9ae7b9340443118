#pragma once

#include <algorithm>
#include <cstring>

#include "base/Wrapping.h"
#include "compare/PartComparison.h"
#include "pagemodel/DrawList.h"
#include "pagemodel/ImageParts.h"
#include "pagemodel/PartOperations.h"
#include "pagemodel/ReferenceParts.h"
#include "support/FuzzRun.h"

namespace rvf::fuzz {

/// Whether a part equals another one that was made from the same bytes. Types without rules never
/// do, nor do parts that own what counts by its identity.
inline bool equalsItsLike(const DrawPart& part);

inline bool equalsItsLike(const DrawList& list) {
  return std::ranges::all_of(list.parts(),
                             [](const DrawPart& part) { return equalsItsLike(part); });
}

// Lengths whose sum overflows leave fewer characters than the comparison wants to see.
inline bool hasSoundLengths(const TextPropFields& fields) {
  constexpr i32 kHighest = 1 << 29;
  return std::min(fields.lengthA, fields.lengthB) >= 0 &&
         std::max(fields.lengthA, fields.lengthB) <= kHighest;
}

inline bool equalsItsLike(const DrawPart& part) {
  switch (part.type) {
    case PartType::kUnknown:
    case PartType::kText:
    case PartType::kLine:
    case PartType::kRect:
    case PartType::kPoly:
    case PartType::kClickArea:
    case PartType::kResource:
    case PartType::k1Line:
    case PartType::kRecompose:
    case PartType::kJust1Line:
    case PartType::kLineSet:
    case PartType::kLayerIgnoreStartEnd:
    case PartType::kSignatureField:
      return true;
    case PartType::kImage:
      return imageInfo(part).hyperlink == nullptr && imageInfo(part).nameValues == nullptr;
    case PartType::kHyperlinkArea:
      return part.fields.hyperlinkArea.url == kSetPointer;
    case PartType::kTextProp:
      return hasSoundLengths(part.fields.textProp);
    case PartType::kStaticRef:
      return childList(part) == nullptr || equalsItsLike(*childList(part));
    default:
      return false;
  }
}

/// Copies every part and looks at part and copy through all that a comparison touches, so that a
/// count that its payload does not bear out is noticed.
inline void examineParts(const DrawList& list) {
  require(list.count >= 0 && list.count <= list.capacity(), "a list holds what it counts");
  for (const DrawPart& part : list.parts()) {
    DrawPart copy;
    copyPart(copy, part);
    const bool isCopied = copy.type == part.type;
    const bool isEqual = partsEqual(part, copy);
    require(!isCopied || isEqual || !equalsItsLike(part), "a copy is equal to its original");
    require(!isEqual || classifyParts(part, copy) == 0, "equal parts do not differ");
    static_cast<void>(classifyParts(copy, part));
    shiftPart(copy, 1, 2);
    static_cast<void>(classifyParts(part, copy));
    releasePart(copy, kKeepHyperlink);
  }
}

/// Of two lists read from the same bytes, of which `used` has held another one before.
inline void requireSame(const DrawList& used, const DrawList& fresh) {
  require(used.count == fresh.count, "a used list has the parts of a new one");
  for (i32 i = 0; i < used.count; ++i) {
    require(std::memcmp(&used[i].fields, &fresh[i].fields, sizeof(PartFields)) == 0 &&
                used[i].type == fresh[i].type && used[i].extraId == fresh[i].extraId,
            "a used slot has the fields of a new one");
    require(used[i].payload.size() == fresh[i].payload.size(),
            "a used slot has the payload of a new one");
    require(partsEqual(used[i], fresh[i]) || !equalsItsLike(used[i]),
            "a used slot is equal to a new one");
  }
}

/// Of `moved`, which goes there and back and was read from the same bytes as `other`.
inline void requireShiftIsUndone(DrawList& moved, const DrawList& other, i32 dx, i32 dy) {
  for (i32 i = 0; i < moved.count; ++i) {
    DrawPart& part = moved.parts()[static_cast<std::size_t>(i)];
    shiftPart(part, dx, dy);
    shiftPart(part, wrappingProduct(dx, -1), wrappingProduct(dy, -1));
    require(std::memcmp(&part.fields, &other[i].fields, sizeof(PartFields)) == 0 &&
                (partsEqual(part, other[i]) || !equalsItsLike(part)),
            "a shift can be undone");
  }
}

}  // namespace rvf::fuzz
