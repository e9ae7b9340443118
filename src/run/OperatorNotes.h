#pragma once

#include "run/RunOptions.h"

namespace rvf {

// What the operator is told on standard error beside the numbered messages. Nothing here fails: a
// standard error that cannot be written is ignored.

/// Why the options ended the run: the control file that could not be used, and how options are
/// written if one was not understood. Nothing when all were in order.
void tellFailedOptions(const RunOptions& options);

/// Why the message file could not be opened, or must not be.
void tellMessageFileProblem(const eString& path, const eString& reason);

/// A capture file of `length` bytes has offsets that its format cannot hold.
void tellTooLarge(const eString& path, i64 length);

/// A failure that no message stands for.
void reportFatalError(const char* reason);

}  // namespace rvf
