#include "messages/ProcessEnd.h"

#include <cstdio>
#include <cstdlib>

#include "messages/MessageReporter.h"

namespace rvf {

namespace {

[[noreturn]] void leaveAtOnce() {
  constexpr int kFailed = -1;
  std::fflush(nullptr);
  std::_Exit(kFailed & 0xFF);
}

ProcessEndHandler currentHandler = leaveAtOnce;

}  // namespace

ProcessEndHandler setProcessEndHandler(ProcessEndHandler handler) {
  const ProcessEndHandler before = currentHandler;
  currentHandler = handler == nullptr ? leaveAtOnce : handler;
  return before;
}

void endProcess() {
  currentHandler();
  leaveAtOnce();  // a handler that returned has not ended anything
}

void endOnNewerRecord(const char16_t* label, i32 version, i32 highest) {
  Report(MessageNumber::kRecordTooNew, label, version, highest);
  endProcess();
}

}  // namespace rvf
