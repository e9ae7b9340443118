#include "compare/PartComparison.h"

#include <array>

#include "compare/CompareAreaParts.h"
#include "compare/CompareImageParts.h"
#include "compare/CompareMarkerParts.h"
#include "compare/CompareReferenceParts.h"
#include "compare/CompareTextParts.h"
#include "compare/CompareVectorParts.h"
#include "compare/Tolerances.h"

namespace rvf {

namespace {

using EqualOperation = bool (*)(const DrawPart& left, const DrawPart& right);
using ClassifyOperation = DiffFlags (*)(const DrawPart& left, const DrawPart& right,
                                        const Tolerances& tolerances);
using KeyOperation = void (*)(MatchKey& key, const DrawPart& part, const Tolerances& tolerances);

/// Whether parts of a type other than the row's are compared with it.
enum class LeftType { kSame, kAny };

/// How parts are compared with a right part of this type. A new type is a row here.
struct PartComparison {
  PartType type;
  LeftType leftType;
  EqualOperation equal;        // null: nothing equals it
  ClassifyOperation classify;  // null: nothing differs from it
  KeyOperation addToKey;       // adds what a part of the same type must share to match it
};

bool alwaysEqual(const DrawPart&, const DrawPart&) { return true; }

void addNothingToKey(MatchKey&, const DrawPart&, const Tolerances&) {}

// The rows of types without a comparison rule. Quirk that stays: such a part never equals another,
// yet shows no difference from any, so a search pairs it with the first free part. The mask of
// SIMPLERETURN exists because of these types.
constexpr PartComparison absorbing(PartType type) {
  return {type, LeftType::kAny, nullptr, nullptr, nullptr};
}

// clang-format off
constexpr std::array<PartComparison, kPartTypeCount> kComparisons = {{
    {PartType::kUnknown, LeftType::kAny, alwaysEqual, nullptr, nullptr},
    {PartType::kText, LeftType::kSame, equalTexts, classifyTexts, addTextToKey},
    {PartType::kLine, LeftType::kSame, equalLines, classifyLines, addLineToKey},
    {PartType::kRect, LeftType::kSame, equalRects, classifyRects, addRectToKey},
    {PartType::kPoly, LeftType::kSame, equalPolys, classifyPolys, addPolyToKey},
    {PartType::kImage, LeftType::kSame, equalImages, classifyImages, addImageToKey},
    absorbing(PartType::kStartEnd),
    {PartType::kTextProp, LeftType::kAny, equalTextProps, classifyTextProps, nullptr},
    {PartType::kClickArea, LeftType::kSame, alwaysEqual, classifyClickAreas, addNothingToKey},
    {PartType::kStaticRef, LeftType::kSame, equalStaticRefs, classifyStaticRefs, addStaticRefToKey},
    {PartType::kResource, LeftType::kAny, equalResources, nullptr, nullptr},
    absorbing(PartType::kTextBox),
    absorbing(PartType::kTable),
    absorbing(PartType::kTextWrap),
    {PartType::k1Line, LeftType::kAny, equal1Lines, nullptr, nullptr},
    absorbing(PartType::kLocSearchKey),
    absorbing(PartType::kFixedText),
    {PartType::kRecompose, LeftType::kAny, equalRecomposes, nullptr, nullptr},
    absorbing(PartType::kInputRadioButton),
    absorbing(PartType::kInputCheckBox),
    absorbing(PartType::kInputEditBox),
    absorbing(PartType::kInputList),
    absorbing(PartType::kInputFunctionButton),
    absorbing(PartType::kUdlIgnoreStartEnd),
    absorbing(PartType::kInputHyperlinkButton),
    absorbing(PartType::kInputCustomButton),
    absorbing(PartType::kInputOrderList),
    absorbing(PartType::kInputProcessList),
    absorbing(PartType::kInputMenuButton),
    absorbing(PartType::kInputProcessButton),
    {PartType::kJust1Line, LeftType::kSame, equalJust1Lines, classifyJust1Lines, addJust1LineToKey},
    {PartType::kLineSet, LeftType::kSame, equalLineSets, classifyLineSets, addLineSetToKey},
    absorbing(PartType::kBcocaBarcode),
    absorbing(PartType::kImportPage),
    {PartType::kLayerIgnoreStartEnd, LeftType::kAny, equalLayerIgnores, nullptr, nullptr},
    absorbing(PartType::kInputCustomControl),
    absorbing(PartType::kInserterBarcodeStartEnd),
    absorbing(PartType::kMaskedObjectStartEnd),
    absorbing(PartType::kInputFileUpload),
    absorbing(PartType::kWebPlaceholder),
    {PartType::kHyperlinkArea, LeftType::kSame, equalHyperlinkAreas, nullptr, nullptr},
    absorbing(PartType::kSubscribe),
    absorbing(PartType::kTaggedObjectStartEnd),
    absorbing(PartType::kBookmark),
    {PartType::kSignatureField, LeftType::kSame, equalSignatureFields, classifySignatureFields, addSignatureFieldToKey},
}};
// clang-format on

static_assert(rowsStandUnderTheirCodes(kComparisons));

constexpr PartComparison kUnknownCode = absorbing(PartType::kUnknown);

const PartComparison& comparisonWith(PartType type) {
  return isKnownPartType(type) ? kComparisons[partIndex(type)] : kUnknownCode;
}

}  // namespace

bool partsEqual(const DrawPart& left, const DrawPart& right, ChildListResults* childLists) {
  if (&left == &right) {
    return true;
  }
  const PartComparison& comparison = comparisonWith(right.type);
  if (comparison.equal == nullptr) {
    return false;
  }
  if (comparison.leftType == LeftType::kSame && left.type != right.type) {
    return false;
  }
  if (right.type == PartType::kStaticRef) {
    return equalStaticRefs(left, right) && equalChildren(left, right, childLists);
  }
  return comparison.equal(left, right);
}

bool equalsOwnFields(const DrawPart& part) {
  const EqualOperation equal = comparisonWith(part.type).equal;
  return equal != nullptr && equal(part, part);
}

DiffFlags classifyParts(const DrawPart& left, const DrawPart& right, const Tolerances& tolerances,
                        ChildListResults* childLists) {
  if (partsEqual(left, right, childLists)) {
    return 0;
  }
  const PartComparison& comparison = comparisonWith(right.type);
  if (comparison.classify == nullptr) {
    return 0;
  }
  if (comparison.leftType == LeftType::kSame && left.type != right.type) {
    return diff::kContent;
  }
  return comparison.classify(left, right, tolerances);
}

MatchRule matchRuleOf(PartType right) {
  const PartComparison& comparison = comparisonWith(right);
  if (comparison.classify == nullptr) {
    return MatchRule::kAnyPart;
  }
  return comparison.leftType == LeftType::kAny ? MatchRule::kByWords : MatchRule::kByKey;
}

i32 keyCount(PartType type, KeyUse use) {
  switch (type) {
    case PartType::kPoly:
      return use == KeyUse::kFiled ? 2 : 3;
    case PartType::kStaticRef:
      return 2;
    default:
      return 1;
  }
}

void makeMatchKey(MatchKey& key, const DrawPart& part, const Tolerances& tolerances, KeyUse use,
                  i32 number) {
  key.start(part.type, use, number);
  comparisonWith(part.type).addToKey(key, part, tolerances);
}

void makeWordsKey(MatchKey& key, const DrawPart& part) {
  key.start(PartType::kTextProp, KeyUse::kFiled, 0);
  addTextPropWordsToKey(key, part);
}

}  // namespace rvf
