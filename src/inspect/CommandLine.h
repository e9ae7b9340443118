#pragma once

namespace rvf::inspect {

/// The whole program: understands the command line, runs the command and returns the exit status.
/// Trouble is one line on standard error.
[[nodiscard]] int runInspect(int argc, char** argv);

}  // namespace rvf::inspect
