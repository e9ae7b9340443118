#pragma once

#include "compare/ChildListResults.h"
#include "compare/DiffFlags.h"
#include "compare/PairingObserver.h"
#include "compare/Tolerances.h"
#include "pagemodel/DrawList.h"

namespace rvf {

/// Whether two lists hold equal parts in the same order, including the children of groups.
/// `childLists` may be null.
[[nodiscard]] bool listsEqual(const DrawList& a, const DrawList& b,
                              ChildListResults* childLists = nullptr);

/// Compares two unequal lists regardless of order and returns how they differ: items are paired by
/// index if they are equal, otherwise with the first free item that classifies as the same;
/// finally, left-over items are accounted for. `observer` may be null.
///
/// This is a single forward pass with first-found pairing, not a minimal difference. The items of
/// the shorter list are always on the left of a comparison, which is not symmetric, so exchanging
/// the lists can change the result. The results of all runs depend on these asymmetries.
[[nodiscard]] DiffFlags matchLists(const DrawList& a, const DrawList& b,
                                   const Tolerances& tolerances,
                                   PairingObserver* observer = nullptr);

/// The same for many pages of two files, comparing each pair of child lists only once. The
/// tolerances are those of `childLists`.
[[nodiscard]] DiffFlags matchLists(const DrawList& a, const DrawList& b,
                                   ChildListResults& childLists,
                                   PairingObserver* observer = nullptr);

/// Whether `child` ends the accounting for the children of a group without a partner.
[[nodiscard]] bool endsLeftOverChildren(const DrawPart& child);
/// The bits for the children of a group without a partner, one level deep. `list` may be null.
[[nodiscard]] DiffFlags leftOverChildBits(const DrawList* list);

}  // namespace rvf
