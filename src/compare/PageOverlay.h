#pragma once

#include <memory>
#include <vector>

#include "base/Integers.h"
#include "capture/CompareContext.h"
#include "compare/DiffFlags.h"
#include "compare/Tolerances.h"
#include "pagemodel/DrawList.h"

namespace rvf {

// The numbers and colours that displays rely on. Frozen.
namespace overlay_pen {
constexpr i32 kNeither = 666;                  // nothing is being collected
constexpr i32 kFirst = 667;                    // the view of the first file is being built
constexpr i32 kSecond = 668;                   // the view of the second file is being built
constexpr u32 kDefaultColour = 0xFF0000;       // the pen's colours after it is selected
constexpr u32 kDefaultOtherColour = 0x00FFFF;  // without colours, as here
}  // namespace overlay_pen

/// The pen of a display: how it marks the parts that are being collected. The parts keep their own
/// colours.
class OverlayPen {
 public:
  virtual ~OverlayPen() = default;
  /// `number` is one of overlay_pen::*. Afterwards, the pen has its default colours.
  virtual void select(i32 number) = 0;
};

/// The differences of a page as one file's display shows them: a list for the page, and one for
/// each static list that differs, with its placement.
struct PageOverlayLists {
  DrawList list;
  std::vector<std::unique_ptr<DrawList>> statics;
  std::vector<i32> placementX;
  std::vector<i32> placementY;

  [[nodiscard]] i32 staticCount() const { return static_cast<i32>(statics.size()); }
};

/// The overlay of a pair of pages: full copies of the parts that differ, and blank slots for parts
/// of the other view and for parts of a type that is not copied.
///
/// It is valid until buildPageOverlay is called for it again. The copies own their data and outlive
/// the pages, with one exception: a group refers to its child list in the static tables of the file
/// that it was copied from. For `first`, this can also be the second file, since the children of a
/// group without a partner are spilled into it, and vice versa. So an overlay with groups may only
/// be used while both contexts exist and keep their tables.
struct PageOverlay {
  PageOverlayLists first;   // what only the first page has
  PageOverlayLists second;  // what only the second page has
};

/// Collects what differs between two loaded pages, for display over them. A placed list that has
/// moved is shown whole in both views. Returns the difference bits, which are those of the walk
/// except that left-over images of the first page do not give Images here.
///
/// A run does not call this, and its results do not depend on it; it is the interface of a display.
DiffFlags buildPageOverlay(PageOverlay& overlay, const CompareContext& first,
                           const CompareContext& second, const Tolerances& tolerances,
                           OverlayPen& pen);

/// matchLists for an overlay of `a`, which receives a slot for each left-over item. With
/// `buildOverlay`, it also receives one for each item that differs from the one at the same index,
/// and the slots of items of `a` become copies, moved by the offsets; the others stay blank. A
/// left-over image of `a` does not give Images if it is copied.
[[nodiscard]] DiffFlags matchDrawLists(DrawList& overlay, const DrawList& a, const DrawList& b,
                                       bool buildOverlay, i32 offsetX, i32 offsetY,
                                       const Tolerances& tolerances);

/// Appends a slot for each child of a group without a partner, one level deep, and returns their
/// bits. With `buildOverlay`, the slots become copies. `list` may be null.
[[nodiscard]] DiffFlags spillChildList(DrawList& overlay, const DrawList* list, i32 offsetX,
                                       i32 offsetY, bool buildOverlay);

}  // namespace rvf
