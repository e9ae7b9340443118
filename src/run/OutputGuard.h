#pragma once

#include "text/eString.h"

namespace rvf {

struct RunOptions;

/// Why the two outputs of a run must not be opened, for the operator. Empty if there is no
/// objection.
struct OutputObjections {
  eString messageFile;
  eString differenceFile;
};

/// Opening an output empties it, and a run must never destroy what it reads: an input, a control
/// file or the message catalogue. So all files are examined here before the first is opened for
/// writing. The two outputs must not be the same file either; if they are, the objection is to the
/// message file.
///
/// Files are identified by device and inode, not by name: two paths that lead to one file through
/// links or different spellings are the same file. A file that does not exist yet is identified by
/// its folder and its last name. Devices may be shared, since there is nothing in them to lose.
[[nodiscard]] OutputObjections checkOutputs(const RunOptions& options);

}  // namespace rvf
