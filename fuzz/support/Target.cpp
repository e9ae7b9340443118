#include "messages/MessageReporter.h"
#include "support/Fuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const rvf::u8* data, std::size_t size) {
  using namespace rvf;
  messageReporter.reset();
  fuzz::checkInput(fuzz::FuzzInput({reinterpret_cast<const char*>(data), size}));
  return 0;
}
