#include "messages/MessageReporter.h"
#include "messages/ProcessEnd.h"
#include "pagemodel/StaticLookup.h"
#include "support/Fuzz.h"

namespace {

/// Thrown where the program would end the process: the orderly end of an input.
struct ProcessEnded {};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const rvf::u8* data, std::size_t size) {
  using namespace rvf;
  setProcessEndHandler([] { throw ProcessEnded(); });
  messageReporter.reset();
  currentContext = nullptr;
  try {
    fuzz::checkInput(fuzz::FuzzInput({reinterpret_cast<const char*>(data), size}));
  } catch (const ProcessEnded&) {
    // The input has a record that is too new.
  }
  return 0;
}
