#pragma once

#include <algorithm>

#include "compare/PartComparison.h"
#include "pagemodel/DrawList.h"
#include "pagemodel/ImageParts.h"
#include "pagemodel/PartOperations.h"
#include "pagemodel/ReferenceParts.h"
#include "support/Fuzz.h"

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
  using enum PartType;
  constexpr PartType kAlwaysEqual[] = {kUnknown,       kText,      k1Line,     kLine,
                                       kRect,          kPoly,      kClickArea, kResource,
                                       kRecompose,     kJust1Line, kLineSet,   kLayerIgnoreStartEnd,
                                       kSignatureField};
  switch (part.type) {
    case kImage:
      return imageInfo(part).hyperlink == nullptr && imageInfo(part).nameValues == nullptr;
    case kHyperlinkArea:
      return part.fields.hyperlinkArea.url == kSetPointer;
    case kTextProp:
      return hasSoundLengths(part.fields.textProp);
    case kStaticRef:
      return childList(part) == nullptr || equalsItsLike(*childList(part));
    default:
      return std::ranges::find(kAlwaysEqual, part.type) != std::end(kAlwaysEqual);
  }
}

/// Copies every part and looks at part and copy through all that a comparison touches, so that a
/// count that its payload does not bear out is noticed.
inline void examineParts(const DrawList& list, const Tolerances& tolerances = {}) {
  for (const DrawPart& part : list.parts()) {
    DrawPart copy;
    copyPart(copy, part);
    const bool isEqual = partsEqual(part, copy);
    require(copy.type != part.type || isEqual || !equalsItsLike(part),
            "a copy is equal to its original");
    require(!isEqual || classifyParts(part, copy, tolerances) == 0, "equal parts do not differ");
    static_cast<void>(classifyParts(copy, part, tolerances));
    shiftPart(copy, 1, 2);
    static_cast<void>(classifyParts(part, copy, tolerances));
    releasePart(copy, kKeepHyperlink);
  }
}

}  // namespace rvf::fuzz
