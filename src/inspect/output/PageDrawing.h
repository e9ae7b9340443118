#pragma once

#include <string>

#include "capture/CompareContext.h"
#include "inspect/output/DrawingStyle.h"

namespace rvf::inspect {

/// A page as an SVG document: texts, lines, shapes and images as printed, and on a layer of its
/// own, in light outlines, markers and areas. x grows to the right and y downwards. The drawing has
/// the page's extents if everything fits into them, otherwise the space that its parts take. Each
/// element carries the index of its part (data-part), each group the name of its list (data-list).
/// A shared object is drawn once and used where it is referred to.
[[nodiscard]] std::string drawPage(const CompareContext& page, const DrawingStyle& style);

}  // namespace rvf::inspect
