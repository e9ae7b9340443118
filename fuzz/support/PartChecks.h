#pragma once

#include <algorithm>

#include "compare/PartComparison.h"
#include "pagemodel/DrawList.h"
#include "pagemodel/ImageParts.h"
#include "pagemodel/PartOperations.h"
#include "pagemodel/ReferenceParts.h"
#include "support/Fuzz.h"
#include "support/NamedFields.h"

namespace rvf::fuzz {

/// Whether a part equals another one that was made from the same bytes. Parts of types without
/// rules never do, nor do parts that own objects compared by identity.
inline bool equalsItsLike(const DrawPart& part);

inline bool equalsItsLike(const DrawList& list) {
  return std::ranges::all_of(list.parts(),
                             [](const DrawPart& part) { return equalsItsLike(part); });
}

// Lengths whose sum overflows leave fewer characters than the comparison looks at.
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

/// Fields that a copy preserves and a shift back and forth restores. Floating-point fields need not
/// be restored, and the copy of a link recomputes its lengths, whatever the file says.
struct ExactFields final : test::NamedFields {
  void floating(std::string_view, f64) override {}
  void number(std::string_view name, i64 value) override {
    if (name != "textCapacity" && name != "textLength") NamedFields::number(name, value);
  }
};

/// Ends the process with the names of the fields that differ.
inline void requireSameFields(const DrawPart& a, const DrawPart& b, const char* what) {
  ExactFields first, second;
  forEachField(a, first);
  forEachField(b, second);
  const bool isSame = first.rows == second.rows;
  if (!isSame) {
    const std::string changed = test::changedRows(first.rows, second.rows);
    std::fprintf(stderr, "type %d:%s\n", int(a.type), changed.c_str());
  }
  require(a.type == b.type && isSame, what);
}

/// Whether a copy of the part has all of its fields.
inline bool isCopiedWhole(const DrawPart& part) {
  using enum PartType;
  constexpr PartType kNotWhole[] = {kHyperlinkArea, kLocSearchKey, kBcocaBarcode, kSubscribe,
                                    kBookmark};
  return std::ranges::find(kNotWhole, part.type) == std::end(kNotWhole);
}

/// Copies every part and reads everything in part and copy that a comparison uses, so that a count
/// larger than its payload is detected.
inline void examineParts(const DrawList& list, const Tolerances& tolerances = {}) {
  for (const DrawPart& part : list.parts()) {
    DrawPart copy;
    copyPart(copy, part);
    if (copy.type == part.type && isCopiedWhole(part)) {
      requireSameFields(copy, part, "a copy has the fields of its original");
    }
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
