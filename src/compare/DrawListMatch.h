#pragma once

#include "compare/DiffFlags.h"
#include "pagemodel/DrawList.h"

namespace rvf {

/// Whether two lists hold equal parts in the same order, the children of groups included.
[[nodiscard]] bool listsEqual(const DrawList& a, const DrawList& b);

/// Goes through two lists that are not equal in an order-tolerant way and returns how they differ:
/// items are paired by place where they are equal, else with the first free item anywhere that
/// classifies as the same; what is left over is accounted for.
///
/// It is a single forward pass with first-found pairing, not a minimal difference. The items of the
/// shorter list always stand on the left of a comparison, which is not symmetric, so exchanging the
/// lists can change the result. These asymmetries are what the results of all runs are made of.
///
/// `overlay` receives a blank slot for each item that is left over. With `buildOverlay` those from
/// `a` become copies, moved by the offsets, for display.
[[nodiscard]] DiffFlags matchDrawLists(DrawList& overlay, const DrawList& a, const DrawList& b,
                                       bool buildOverlay, i32 offsetX, i32 offsetY);

/// Accounts for the children of a group that has no partner, one level deep. `list` may be null.
[[nodiscard]] DiffFlags spillChildList(DrawList& overlay, const DrawList* list, i32 offsetX,
                                       i32 offsetY, bool buildOverlay);

}  // namespace rvf
