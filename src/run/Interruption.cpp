#include "run/Interruption.h"

#include <unistd.h>

#include <csignal>
#include <cstring>

#include "run/Progress.h"

namespace rvf {

namespace {

constexpr int kSignals[] = {SIGINT, SIGTERM};

constexpr const char* kNotice =
    "rvfcompare: interrupted: the difference file and the message file are incomplete\n";

// Restricted to what a signal handler may do: no allocation, no streams.
void tellInterruption(int signalNumber) {
  eraseProgressLineFromHandler();
  [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, kNotice, std::strlen(kNotice));
  // The handler was uninstalled when it was called, so this ends the process once it returns.
  raise(signalNumber);
}

void setHandler(int signalNumber, void (*from)(int), void (*to)(int)) {
  struct sigaction action {};
  if (sigaction(signalNumber, nullptr, &action) == 0 && action.sa_handler == from) {
    action = {};
    action.sa_handler = to;
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    sigaction(signalNumber, &action, nullptr);
  }
}

}  // namespace

InterruptionNotice::InterruptionNotice() {
  for (const int signalNumber : kSignals) {
    setHandler(signalNumber, SIG_DFL, tellInterruption);
  }
}

InterruptionNotice::~InterruptionNotice() {
  for (const int signalNumber : kSignals) {
    setHandler(signalNumber, tellInterruption, SIG_DFL);
  }
}

}  // namespace rvf
