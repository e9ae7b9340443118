#pragma once

#include <string>

#include "capture/CompareContext.h"
#include "inspect/output/DrawingStyle.h"

namespace rvf::inspect {

/// A page as an SVG document: texts, lines, shapes and images as printed, and markers and areas as
/// light outlines on a separate layer. x grows to the right and y downwards. The drawing has the
/// page's extents if everything fits into them, otherwise the space that its parts take. Each
/// element has the index of its part (data-part), each group the name of its list (data-list). A
/// shared object is drawn once and reused wherever it is referred to.
[[nodiscard]] std::string drawPage(const CompareContext& page, const DrawingStyle& style);

}  // namespace rvf::inspect
