#pragma once

#include <span>
#include <string>
#include <vector>

#include "base/Integers.h"
#include "pagemodel/colour/ColourValue.h"

namespace rvf {

/// One row of a colour list: a spot colour with its code and its substitutes in the layouts of
/// colour_kind::kRgb and colour_kind::kCmyk.
struct NamedColour {
  u32 code = 0;
  const char16_t* name = nullptr;
  u32 rgb = 0;
  u32 cmyk = 0;
};

constexpr int kColourListCount = 4;

/// The colour tables of a build, with rows in ascending order of code. None are shipped; a build
/// that has tables supplies spans that outlive every use.
struct NamedColourTables {
  std::span<const NamedColour> lists[kColourListCount];
};

/// The title of a family of colours, and how it writes the name of a row (one "%s").
struct ColourFamily {
  const char* title;
  const char* nameFormat;
};

/// One named colour found while reading. Entries are unique by row; encodedName is plainName with
/// every blank written as "#20".
struct UsedColour {
  const NamedColour* row = nullptr;
  std::string encodedName;
  std::string plainName;
  u32 colourValue = 0;
};

/// Supplies the tables and clears the list of used colours; null means no tables.
void setNamedColourTables(const NamedColourTables* tables);

/// The row of a code. A code that is not in the list gives the first row. Null if the list does not
/// exist or has no rows.
[[nodiscard]] const NamedColour* findNamedColour(i32 list, u32 code);

/// The family of a colour list; null for list 1, which has no title of its own, and for a list that
/// does not exist. Part of the interface; a run does not call it.
[[nodiscard]] const ColourFamily* colourFamily(i32 list);

/// Adds a named colour to the list of used colours unless it is there already. Without tables it
/// has no name, and nothing happens.
void registerUsedColour(const ColourValue& colour);

[[nodiscard]] const std::vector<UsedColour>& usedColours();

/// Gives list 0 the first table. Otherwise lists 0 and 1 share the second.
inline bool firstTableForList0 = false;
/// Writes "HEXACHROME" in the names of used colours as "Hexachrome".
inline bool hexachromeCase = false;
/// Set whenever a used colour is registered, even if it was already known.
inline bool usedColoursChanged = false;

}  // namespace rvf
