#pragma once

#include "base/Integers.h"
#include "capture/CompareContext.h"
#include "compare/ChildListResults.h"

namespace rvf {

/// The walk's short cut: whether the page in `first` equals the page whose body is at `position` of
/// the second file, without decoding the latter.
///
/// If both files store text in the same form, equal bytes decode to equal parts, so the second page
/// would be a copy of the first. That does not make the pages equal: some parts do not even equal
/// their own copy, and references refer to objects of their own file. False means unknown.
[[nodiscard]] bool equalByBytes(const CompareContext& first, CompareContext& second, i32 position,
                                ChildListResults& childLists);

}  // namespace rvf
