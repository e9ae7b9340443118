#pragma once

#include <map>
#include <string>

#include "base/Integers.h"
#include "pagemodel/DrawList.h"

namespace rvf::inspect {

/// How the four bytes of a colour are interpreted. Only the engine knows what they mean.
enum class ColourReading { kRgb, kBgr, kCmyk };

/// What a font number stands for; a size of 0 is estimated from the page.
struct FontStyle {
  std::string family = "sans-serif";
  i64 size = 0;
};

struct DrawingStyle {
  ColourReading colours = ColourReading::kRgb;
  std::map<i32, FontStyle> fonts;
};

/// The fonts in a JSON file: {"3": {"family": "Serif", "size": 42}}, sizes in page units. Throws
/// Trouble if the file cannot be read as such.
[[nodiscard]] std::map<i32, FontStyle> readFonts(const std::string& path);

/// `#rrggbb`. A tint from 1 to 99 lightens the colour to that percentage.
[[nodiscard]] std::string svgColour(u32 packed, u8 tint, ColourReading reading);

/// The sizes of fonts by their numbers, as far as texts imply them: by the spacing of their lines
/// and of runs on one line.
class FontSizes {
 public:
  static constexpr i64 kUsualSize = 40;  // not quite 10 points at 300 dots per inch

  void learn(const DrawList& list);
  [[nodiscard]] i64 sizeOf(i32 fontId) const;

 private:
  std::map<i32, i64> sizes_;
};

}  // namespace rvf::inspect
