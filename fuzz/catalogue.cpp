// A message catalogue and a few messages held for it: the load, the flush into a report, the
// printing. In front stand the settings and the messages.

#include <cstddef>

#include "messages/MessageOutput.h"
#include "support/FuzzInput.h"
#include "support/FuzzRun.h"
#include "support/HeldMessages.h"
#include "support/PathOfBytes.h"
#include "text/TextSink.h"

namespace rvf::fuzz {
namespace {

void checkLookups(MessageCatalogue& catalogue) {
  for (const MessageRecord& record : catalogue.records()) {
    const i32 found = catalogue.FindMessage(record.number);
    require(
        found < 0 || catalogue.records()[static_cast<std::size_t>(found)].number == record.number,
        "a lookup finds the number");
  }
}

void flush(FuzzInput input) {
  const u8 flags = input.take();
  MessageOutput output(messageReporter);
  messageReporter.attachBackEnd(&output);
  MemorySink report, structured;
  messageReporter.AttachReportSink((flags & 1) != 0 ? &report : nullptr);
  messageReporter.structuredSink = &structured;
  messageReporter.structuredForm = (flags & 2) != 0;
  messageReporter.levelFilter = flags >> 2 & 3;
  messageReporter.directOutput = (flags & 16) == 0;
  messageReporter.overrides = {{static_cast<MessageNumber>(1847), u'S', 1, flags >> 5, false}};
  output.catalogue().setEncoding(input.take());
  holdMessages(input);
  const PathOfBytes file(input.rest());
  output.catalogue().SetMessageFile(file.path());
  if ((flags & 128) != 0) {
    output.printHeldMessages();
  } else {
    messageReporter.FlushMessages();
  }
  checkLookups(output.catalogue());
  messageReporter = MessageReporter();
}

}  // namespace
}  // namespace rvf::fuzz

extern "C" int LLVMFuzzerTestOneInput(const rvf::u8* data, std::size_t size) {
  return rvf::fuzz::runOnce([=] { rvf::fuzz::flush({data, size}); });
}
