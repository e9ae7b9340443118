#pragma once

#include <pugixml.hpp>

#include "inspect/output/DrawingStyle.h"
#include "pagemodel/DrawPart.h"

namespace rvf::inspect {

/// Where a part is drawn: what is printed, and on a layer of its own what only marks a place.
struct DrawingTarget {
  pugi::xml_node ink;
  pugi::xml_node marks;
  pugi::xml_node definitions;
  const DrawingStyle& style;
  const FontSizes& sizes;
  int& gradients;  // how many are defined
};

/// Appends a part as one element that carries its index. Parts that neither print nor have a place
/// add nothing; a reference is drawn by whoever knows the objects.
void drawPart(const DrawPart& part, i32 index, const DrawingTarget& target);

}  // namespace rvf::inspect
