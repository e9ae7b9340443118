#include "inspect/model/ChangeReasons.h"

#include <algorithm>

#include "compare/PartComparison.h"
#include "inspect/model/Change.h"

namespace rvf::inspect {

namespace {

constexpr Tolerances kStrict{0, 0};

// Why parts that compare as equal are not the same.
std::string_view ruleOfEqualParts(const DrawPart& right) {
  switch (right.type) {
    case PartType::kUnknown:
      return ignored_by::kType;
    case PartType::kResource:
      return ignored_by::kResourceBytes;
    default:
      return ignored_by::kField;
  }
}

}  // namespace

std::string_view ignoringRule(const DrawPart& left, const DrawPart& right,
                              ChildListResults& childLists) {
  if (partsEqual(left, right, &childLists)) {
    return ruleOfEqualParts(right);
  }
  if (matchRuleOf(right.type) == MatchRule::kAnyPart) {
    return ignored_by::kType;
  }
  if (classifyParts(left, right, childLists.tolerances(), &childLists) != 0) {
    return {};
  }
  const DiffFlags strict = classifyParts(left, right, kStrict, &childLists);
  if (strict == 0) {
    return right.type == PartType::kPoly ? ignored_by::kExtraPoint : ignored_by::kField;
  }
  if ((strict & diff::kPosition) == 0) {
    return ignored_by::kLineTolerance;
  }
  return right.type == PartType::kRect ? ignored_by::kRectangleStep
                                       : ignored_by::kPositionTolerance;
}

bool hasPositionTolerance(std::string_view typeName) {
  constexpr std::string_view kTypes[] = {"TEXT",      "LINE",      "RECT",   "POLY",
                                         "STATICREF", "JUST1LINE", "LINESET"};
  return std::ranges::count(kTypes, typeName) != 0;
}

}  // namespace rvf::inspect
