#pragma once

#include <string>
#include <vector>

#include "messages/MessageReporter.h"
#include "text/NativeText.h"

namespace rvf::test {

/// The messages reported by the code under test: those held since this was made, or since the last
/// take.
class HeldMessages {
 public:
  /// Each in the form "number argument|argument".
  std::vector<std::string> take() {
    std::vector<std::string> lines;
    for (; seen_ < messageReporter.pending().size(); ++seen_) {
      const MessageEntry& entry = messageReporter.pending()[seen_];
      lines.push_back(std::to_string(static_cast<int>(entry.number)));
      char separator = ' ';
      for (const eString& argument : entry.arguments) {
        if (!argument.isEmpty()) lines.back() += separator + toNative(argument.view());
        separator = '|';
      }
    }
    return lines;
  }
  std::vector<int> takeNumbers() {
    std::vector<int> numbers;
    for (const std::string& line : take()) numbers.push_back(std::stoi(line));
    return numbers;
  }

 private:
  std::size_t seen_ = messageReporter.pending().size();
};

}  // namespace rvf::test
