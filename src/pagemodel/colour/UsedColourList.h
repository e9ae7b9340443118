#pragma once

#include <span>
#include <string>
#include <vector>

#include "base/Integers.h"
#include "pagemodel/colour/ColourValue.h"

namespace rvf {

/// One row of a colour list: a spot colour under its code, with its stand-ins.
struct NamedColour {
  u32 code = 0;
  const char16_t* name = nullptr;
  u32 rgb = 0;   // layout of colour_kind::kRgb
  u32 cmyk = 0;  // layout of colour_kind::kCmyk
};

constexpr int kColourListCount = 4;

/// The colour lists of this build, rows in ascending code order. None are shipped; a build that has
/// them sets the spans, which must outlive every use.
struct NamedColourTables {
  std::span<const NamedColour> lists[kColourListCount];
};

/// One named colour met while reading.
struct UsedColour {
  const NamedColour* row = nullptr;  // entries are unique by row
  std::string encodedName;           // plainName with every blank written as "#20"
  std::string plainName;
  u32 colourValue = 0;
};

/// Supplies the tables; null goes back to none.
void setNamedColourTables(const NamedColourTables* tables);

/// The row of a code. A code that the list lacks gives its first row, a list that is not there
/// null.
[[nodiscard]] const NamedColour* findNamedColour(i32 list, u32 code);

/// Enters a named colour into the list of used colours, once. Without tables there is nothing to
/// name and nothing happens.
void registerUsedColour(const ColourValue& colour);

[[nodiscard]] const std::vector<UsedColour>& usedColours();

/// Writes "HEXACHROME" in the names of used colours as "Hexachrome".
inline bool hexachromeCase = false;
/// Set whenever a used colour was registered.
inline bool usedColoursChanged = false;

}  // namespace rvf
