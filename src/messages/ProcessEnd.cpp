#include "messages/ProcessEnd.h"

#include <cstdio>
#include <cstdlib>

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
  leaveAtOnce();  // in case the handler returns after all
}

}  // namespace rvf
