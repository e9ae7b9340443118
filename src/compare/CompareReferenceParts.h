#pragma once

#include "compare/ChildListResults.h"
#include "compare/DiffFlags.h"
#include "compare/MatchKey.h"
#include "compare/Tolerances.h"
#include "pagemodel/DrawPart.h"

namespace rvf {

// The comparison of STATICREF. The rows in PartComparison.cpp say which types `left` may have.

/// Compares only the records, not the child lists.
[[nodiscard]] bool equalStaticRefs(const DrawPart& left, const DrawPart& right);
/// For two references with child lists: whether the lists are equal. `childLists` may be null.
[[nodiscard]] bool equalChildren(const DrawPart& left, const DrawPart& right,
                                 ChildListResults* childLists);

/// Requires that the parts are not equal.
[[nodiscard]] DiffFlags classifyStaticRefs(const DrawPart& left, const DrawPart& right,
                                           const Tolerances& tolerances);

/// What a part must share with another of its type to be classified as the same.
void addStaticRefToKey(MatchKey& key, const DrawPart& part, const Tolerances& tolerances);

}  // namespace rvf
