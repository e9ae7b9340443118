#pragma once

#include "base/Wrapping.h"

namespace rvf {

/// Moves anything that has a position.
template <class Place>
void shiftPlace(Place& place, i32 dx, i32 dy) {
  place.x = wrappingSum(place.x, dx);
  place.y = wrappingSum(place.y, dy);
}

/// Moves anything that has four edges.
template <class Box>
void shiftBox(Box& box, i32 dx, i32 dy) {
  box.left = wrappingSum(box.left, dx);
  box.top = wrappingSum(box.top, dy);
  box.right = wrappingSum(box.right, dx);
  box.bottom = wrappingSum(box.bottom, dy);
}

}  // namespace rvf
