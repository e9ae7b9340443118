#pragma once

namespace rvf {

/// What ends the process. It must not return: the default flushes the C library's streams and
/// leaves with exit value -1 and no clean-up; a test may throw instead.
using ProcessEndHandler = void (*)();

/// Sets the handler and returns the one before; null sets the default.
ProcessEndHandler setProcessEndHandler(ProcessEndHandler handler);

/// Ends the process at once with exit value -1, as every failure beyond repair does: nothing is
/// closed and no buffer is written out.
[[noreturn]] void endProcess();

}  // namespace rvf
