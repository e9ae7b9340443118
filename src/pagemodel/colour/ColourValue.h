#pragma once

#include "base/Integers.h"
#include "storage/Archive.h"

namespace rvf {

/// What `value` of a ColourValue holds.
namespace colour_kind {
/// Red in the low byte, green in the next, blue in the next.
constexpr i32 kRgb = 0;
/// Cyan in the high byte, then magenta, yellow and black, each in percent.
constexpr i32 kCmyk = 1;
/// The number of the colour list in the high byte, the code of the entry in the low 24 bits.
constexpr i32 kNamed = 2;
/// An RGB colour of images, written under an old number.
constexpr i32 kLegacy = -126;
}  // namespace colour_kind

/// The tagged colour of images. Colours are stored and compared by their bits, never converted.
struct ColourValue {
  i32 kind = colour_kind::kRgb;
  u32 value = 0;

  bool operator==(const ColourValue&) const = default;
};

/// Whether a colour record holds the kind before the value. Without it, the colour is RGB.
enum class KindWord : i32 { kAbsent, kStored };

/// Reads a colour record. A named colour is added to the list of used colours.
[[nodiscard]] ColourValue readColourValue(eArchive& archive, KindWord kindWord);

/// The number of the colour list that a named colour belongs to; 0 for any other.
[[nodiscard]] u8 colourList(const ColourValue& colour);

}  // namespace rvf
