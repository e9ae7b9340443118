#pragma once

#include "compare/DiffFlags.h"
#include "compare/MatchKey.h"
#include "compare/Tolerances.h"
#include "pagemodel/DrawPart.h"
#include "pagemodel/ImageParts.h"

namespace rvf {

// The comparison of IMAGE and RESOURCE. The rows in PartComparison.cpp say which types `left` may
// have.

/// Whether an image can equal another one: what it owns is compared by identity.
[[nodiscard]] bool ownsNothing(const ImageInfo& info);
[[nodiscard]] bool equalImages(const DrawPart& left, const DrawPart& right);
[[nodiscard]] bool equalResources(const DrawPart& left, const DrawPart& right);

/// Requires that the parts are not equal.
[[nodiscard]] DiffFlags classifyImages(const DrawPart& left, const DrawPart& right,
                                       const Tolerances& tolerances);

/// What a part must share with another of its type to be classified as the same.
void addImageToKey(MatchKey& key, const DrawPart& part, const Tolerances& tolerances);

}  // namespace rvf
