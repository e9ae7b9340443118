#pragma once

#include <vector>

#include "base/Integers.h"
#include "pagemodel/DrawList.h"

namespace rvf::inspect {

/// Of all fields of a part: parts with equal digests are the same.
[[nodiscard]] u64 digestOf(const DrawPart& part);
/// Of all parts of a list, in their order.
[[nodiscard]] std::vector<u64> digestsOf(const DrawList& list);

/// Of all fields but for the place: parts with equal digests differ in nothing else.
[[nodiscard]] u64 shapeDigestOf(const DrawPart& part);

/// Of a part's type, all of its positions, and its texts: parts with equal digests are at one place
/// and say the same.
[[nodiscard]] u64 placeDigestOf(const DrawPart& part);

}  // namespace rvf::inspect
