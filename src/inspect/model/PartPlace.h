#pragma once

#include <optional>
#include <string_view>

#include "base/Integers.h"
#include "pagemodel/DrawPart.h"

namespace rvf::inspect {

/// A point in page units. Differences of two are 64 bits wide, so that none overflows.
struct Place {
  i64 x = 0;
  i64 y = 0;
  bool operator==(const Place&) const = default;
};

struct Box {
  i64 left = 0, top = 0, right = 0, bottom = 0;
};

/// Along which axis a field places its part.
enum class Axis { kNone, kX, kY };

/// The axis of a field by its name: that of its member or array, and its own. `part` tells which
/// way a LINESET runs.
[[nodiscard]] Axis axisOf(const DrawPart& part, std::string_view member, std::string_view field);

/// The first x and the first y of a part; nothing for one without a place.
[[nodiscard]] std::optional<Place> placeOf(const DrawPart& part);

/// The space that a part takes. That of a text is estimated: one line high, from the first run to
/// where the last one ends at half a line's height a character.
[[nodiscard]] std::optional<Box> boxOf(const DrawPart& part);

/// The height of a line of a text: the spacing of its runs, or a usual one where there is only one
/// line.
[[nodiscard]] i64 lineHeightOf(const DrawPart& text);

}  // namespace rvf::inspect
