#include "run/EntryPoint.h"

#include <cstdio>
#include <cstdlib>
#include <string>

#include "messages/MessageReporter.h"
#include "messages/ProcessEnd.h"
#include "messages/catalogue/MessageOutput.h"
#include "run/CompareRun.h"
#include "run/ExitStatus.h"
#include "run/FailureLog.h"
#include "run/Interruption.h"
#include "run/OperatorNotes.h"
#include "run/Progress.h"
#include "run/RunOptions.h"
#include "run/StandardStreams.h"

namespace rvf {

namespace {

/// Connects a run to the reporter, with a back end for its messages and a listener for its
/// failures. The destructor prints messages that are still held, even if the run ends with an
/// exception.
class MessageSession {
 public:
  MessageSession() : output_(messageReporter) {
    messageReporter.attachBackEnd(&output_);
    messageReporter.attachListener(&failures_);
    current = this;
    handlerBefore_ = setProcessEndHandler(endAtOnce);
  }
  MessageSession(const MessageSession&) = delete;
  MessageSession& operator=(const MessageSession&) = delete;
  ~MessageSession() {
    try {
      printHeldMessages();
    } catch (...) {
      // Out of memory: main reports what ended the run, but the messages are lost.
    }
    setProcessEndHandler(handlerBefore_);
    current = nullptr;
    messageReporter.attachListener(nullptr);
    messageReporter.attachBackEnd(nullptr);
  }

  void printHeldMessages() {
    // Without held messages the catalogue is not needed, so it may be missing.
    if (!messageReporter.pending().empty()) {
      output_.printHeldMessages();
    }
  }
  [[nodiscard]] FailureLog& failures() { return failures_; }

 private:
  // endProcess is called deep inside the readers, which have no access to the run.
  static inline MessageSession* current = nullptr;

  /// Nothing is closed and no archive is flushed: the message file gets no closing report, so that
  /// the run cannot be mistaken for a complete one.
  static void endAtOnce() {
    eraseProgressLine();
    if (current != nullptr) {
      current->printHeldMessages();
      printFailures(current->failures_);
    }
    std::fflush(nullptr);
    std::_Exit(foldToProcessStatus(exit_status::kFailed));
  }

  MessageOutput output_;
  FailureLog failures_;
  ProcessEndHandler handlerBefore_;
};

bool failedSeverely() {
  return messageReporter.tally.effectiveSeverity() >= severity_level::kSevere;
}

i32 takeSteps(CompareRun& run, MessageSession& session, std::span<const eString> arguments) {
  const bool isUnderstood = run.parseArguments(arguments);
  printWarnings(run.options());
  const InterruptionNotice interruptionNotice;
  if (!isUnderstood || !run.openRun() || failedSeverely()) {
    return exit_status::kFailed;
  }
  run.greet();
  const i32 status = run.compareFiles();
  // The messages precede the closing report. Failures while closing still affect the status.
  messageReporter.FlushMessages();
  run.closeRun(status);
  session.printHeldMessages();
  return failedSeverely() ? exit_status::kFailed
                          : formExitStatus(status, run.options().simpleReturn);
}

void explainFailure(const RunOptions& options, FailureLog& failures) {
  if (options.controlFileFailure) {
    failures.add(options.controlFileFailure->path, options.controlFileFailure->reason,
                 u"control file");
  }
  if (failures.isEmpty() && options.badOptions.empty()) {
    failures.add(options.messageFile, u"It holds a message that is severe");
  }
  printFailures(failures);
  printBadOptions(options);
}

}  // namespace

i32 runCompare(std::span<const eString> arguments) {
  prepareStandardStreams();
  if (const std::string answer = answerToQuestion(arguments); !answer.empty()) {
    std::fwrite(answer.data(), 1, answer.size(), stdout);
    return exit_status::kIdentical;
  }
  MessageSession session;
  CompareRun run(session.failures());
  const i32 exitStatus = takeSteps(run, session, arguments);
  run.closeRun(exit_status::kFailed);  // does nothing after a normal end
  session.printHeldMessages();
  if (exitStatus == exit_status::kFailed) {
    explainFailure(run.options(), session.failures());
  } else if (run.counts()) {
    printResult(*run.counts());
  }
  return exitStatus;
}

}  // namespace rvf
