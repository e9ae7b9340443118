#pragma once

#include <cstdio>
#include <cstdlib>

#include "compare/Tolerances.h"
#include "messages/MessageReporter.h"
#include "messages/ProcessEnd.h"
#include "pagemodel/StaticLookup.h"
#include "run/RunOptions.h"

namespace rvf::fuzz {

/// Thrown where the program would end the process: the orderly end of an input.
struct ProcessEnded {};

/// Runs `body` on one input, from the process-wide state of a new process on. Returns what a fuzz
/// target has to return.
template <class Body>
int runOnce(const Body& body) {
  setProcessEndHandler([] { throw ProcessEnded(); });
  messageReporter = MessageReporter();
  muteAllMessages = 0;
  onlyFirstOccurrence = 0;
  positionTolerance = 0;
  lineTolerance = 0;
  simpleReturn = 0;
  currentContext = nullptr;
  try {
    body();
  } catch (const ProcessEnded&) {
    // The input has a record that is too new.
  }
  return 0;
}

/// Ends the process with a trace when something that must hold for every input does not.
inline void require(bool holds, const char* what) {
  if (!holds) {
    std::fprintf(stderr, "does not hold: %s\n", what);
    std::abort();
  }
}

}  // namespace rvf::fuzz
