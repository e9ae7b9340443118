#pragma once

#include <span>

#include "base/Integers.h"
#include "text/eString.h"

namespace rvf {

/// One whole run: options, comparison, report. `arguments` starts with the program's name. Returns
/// the exit status (ExitStatus.h). There is one run in a process: options, messages and tally are
/// process-wide.
[[nodiscard]] i32 runCompare(std::span<const eString> arguments);

}  // namespace rvf
