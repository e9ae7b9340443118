#pragma once

#include <filesystem>

#include "text/eString.h"

namespace rvf {

/// The path of the catalogue `name`. A bare name is looked for in the working directory, next to
/// the program file, in the share folder next to the program's folder, and in that of the
/// installation; the first readable file wins. If there is none, or if the name contains a folder,
/// the result is the name itself.
[[nodiscard]] eString findCatalogue(const eString& name);

/// The same for a program at `programFile`, which is empty if its location is unknown.
[[nodiscard]] eString findCatalogue(const eString& name, const std::filesystem::path& programFile);

}  // namespace rvf
