#pragma once

#include <string_view>

#include "compare/ChildListResults.h"
#include "pagemodel/DrawPart.h"

namespace rvf::inspect {

/// The rule that makes the verdict ignore that two paired parts differ; empty if there is none.
/// `left` is the part from the shorter list, as the comparison is not symmetric.
[[nodiscard]] std::string_view ignoringRule(const DrawPart& left, const DrawPart& right,
                                            ChildListResults& childLists);

/// Whether the position tolerance applies to parts of a type, rather than a special rule.
[[nodiscard]] bool hasPositionTolerance(std::string_view typeName);

}  // namespace rvf::inspect
