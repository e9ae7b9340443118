#pragma once

#include <optional>
#include <string_view>

#include "base/Integers.h"
#include "pagemodel/DrawPart.h"

namespace rvf::inspect {

/// A point in page units, with 64 bits so that differences do not overflow.
struct Place {
  i64 x = 0;
  i64 y = 0;
  bool operator==(const Place&) const = default;
};

struct Box {
  i64 left = 0, top = 0, right = 0, bottom = 0;
};

/// The axis along which a field positions its part.
enum class Axis { kNone, kX, kY };

/// The axis of a field by the name of its member or array and its own name. `part` determines the
/// direction of a LINESET.
[[nodiscard]] Axis axisOf(const DrawPart& part, std::string_view member, std::string_view field);

/// The first x and the first y of a part; empty for one without a position.
[[nodiscard]] std::optional<Place> placeOf(const DrawPart& part);

/// The space that a part takes. That of a text is estimated: one line high, from the first run to
/// the end of the last one, with characters half as wide as a line is high.
[[nodiscard]] std::optional<Box> boxOf(const DrawPart& part);

/// The line height of a text: the spacing of its runs, or a typical height if there is only one
/// line.
[[nodiscard]] i64 lineHeightOf(const DrawPart& text);

}  // namespace rvf::inspect
