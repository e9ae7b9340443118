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

/// The bit of a name, in any case; 0 for a name that there is not.
[[nodiscard]] DiffFlags bitOfName(std::string_view name);
/// All names, with a comma between them.
[[nodiscard]] std::string allBitNames();

}  // namespace rvf::inspect
