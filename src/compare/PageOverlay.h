#pragma once

#include "base/Integers.h"
#include "capture/CompareContext.h"
#include "compare/DiffFlags.h"

namespace rvf {

// The numbers and colours by which a display knows what it is given. Frozen.
namespace overlay_pen {
constexpr i32 kNeither = 666;                  // nothing is being collected
constexpr i32 kFirst = 667;                    // the view of the first file is being built
constexpr i32 kSecond = 668;                   // the view of the second file is being built
constexpr u32 kDefaultColour = 0xFF0000;       // the pair that a pen has when it is selected
constexpr u32 kDefaultOtherColour = 0x00FFFF;  // without colours, as it is here
}  // namespace overlay_pen

/// The pen of a display: how it marks the parts that are being collected. The parts themselves keep
/// their own colours.
class OverlayPen {
 public:
  virtual ~OverlayPen() = default;
  /// `number` is one of overlay_pen::*. The pen has its default colours afterwards.
  virtual void select(i32 number) = 0;
};

/// Collects what differs between two loaded pages, for display over them: into the overlayFirst of
/// the first context what only the first page has, into its overlaySecond what only the second one
/// has. A placed list that stands elsewhere is in both as a whole. Returns the difference bits.
///
/// The overlays hold copies, which outlive the pages, and blank slots for parts of the other view.
/// They are valid until the next call with that context. Parts of a type that is not copied are
/// blank too. A run does not call this, and its results do not depend on it.
DiffFlags buildPageOverlay(CompareContext& first, const CompareContext& second, OverlayPen& pen);

}  // namespace rvf
