#pragma once

#include <string_view>

#include "compare/ChildListResults.h"
#include "pagemodel/DrawPart.h"

namespace rvf::inspect {

/// Which rule keeps the verdict from seeing that two parts of a pair differ; empty if none does.
/// `left` is the part from the shorter list, as the comparison is not symmetric.
[[nodiscard]] std::string_view ignoringRule(const DrawPart& left, const DrawPart& right,
                                            ChildListResults& childLists);

/// Whether the position tolerance applies to parts of a type, and not some rule of its own.
[[nodiscard]] bool hasPositionTolerance(std::string_view typeName);

}  // namespace rvf::inspect
