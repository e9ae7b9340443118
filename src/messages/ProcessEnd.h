#pragma once

namespace rvf {

/// Ends the process and must not return. The default flushes the C library's streams and exits with
/// value -1 and without any clean-up; a test may throw instead.
using ProcessEndHandler = void (*)();

/// Sets the handler and returns the previous one; null restores the default.
ProcessEndHandler setProcessEndHandler(ProcessEndHandler handler);

/// Ends the process at once with exit value -1 after a fatal failure: nothing is closed and no
/// buffer is written.
[[noreturn]] void endProcess();

}  // namespace rvf
