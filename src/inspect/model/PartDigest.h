#pragma once

#include <span>
#include <vector>

#include "base/Integers.h"
#include "pagemodel/DrawList.h"

namespace rvf::inspect {

/// The digest of all fields of a part: parts with equal digests are the same.
[[nodiscard]] u64 digestOf(const DrawPart& part);
/// The digests of all parts of a list, in order.
[[nodiscard]] std::vector<u64> digestsOf(const DrawList& list);
/// The same, in half the time where the list is like another one whose digests are known.
[[nodiscard]] std::vector<u64> digestsOf(const DrawList& list, const DrawList& similar,
                                         std::span<const u64> digestsOfSimilar);

/// The digest of all fields except the position: parts with equal digests differ in nothing else.
[[nodiscard]] u64 shapeDigestOf(const DrawPart& part);

/// The digest of a part's type, all of its positions, and its texts: parts with equal digests are
/// at the same place and have the same text.
[[nodiscard]] u64 placeDigestOf(const DrawPart& part);

}  // namespace rvf::inspect
