#pragma once

#include "compare/DiffFlags.h"
#include "compare/MatchKey.h"
#include "compare/Tolerances.h"
#include "pagemodel/DrawPart.h"

namespace rvf {

// The comparison of LINE, RECT, POLY, JUST1LINE and LINESET, and the empty 1LINE and RECOMPOSE. The
// rows in PartComparison.cpp say which types `left` may have.

[[nodiscard]] bool equalLines(const DrawPart& left, const DrawPart& right);
[[nodiscard]] bool equalRects(const DrawPart& left, const DrawPart& right);
[[nodiscard]] bool equalPolys(const DrawPart& left, const DrawPart& right);
[[nodiscard]] bool equalJust1Lines(const DrawPart& left, const DrawPart& right);
[[nodiscard]] bool equalLineSets(const DrawPart& left, const DrawPart& right);
[[nodiscard]] bool equal1Lines(const DrawPart& left, const DrawPart& right);
[[nodiscard]] bool equalRecomposes(const DrawPart& left, const DrawPart& right);

/// Requires that the parts are not equal.
[[nodiscard]] DiffFlags classifyLines(const DrawPart& left, const DrawPart& right,
                                      const Tolerances& tolerances);
[[nodiscard]] DiffFlags classifyRects(const DrawPart& left, const DrawPart& right,
                                      const Tolerances& tolerances);
[[nodiscard]] DiffFlags classifyPolys(const DrawPart& left, const DrawPart& right,
                                      const Tolerances& tolerances);
[[nodiscard]] DiffFlags classifyJust1Lines(const DrawPart& left, const DrawPart& right,
                                           const Tolerances& tolerances);
[[nodiscard]] DiffFlags classifyLineSets(const DrawPart& left, const DrawPart& right,
                                         const Tolerances& tolerances);

/// What a part must share with another of its type to be classified as the same.
void addLineToKey(MatchKey& key, const DrawPart& part, const Tolerances& tolerances);
void addRectToKey(MatchKey& key, const DrawPart& part, const Tolerances& tolerances);
void addPolyToKey(MatchKey& key, const DrawPart& part, const Tolerances& tolerances);
void addJust1LineToKey(MatchKey& key, const DrawPart& part, const Tolerances& tolerances);
void addLineSetToKey(MatchKey& key, const DrawPart& part, const Tolerances& tolerances);

}  // namespace rvf
