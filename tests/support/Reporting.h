#pragma once

#include <string>
#include <vector>

#include "messages/MessageReporter.h"
#include "messages/ProcessEnd.h"
#include "text/NativeText.h"

namespace rvf::test {

/// The messages that the code under test gives: those held since this was made, or since the last
/// take.
class HeldMessages {
 public:
  /// Each as "number argument|argument".
  std::vector<std::string> take() {
    std::vector<std::string> lines;
    const auto& pending = messageReporter.pending();
    for (; seen_ < pending.size(); ++seen_) lines.push_back(lineOf(pending[seen_]));
    return lines;
  }
  std::vector<int> takeNumbers() {
    std::vector<int> numbers;
    for (const std::string& line : take()) numbers.push_back(std::stoi(line));
    return numbers;
  }

 private:
  static std::string lineOf(const MessageEntry& entry) {
    std::string line = std::to_string(static_cast<int>(entry.number));
    char separator = ' ';
    for (const eString& argument : entry.arguments) {
      if (!argument.isEmpty()) line += separator + toNative(argument.view());
      separator = '|';
    }
    return line;
  }

  std::size_t seen_ = messageReporter.pending().size();
};

/// While this lives, what ends the process throws `ProcessEnded` instead.
struct ProcessEnded {};
class CatchProcessEnd {
 public:
  CatchProcessEnd() : before_(setProcessEndHandler([] { throw ProcessEnded(); })) {}
  ~CatchProcessEnd() { setProcessEndHandler(before_); }
  CatchProcessEnd(const CatchProcessEnd&) = delete;
  CatchProcessEnd& operator=(const CatchProcessEnd&) = delete;

 private:
  ProcessEndHandler before_;
};

}  // namespace rvf::test
