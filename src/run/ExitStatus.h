#pragma once

#include "base/Integers.h"

namespace rvf {

namespace exit_status {
constexpr i32 kFailed = -1;    // a step failed, or a severe message was reported
constexpr i32 kIdentical = 0;  // with SIMPLERETURN, also if only the order differs
constexpr i32 kDifferent = 1;  // with SIMPLERETURN only; otherwise the run's DiffFlags
}  // namespace exit_status

/// The exit status of a run that ended with `status`, which is kFailed or the DiffFlags of the
/// files. With `simple`, one of the three values above instead of the bits.
[[nodiscard]] i32 formExitStatus(i32 status, bool simple);

/// The exit status folded into the 8 bits of a process status. 0 means identical and nothing else,
/// 255 means failed and nothing else:
///
/// - Three bits that do not fit (page count, customers and resolutions) move down by 17 places, to
/// the reserved bits 4, 8 and 16, which no run sets.
/// - Every other bit above 128 is accompanied by 128, so it can be dropped.
[[nodiscard]] int foldToProcessStatus(i32 exitStatus);

}  // namespace rvf
