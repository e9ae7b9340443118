#pragma once

namespace rvf {

/// Makes the process independent of the streams and limits that it was started with. A closed
/// standard stream is opened on /dev/null; otherwise the first file of the run would take its
/// number and receive what is printed. A write to a broken pipe or beyond a size limit fails with
/// an error instead of a signal, so that it can be reported.
void prepareStandardStreams();

}  // namespace rvf
