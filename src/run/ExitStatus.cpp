#include "run/ExitStatus.h"

#include "compare/DiffFlags.h"

namespace rvf {

i32 formExitStatus(i32 status, bool simple) {
  // Parts that were merely found elsewhere in their list draw the same page, so scripts that want a
  // plain answer get "identical". The mask is deliberately this narrow.
  constexpr DiffFlags kSameForScripts = diff::kDrawOrder | diff::kContent;
  if (!simple || status <= 0) {
    return status;
  }
  const bool differs = (static_cast<DiffFlags>(status) & ~kSameForScripts) != 0;
  return differs ? exit_status::kDifferent : exit_status::kIdentical;
}

int foldToProcessStatus(i32 exitStatus) {
  constexpr int kFoldedPlaces = 17;
  constexpr int kProcessBits = 0xFF;
  return (exitStatus | exitStatus >> kFoldedPlaces) & kProcessBits;
}

}  // namespace rvf
