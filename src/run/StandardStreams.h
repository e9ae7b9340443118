#pragma once

namespace rvf {

/// Makes the process safe against the streams and limits that it was started with. A standard
/// stream that is closed becomes /dev/null, or the first file of the run would take its number and
/// collect what is printed. A write to a broken pipe or beyond a size limit fails with an error
/// instead of a signal, so that it is reported.
void prepareStandardStreams();

}  // namespace rvf
