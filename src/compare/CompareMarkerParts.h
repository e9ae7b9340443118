#pragma once

#include "pagemodel/DrawPart.h"

namespace rvf {

// The comparison of LAYERIGNORESTARTEND; the other markers never equal anything. The rows in
// PartComparison.cpp say which types `left` may have.

[[nodiscard]] bool equalLayerIgnores(const DrawPart& left, const DrawPart& right);

}  // namespace rvf
