#include "compare/PageOverlay.h"

#include <memory>

#include "base/Wrapping.h"
#include "compare/DrawListMatch.h"

namespace rvf {

namespace {

/// A static list with its place on a page.
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

// Quirk that stays: a place with a 0 in it never counts as another one.
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

/// One call of buildPageOverlay.
class PageOverlayBuilder {
 public:
  PageOverlayBuilder(CompareContext& first, const CompareContext& second, OverlayPen& pen)
      : first_(first), second_(second), pen_(pen) {}

  DiffFlags build() {
    emptyView(first_.overlayFirst);
    emptyView(first_.overlaySecond);
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
  // The second view takes no part in the result: the matcher is not symmetric, and the bits are
  // those of the first file against the second.
  void comparePageLists() {
    const DrawList& a = first_.pageList;
    const DrawList& b = second_.pageList;
    if (listsEqual(a, b)) {
      return;
    }
    pen_.select(overlay_pen::kFirst);
    bits_ |= matchDrawLists(first_.overlayFirst.list, a, b, true, 0, 0);
    pen_.select(overlay_pen::kSecond);
    static_cast<void>(matchDrawLists(first_.overlaySecond.list, b, a, true, 0, 0));
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
    bits_ |= addDifferences(first_.overlayFirst, a, b);
    pen_.select(overlay_pen::kSecond);
    static_cast<void>(addDifferences(first_.overlaySecond, b, a));
  }

  // The view has the place of the other file's list, so its parts are moved by the way from there.
  static DiffFlags addDifferences(PageOverlayLists& view, const PlacedList& own,
                                  const PlacedList& other) {
    DrawList& list = appendStatic(view, other);
    const i32 dx = wrappingDifference(own.x(), other.x());
    const i32 dy = wrappingDifference(own.y(), other.y());
    const DiffFlags bits = matchDrawLists(list, own.list, other.list, true, dx, dy);
    list.originX = other.list.originX;
    list.originY = other.list.originY;
    return bits;
  }

  void addWholeFirst(const PlacedList& place) {
    pen_.select(overlay_pen::kFirst);
    addWhole(first_.overlayFirst, place);
  }

  void addWholeSecond(const PlacedList& place) {
    pen_.select(overlay_pen::kSecond);
    addWhole(first_.overlaySecond, place);
  }

  // The copied parts have the origin in their positions, so the copied list has none.
  void addWhole(PageOverlayLists& view, const PlacedList& place) {
    bits_ |= diff::kContent;
    appendList(appendStatic(view, place), place.list, true);
  }

  CompareContext& first_;
  const CompareContext& second_;
  OverlayPen& pen_;
  DiffFlags bits_ = 0;
};

}  // namespace

DiffFlags buildPageOverlay(CompareContext& first, const CompareContext& second, OverlayPen& pen) {
  return PageOverlayBuilder(first, second, pen).build();
}

}  // namespace rvf
