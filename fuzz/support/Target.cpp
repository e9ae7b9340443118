#include "messages/MessageReporter.h"
#include "pagemodel/StaticLookup.h"
#include "support/Fuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const rvf::u8* data, std::size_t size) {
  using namespace rvf;
  messageReporter.reset();
  currentContext = nullptr;
  fuzz::checkInput(fuzz::FuzzInput({reinterpret_cast<const char*>(data), size}));
  return 0;
}
