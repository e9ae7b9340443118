// A message catalogue and a few messages held for it: the load, the flush into a report, the
// printing. In front stand the settings and the messages.

#include <sys/mman.h>
#include <unistd.h>

#include <string>

#include "messages/catalogue/MessageOutput.h"
#include "support/Fuzz.h"
#include "text/NativeText.h"
#include "text/encoding/TextSink.h"

namespace rvf::fuzz {
namespace {

/// Reports a few messages as the input tells: their count, then for each its number, the form of
/// its arguments and a text.
void holdMessages(FuzzInput& input) {
  for (int left = input.take() % 8; left > 0; --left) {
    const auto number = static_cast<MessageNumber>(input.take<i16>());
    const u8 form = input.take();
    const eString text = fromNative(input.takeBytes(form >> 4));
    if (form % 4 == 0) {
      messageReporter.reportUnchecked(number);
    } else if (form % 4 == 2) {
      messageReporter.reportUnchecked(number, text, form, -1);
    } else {
      messageReporter.reportUnchecked(number, text, u"b", u"", u"d", text, u"|6|%n");
    }
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
  output.catalogue().setEncoding(input.take());
  holdMessages(input);
  // The catalogue opens what it reads: a file that lies in memory and has a path.
  const int file = memfd_create("input", MFD_CLOEXEC);
  const auto size = static_cast<ssize_t>(input.rest().size());
  require(write(file, input.rest().data(), input.rest().size()) == size, "memory takes the input");
  output.catalogue().SetMessageFile(fromNative("/proc/self/fd/" + std::to_string(file)));
  (flags & 128) != 0 ? output.printHeldMessages()
                     : static_cast<void>(messageReporter.FlushMessages());
  const std::vector<MessageRecord>& records = output.catalogue().records();
  for (const MessageRecord& record : records) {
    const auto found = static_cast<std::size_t>(output.catalogue().FindMessage(record.number));
    require(found >= records.size() || records[found].number == record.number, "a true lookup");
  }
  close(file);
  messageReporter.reset();
}

}  // namespace rvf::fuzz
