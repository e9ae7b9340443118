#pragma once

namespace rvf::inspect {

/// The whole program: parses the command line, runs the command and returns the exit status.
/// Trouble is reported in one line on standard error.
[[nodiscard]] int runInspect(int argc, char** argv);

}  // namespace rvf::inspect
