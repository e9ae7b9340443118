#pragma once

#include "compare/ChildListResults.h"
#include "compare/DiffFlags.h"
#include "compare/PairingObserver.h"
#include "compare/Tolerances.h"
#include "pagemodel/DrawList.h"

namespace rvf {

/// Whether two lists hold equal parts in the same order, the children of groups included.
/// `childLists` may be null.
[[nodiscard]] bool listsEqual(const DrawList& a, const DrawList& b,
                              ChildListResults* childLists = nullptr);

/// Goes through two lists that are not equal in an order-tolerant way and returns how they differ:
/// items are paired by place where they are equal, else with the first free item anywhere that
/// classifies as the same; what is left over is accounted for. `observer` may be null.
///
/// It is a single forward pass with first-found pairing, not a minimal difference. The items of the
/// shorter list always stand on the left of a comparison, which is not symmetric, so exchanging the
/// lists can change the result. These asymmetries are what the results of all runs are made of.
[[nodiscard]] DiffFlags matchLists(const DrawList& a, const DrawList& b,
                                   const Tolerances& tolerances,
                                   PairingObserver* observer = nullptr);

/// The same for the many pages of two files, whose groups are compared once for all of them. The
/// tolerances are those of `childLists`.
[[nodiscard]] DiffFlags matchLists(const DrawList& a, const DrawList& b,
                                   ChildListResults& childLists,
                                   PairingObserver* observer = nullptr);

/// Whether the children of a group without a partner count up to this one and no further.
[[nodiscard]] bool endsLeftOverChildren(const DrawPart& child);
/// What the children of a group without a partner earn, one level deep. `list` may be null.
[[nodiscard]] DiffFlags leftOverChildBits(const DrawList* list);

}  // namespace rvf
