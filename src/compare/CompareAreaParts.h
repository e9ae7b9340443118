#pragma once

#include "compare/DiffFlags.h"
#include "compare/MatchKey.h"
#include "compare/Tolerances.h"
#include "pagemodel/DrawPart.h"

namespace rvf {

// The comparison of CLICKAREA, HYPERLINKAREA and SIGNATUREFIELD. The rows in PartComparison.cpp say
// which types `left` may have.

[[nodiscard]] bool equalHyperlinkAreas(const DrawPart& left, const DrawPart& right);
[[nodiscard]] bool equalSignatureFields(const DrawPart& left, const DrawPart& right);

/// Requires that the parts are not equal.
[[nodiscard]] DiffFlags classifyClickAreas(const DrawPart& left, const DrawPart& right,
                                           const Tolerances& tolerances);
[[nodiscard]] DiffFlags classifySignatureFields(const DrawPart& left, const DrawPart& right,
                                                const Tolerances& tolerances);

/// What a part must share with another of its type to be classified as the same.
void addSignatureFieldToKey(MatchKey& key, const DrawPart& part, const Tolerances& tolerances);

}  // namespace rvf
