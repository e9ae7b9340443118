#pragma once

#include <string>
#include <vector>

#include "inspect/Commands.h"
#include "inspect/model/Trouble.h"
#include "inspect/output/ShownText.h"
#include "support/MemoryFile.h"
#include "support/PairWalk.h"

namespace rvf::fuzz {

/// Two files and the output of the rvfinspect commands for them.
class CommandsOnPair {
 public:
  explicit CommandsOnPair(FuzzInput input)
      : pair_(input), first_(pair_.first), second_(pair_.second) {
    inspect::redactsTexts = pair_.flag(2);
  }

  [[nodiscard]] std::string changes(inspect::Format format, bool groups = false) const {
    inspect::ChangesOptions options;
    options.first = first_.path();
    options.second = second_.path();
    options.tolerances = pair_.tolerances;
    options.oldText = oldText();
    options.groups = groups;
    options.showsAllPages = pair_.flag(3);
    return written(inspect::runChanges, options, format);
  }

  [[nodiscard]] std::string dump(inspect::Format format) const {
    inspect::DumpOptions options;
    options.file = first_.path();
    options.oldText = oldText();
    return written(inspect::runDump, options, format);
  }

  [[nodiscard]] std::string check(inspect::Format format) const {
    inspect::CheckOptions options;
    options.files = {first_.path(), second_.path()};
    options.oldText = oldText();
    return written(inspect::runCheck, options, format);
  }

  /// For the difference file of a run, and for a file that may not be one.
  [[nodiscard]] std::string list(inspect::Format format) const {
    const MemoryFile differences(PairWalk(pair_, true).differences);
    inspect::ListOptions options;
    options.files = {differences.path(), second_.path()};
    return written(inspect::runList, options, format);
  }

 private:
  [[nodiscard]] inspect::OldText oldText() const {
    return pair_.flag(0) ? inspect::OldText::kTwoBytes : inspect::OldText::kOneByte;
  }

  // Empty for a command that rejects its input.
  template <class Options>
  [[nodiscard]] static std::string written(int (*command)(const Options&), Options& options,
                                           inspect::Format format) {
    const MemoryFile output;
    options.output = {format, output.path(), inspect::When::kNever, inspect::When::kNever};
    try {
      const int status = command(options);
      require(status >= inspect::status::kSame && status <= inspect::status::kWarnings,
              "a command has one of its statuses");
    } catch (const inspect::Trouble&) {
      return "";
    }
    return output.content();
  }

  CapturePair pair_;
  MemoryFile first_, second_;
};

}  // namespace rvf::fuzz
