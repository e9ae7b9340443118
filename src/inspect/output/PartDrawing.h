#pragma once

#include <pugixml.hpp>

#include "inspect/output/DrawingStyle.h"
#include "pagemodel/DrawPart.h"

namespace rvf::inspect {

/// The degrees by which a step of a text's rotation turns it in a drawing, where y grows downwards.
constexpr int kTextRotationStep = -5;

/// Where parts are drawn: those that are printed, and on a separate layer those that only mark a
/// place.
struct DrawingTarget {
  pugi::xml_node ink;
  pugi::xml_node marks;
  pugi::xml_node definitions;
  const DrawingStyle& style;
  const FontSizes& sizes;
  int& gradients;  // number defined so far
};

/// Appends a part as one element with its index. Parts that neither print nor have a position add
/// nothing; references are drawn by the caller, which has the objects.
void drawPart(const DrawPart& part, i32 index, const DrawingTarget& target);

}  // namespace rvf::inspect
