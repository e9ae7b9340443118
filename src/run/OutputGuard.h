#pragma once

#include "text/eString.h"

namespace rvf {

struct RunOptions;

/// Why the two outputs of a run must not be opened, for people. Empty where there is no
/// objection.
struct OutputObjections {
  eString messageFile;
  eString differenceFile;
};

/// Opening an output empties it, and no run may destroy what it reads: an input, a control file or
/// the message catalogue. So all files are looked at here, before the first of them is opened for
/// writing. Nor may the outputs be one file; then the message file gets the objection.
///
/// What counts is the file and not its name: two paths are one file when the system finds the same
/// file under both, through links and other spellings too. One that does not exist yet is known by
/// its folder and its last name. Devices may be shared: there is nothing in them to lose.
[[nodiscard]] OutputObjections checkOutputs(const RunOptions& options);

}  // namespace rvf
