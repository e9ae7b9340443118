#include "compare/PageOverlay.h"

#include <memory>
#include <vector>

#include "base/Wrapping.h"
#include "compare/DrawListMatch.h"
#include "compare/PairingObserver.h"
#include "pagemodel/PartOperations.h"
#include "pagemodel/ReferenceParts.h"

namespace rvf {

namespace {

/// A static list with its position on a page.
struct PlacedList {
  PlacedList(const CompareContext& page, i32 index)
      : list(page.staticList(index)),
        placementX(page.staticPlacementX[static_cast<std::size_t>(index)]),
        placementY(page.staticPlacementY[static_cast<std::size_t>(index)]) {}

  [[nodiscard]] i32 x() const { return wrappingSum(list.originX, placementX); }
  [[nodiscard]] i32 y() const { return wrappingSum(list.originY, placementY); }

  const DrawList& list;
  const i32 placementX;
  const i32 placementY;
};

i32 wrappingDifference(i32 a, i32 b) { return wrappingSum(a, wrappingProduct(b, -1)); }

// Quirk that stays: a position with a 0 in it never counts as moved. Displays depend on this.
bool hasMoved(const PlacedList& a, const PlacedList& b) {
  const bool anyIsZero = a.x() == 0 || a.y() == 0 || b.x() == 0 || b.y() == 0;
  return !anyIsZero && (a.x() != b.x() || a.y() != b.y());
}

void emptyView(PageOverlayLists& view) {
  resetList(view.list);
  view.statics.clear();
  view.placementX.clear();
  view.placementY.clear();
}

DrawList& appendStatic(PageOverlayLists& view, const PlacedList& place) {
  view.placementX.push_back(place.placementX);
  view.placementY.push_back(place.placementY);
  return *view.statics.emplace_back(std::make_unique<DrawList>());
}

/// Collects the parts of one call of matchDrawLists.
class OverlayCollector final : public PairingObserver {
 public:
  OverlayCollector(DrawList& overlay, const DrawList& a, const DrawList& b, bool buildOverlay,
                   i32 offsetX, i32 offsetY)
      : overlay_(overlay),
        buildOverlay_(buildOverlay),
        offsetX_(offsetX),
        offsetY_(offsetY),
        levels_{{&a, &b}} {}

  void paired(const Pairing& pairing) override {
    DiffFlags reasons = pairing.reasons;
    if (pairing.by == PairedBy::kLeftOver) {
      addLeftOver(pairing, reasons);
    } else if (pairing.by == PairedBy::kSamePlace && reasons != 0) {
      addDiffering(pairing.first);
    }
    bits_ |= reasons;
  }

  bool enterGroup(i32 first, i32 second) override {
    const Level& level = levels_.back();
    levels_.push_back({childList((*level.a)[first]), childList((*level.b)[second])});
    return true;
  }
  void leaveGroup() override { levels_.pop_back(); }

  [[nodiscard]] DiffFlags bits() const { return bits_; }

 private:
  struct Level {
    const DrawList* a;
    const DrawList* b;
  };

  // The slot is that of the shorter list's item, which is `a`'s if the two are equally long.
  // Quirk that stays: without copies there is no slot here, although a left-over item gets one.
  // Displays depend on this.
  void addDiffering(i32 first) {
    if (!buildOverlay_) {
      return;
    }
    const Level& level = levels_.back();
    DrawPart& slot = appendSlot(overlay_);
    if (level.a->count <= level.b->count) {
      copyPart(slot, (*level.a)[first]);
      shiftPart(slot, offsetX_, offsetY_);
    }
  }

  void addLeftOver(const Pairing& pairing, DiffFlags& reasons) {
    const Level& level = levels_.back();
    const bool isOwn = pairing.first != Pairing::kNone;
    const DrawPart& part = isOwn ? (*level.a)[pairing.first] : (*level.b)[pairing.second];
    DrawPart& slot = appendSlot(overlay_);
    const bool isCopied = buildOverlay_ && isOwn;
    if (isCopied) {
      copyPart(slot, part);
    }
    if (part.type == PartType::kStaticRef) {
      // Quirk that stays: the children of the other side's groups are copied too, without an
      // offset. Displays depend on this.
      const i32 dx = isCopied ? offsetX_ : 0;
      const i32 dy = isCopied ? offsetY_ : 0;
      static_cast<void>(spillChildList(overlay_, childList(part), dx, dy, buildOverlay_));
    } else if (isCopied) {
      shiftPart(slot, offsetX_, offsetY_);
      // Quirk that stays: a left-over image that is copied loses its Images bit. Displays depend on
      // this.
      reasons = diff::kContent;
    }
  }

