#pragma once

#include "base/Integers.h"
#include "capture/CompareContext.h"
#include "compare/ChildListResults.h"

namespace rvf {

/// The short cut of the walk: whether the page that `first` holds equals the page whose body stands
/// at `position` of the second file, told without decoding that one.
///
/// Equal bytes decode to equal parts where both files have the same form of text, so the second
/// page would be a copy of the first. That is not yet an equal page: some parts do not equal even a
/// copy of themselves, and references lead to the objects of their own file. False means unknown.
[[nodiscard]] bool equalByBytes(const CompareContext& first, CompareContext& second, i32 position,
                                ChildListResults& childLists);

}  // namespace rvf
