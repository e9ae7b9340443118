#pragma once

#include "text/eString.h"

namespace rvf {

struct RunOptions;

/// Why the two outputs of a run must not be opened, for people. Empty if there is no objection.
struct OutputObjections {
  eString messageFile;
  eString differenceFile;
};

/// Opening an output empties it, and a run must never destroy what it reads: an input, a control
/// file or the message catalogue. So all files are examined here before the first is opened for
/// writing. The two outputs must not be the same file, either; the objection is then to the message
/// file.
///
/// Files are identified by what the system finds, not by name: two paths are the same file if they
/// lead to it through links or other spellings, too. A file that does not exist yet is identified
/// by its folder and its last name. Devices may be shared, since there is nothing in them to lose.
[[nodiscard]] OutputObjections checkOutputs(const RunOptions& options);

}  // namespace rvf
