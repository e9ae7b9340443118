#pragma once

#include "messages/MessageReporter.h"
#include "support/FuzzInput.h"
#include "text/NativeText.h"

namespace rvf::fuzz {

/// Reports a few messages as the input tells: their count, then for each its number, the form of
/// its arguments and a text.
inline void holdMessages(FuzzInput& input) {
  for (int left = input.take() % 8; left > 0; --left) {
    const auto number = static_cast<MessageNumber>(input.take<i16>());
    const u8 form = input.take();
    const eString text = fromNative(input.takeBytes(form >> 4));
    switch (form % 4) {
      case 0:
        Report(number);
        break;
      case 1:
        Report(number, text);
        break;
      case 2:
        Report(number, text, form, -1);
        break;
      default:
        Report(number, text, u"b", u"", u"d", text, u"|6|%n");
    }
  }
}

}  // namespace rvf::fuzz
