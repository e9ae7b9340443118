#pragma once

namespace rvf {

/// During its lifetime, an interrupted run (Ctrl-C, or a request to terminate) clears the progress
/// line and says on standard error that its outputs are incomplete. The process is still ended by
/// the signal, and signals that were ignored before stay ignored.
class InterruptionNotice {
 public:
  InterruptionNotice();
  InterruptionNotice(const InterruptionNotice&) = delete;
  InterruptionNotice& operator=(const InterruptionNotice&) = delete;
  ~InterruptionNotice();
};

}  // namespace rvf
