#pragma once

#include "base/Integers.h"
#include "storage/Archive.h"

namespace rvf {

/// What `value` of a ColourValue holds.
namespace colour_kind {
constexpr i32 kRgb = 0;        // red in the low byte, green in the next, blue in the next
constexpr i32 kCmyk = 1;       // cyan in the high byte, magenta, yellow, black in the low byte
constexpr i32 kNamed = 2;      // high byte: colour list; low 24 bits: code of the entry
constexpr i32 kLegacy = -126;  // an RGB colour of images, written under an old number
}  // namespace colour_kind

/// The tagged colour of images. Colours are stored and compared by their bits, never converted.
struct ColourValue {
  i32 kind = colour_kind::kRgb;
  u32 value = 0;

  bool operator==(const ColourValue&) const = default;
};

/// Reads a colour record. Without a stored kind word (`hasKindWord` off) it is the value alone, an
/// RGB colour. A named colour is entered into the list of used colours.
[[nodiscard]] ColourValue readColourValue(eArchive& archive, bool hasKindWord);

/// The number of the colour list that a named colour belongs to; 0 for any other.
[[nodiscard]] u8 colourList(const ColourValue& colour);

}  // namespace rvf
