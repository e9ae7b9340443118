// A message catalogue and a few held messages, which are written to a report or printed. The input
// starts with the settings and the messages.

#include <sys/mman.h>
#include <unistd.h>

#include <string>

#include "messages/catalogue/MessageOutput.h"
#include "support/Fuzz.h"
#include "text/NativeText.h"
#include "text/encoding/TextSink.h"

namespace rvf::fuzz {
namespace {

/// The input holds a count, then for each message its number, the form of its arguments, and a
/// text.
void holdMessages(FuzzInput& input) {
  for (int left = input.take() % 8; left > 0; --left) {
    const auto number = static_cast<MessageNumber>(input.take<i16>());
    const u8 form = input.take();
    const eString text = fromNative(input.takeBytes(form >> 4));
    form % 4 == 0   ? messageReporter.reportUnchecked(number)
    : form % 4 == 2 ? messageReporter.reportUnchecked(number, text, form, -1)
                    : messageReporter.reportUnchecked(number, text, u"b", u"", u"", text, u"|6|%n");
  }
}

}  // namespace

void checkInput(FuzzInput input) {
  const u8 flags = input.take();
  MessageOutput output(messageReporter);
  messageReporter.attachBackEnd(&output);
  MemorySink report, structured;
  report.setXmlMode((flags & 2) != 0);
  messageReporter.AttachReportSink((flags & 1) != 0 ? &report : nullptr);
  messageReporter.structuredSink = &structured;
  messageReporter.structuredForm = (flags & 2) != 0;
  messageReporter.levelFilter = flags >> 2 & 3;
  messageReporter.directOutput = (flags & 16) == 0;
  messageReporter.overrides = {{static_cast<MessageNumber>(1847), u'S', 1, flags >> 5, false}};
  MessageCatalogue& catalogue = output.catalogue();
  catalogue.setEncoding(input.take());
  holdMessages(input);
  const int file = memfd_create("input", MFD_CLOEXEC);  // in memory, but with a path
  const std::string_view lines = input.rest();
  require(write(file, lines.data(), lines.size()) == std::ssize(lines), "memory takes the input");
  catalogue.SetMessageFile(fromNative("/proc/self/fd/" + std::to_string(file)));
  (flags & 128) != 0 ? output.printHeldMessages()
                     : static_cast<void>(messageReporter.FlushMessages());
  for (const MessageRecord& record : catalogue.records()) {
    const i32 found = catalogue.FindMessage(record.number);
    require(found < 0 || catalogue.records().begin()[found].number == record.number, "its record");
  }
  close(file);
}

}  // namespace rvf::fuzz
