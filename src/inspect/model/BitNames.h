#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "compare/DiffFlags.h"

namespace rvf::inspect {

/// The names of the bits that are set, from the coarsest to the finest; a bit without a name
/// appears as "bit N".
[[nodiscard]] std::vector<std::string> bitNames(DiffFlags bits);

/// "Text, Content (2176)", or "identical".
[[nodiscard]] std::string bitsInWords(DiffFlags bits);

/// The bit with a name, in any case; 0 for an unknown name.
[[nodiscard]] DiffFlags bitOfName(std::string_view name);
/// All names, separated by commas.
[[nodiscard]] std::string allBitNames();

}  // namespace rvf::inspect