  DrawList& overlay_;
  const bool buildOverlay_;
  const i32 offsetX_;
  const i32 offsetY_;
  std::vector<Level> levels_;  // the lists that are being matched, the innermost last
  DiffFlags bits_ = 0;
};

/// One call of buildPageOverlay.
class PageOverlayBuilder {
 public:
  PageOverlayBuilder(PageOverlay& overlay, const CompareContext& first,
                     const CompareContext& second, const Tolerances& tolerances, OverlayPen& pen)
      : overlay_(overlay), first_(first), second_(second), tolerances_(tolerances), pen_(pen) {}

  DiffFlags build() {
    emptyView(overlay_.first);
    emptyView(overlay_.second);
    comparePageLists();
    for (i32 i = 0; i < first_.staticCount; ++i) {
      if (i < second_.staticCount) {
        comparePlacedLists({first_, i}, {second_, i});
      } else {
        addWholeFirst({first_, i});
      }
    }
    for (i32 i = first_.staticCount; i < second_.staticCount; ++i) {
      addWholeSecond({second_, i});
    }
    pen_.select(overlay_pen::kNeither);
    return bits_;
  }

 private:
  // The second view does not contribute to the result: the matcher is not symmetric, and the result
  // is that of the first file against the second.
  void comparePageLists() {
    const DrawList& a = first_.pageList;
    const DrawList& b = second_.pageList;
    if (listsEqual(a, b)) {
      return;
    }
    pen_.select(overlay_pen::kFirst);
    bits_ |= matchDrawLists(overlay_.first.list, a, b, kBuild, 0, 0, tolerances_);
    pen_.select(overlay_pen::kSecond);
    static_cast<void>(matchDrawLists(overlay_.second.list, b, a, kBuild, 0, 0, tolerances_));
  }

  void comparePlacedLists(const PlacedList& a, const PlacedList& b) {
    if (hasMoved(a, b)) {
      addWholeSecond(b);
      addWholeFirst(a);
      return;
    }
    if (listsEqual(a.list, b.list)) {
      return;
    }
    pen_.select(overlay_pen::kFirst);
    bits_ |= addDifferences(overlay_.first, a, b);
    pen_.select(overlay_pen::kSecond);
    static_cast<void>(addDifferences(overlay_.second, b, a));
  }

  // The view is placed at the other file's list, so its parts are moved by the difference.
  DiffFlags addDifferences(PageOverlayLists& view, const PlacedList& own,
                           const PlacedList& other) const {
    DrawList& list = appendStatic(view, other);
    const i32 dx = wrappingDifference(own.x(), other.x());
    const i32 dy = wrappingDifference(own.y(), other.y());
    const DiffFlags bits = matchDrawLists(list, own.list, other.list, kBuild, dx, dy, tolerances_);
    list.originX = other.list.originX;
    list.originY = other.list.originY;
    return bits;
  }

  void addWholeFirst(const PlacedList& place) {
    pen_.select(overlay_pen::kFirst);
    addWhole(overlay_.first, place);
  }

  void addWholeSecond(const PlacedList& place) {
    pen_.select(overlay_pen::kSecond);
    addWhole(overlay_.second, place);
  }

  // The positions of the copied parts include the origin, so the copied list has none.
  void addWhole(PageOverlayLists& view, const PlacedList& place) {
    bits_ |= diff::kContent;
    constexpr bool kShift = true;
    appendList(appendStatic(view, place), place.list, kShift);
  }

  static constexpr bool kBuild = true;

  PageOverlay& overlay_;
  const CompareContext& first_;
  const CompareContext& second_;
  const Tolerances& tolerances_;
  OverlayPen& pen_;
  DiffFlags bits_ = 0;
};

}  // namespace

DiffFlags buildPageOverlay(PageOverlay& overlay, const CompareContext& first,
                           const CompareContext& second, const Tolerances& tolerances,
                           OverlayPen& pen) {
  return PageOverlayBuilder(overlay, first, second, tolerances, pen).build();
}

DiffFlags matchDrawLists(DrawList& overlay, const DrawList& a, const DrawList& b, bool buildOverlay,
                         i32 offsetX, i32 offsetY, const Tolerances& tolerances) {
  OverlayCollector collector(overlay, a, b, buildOverlay, offsetX, offsetY);
  static_cast<void>(matchLists(a, b, tolerances, &collector));
  return collector.bits();
}

DiffFlags spillChildList(DrawList& overlay, const DrawList* list, i32 offsetX, i32 offsetY,
                         bool buildOverlay) {
  if (list == nullptr) {
    return 0;
  }
  if (buildOverlay) {
    overlay.contentTally = wrappingSum(overlay.contentTally, list->contentTally);
  }
  for (const DrawPart& part : list->parts()) {
    DrawPart& slot = appendSlot(overlay);
    if (buildOverlay) {
      copyPart(slot, part);
    }
    if (endsLeftOverChildren(part)) {
      break;
    }
    if (buildOverlay) {
      shiftPart(slot, offsetX, offsetY);
    }
  }
  return leftOverChildBits(list);
}

}  // namespace rvf
