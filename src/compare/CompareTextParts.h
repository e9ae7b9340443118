#pragma once

#include "compare/DiffFlags.h"
#include "compare/MatchKey.h"
#include "compare/Tolerances.h"
#include "pagemodel/DrawPart.h"

namespace rvf {

// The comparison of TEXT and TEXTPROP. The rows in PartComparison.cpp say which types `left` may
// have.

[[nodiscard]] bool equalTexts(const DrawPart& left, const DrawPart& right);
[[nodiscard]] bool equalTextProps(const DrawPart& left, const DrawPart& right);

/// Requires that the parts are not equal.
[[nodiscard]] DiffFlags classifyTexts(const DrawPart& left, const DrawPart& right,
                                      const Tolerances& tolerances);
[[nodiscard]] DiffFlags classifyTextProps(const DrawPart& left, const DrawPart& right,
                                          const Tolerances& tolerances);

/// What a part must share with another of its type to be classified as the same.
void addTextToKey(MatchKey& key, const DrawPart& part, const Tolerances& tolerances);
/// Adds the words that are compared for a TEXTPROP, from a part of any type.
void addTextPropWordsToKey(MatchKey& key, const DrawPart& part);

}  // namespace rvf
