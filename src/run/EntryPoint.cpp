#include "run/EntryPoint.h"

#include <cstdio>
#include <cstdlib>

#include "messages/MessageReporter.h"
#include "messages/ProcessEnd.h"
#include "messages/catalogue/MessageOutput.h"
#include "run/CompareRun.h"
#include "run/ExitStatus.h"
#include "run/OperatorNotes.h"
#include "run/Progress.h"
#include "run/RunOptions.h"
#include "run/StandardStreams.h"

namespace rvf {

namespace {

// A process end comes from deep inside the readers, with no path to the run.
MessageOutput* currentOutput = nullptr;

/// Nothing is closed and no archive is written out: the message file stays as it is, without a
/// closing report, so that nobody takes the run for a finished one.
void endAtOnce() {
  eraseProgressLine();
  if (currentOutput != nullptr) {
    currentOutput->printHeldMessages();
  }
  std::fflush(nullptr);
  std::_Exit(foldToProcessStatus(exit_status::kFailed));
}

/// The back end of the reporter for the time of a run. At its end it tells the operator what is
/// still held, also when the run ends with an exception.
class MessageSession {
 public:
  MessageSession() : output_(messageReporter) {
    messageReporter.attachBackEnd(&output_);
    currentOutput = &output_;
    handlerBefore_ = setProcessEndHandler(endAtOnce);
  }
  MessageSession(const MessageSession&) = delete;
  MessageSession& operator=(const MessageSession&) = delete;
  ~MessageSession() {
    try {
      printHeldMessages();
    } catch (...) {
      // Out of memory: what ended the run is told, the messages are not.
    }
    setProcessEndHandler(handlerBefore_);
    currentOutput = nullptr;
    messageReporter.attachBackEnd(nullptr);
  }

  void printHeldMessages() {
    // A look for the catalogue may have something to tell of its own.
    if (!messageReporter.pending().empty()) {
      output_.printHeldMessages();
    }
  }

 private:
  MessageOutput output_;
  ProcessEndHandler handlerBefore_;
};

bool failedSeverely() {
  return messageReporter.tally.effectiveSeverity() >= severity_level::kSevere;
}

i32 takeSteps(CompareRun& run, MessageSession& session, std::span<const eString> arguments) {
  if (!run.parseArguments(arguments) || !run.openRun() || failedSeverely()) {
    return exit_status::kFailed;
  }
  run.greet();
  const i32 status = run.compareFiles();
  // The messages stand in front of the closing report. What closing itself has to tell still
  // counts.
  messageReporter.FlushMessages();
  run.closeRun(status);
  session.printHeldMessages();
  return failedSeverely() ? exit_status::kFailed
                          : formExitStatus(status, run.options().simpleReturn);
}

}  // namespace

i32 runCompare(std::span<const eString> arguments) {
  prepareStandardStreams();
  MessageSession session;
  CompareRun run;
  const i32 exitStatus = takeSteps(run, session, arguments);
  run.closeRun(exit_status::kFailed);  // a run that got to its end has nothing open any more
  session.printHeldMessages();
  tellFailedOptions(run.options());
  return exitStatus;
}

}  // namespace rvf
