#pragma once

namespace rvf {

/// While this lives, an interrupted run (Ctrl-C, or a request to terminate) clears the progress
/// line and says on standard error that its outputs are incomplete. The process still ends by that
/// signal, and a signal that was ignored before stays ignored.
class InterruptionNotice {
 public:
  InterruptionNotice();
  InterruptionNotice(const InterruptionNotice&) = delete;
  InterruptionNotice& operator=(const InterruptionNotice&) = delete;
  ~InterruptionNotice();
};

}  // namespace rvf
