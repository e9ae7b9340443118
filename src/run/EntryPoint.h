#pragma once

#include <span>

#include "base/Integers.h"
#include "text/eString.h"

namespace rvf {

/// A complete run: options, comparison, report. `arguments` starts with the program's name. Returns
/// the exit status (ExitStatus.h). Only one run is possible per process: messages and their tally
/// are process-wide.
[[nodiscard]] i32 runCompare(std::span<const eString> arguments);

}  // namespace rvf
