// The text output for two page-capture files: whatever the files contain, it has no control
// sequences for a terminal.

#include "support/CommandsOnPair.h"
#include "support/WrittenText.h"

namespace rvf::fuzz {

void checkInput(FuzzInput input) {
  using inspect::Format;
  const CommandsOnPair commands(input);
  requireHarmless(commands.changes(Format::kText));
  constexpr bool kGroups = true;
  requireHarmless(commands.changes(Format::kText, kGroups));
  requireHarmless(commands.dump(Format::kText));
  const std::string check = commands.check(Format::kText);
  requireHarmless(check);
  require(!check.empty(), "a check says something of every file");
  requireHarmless(commands.list(Format::kText));
}

}  // namespace rvf::fuzz
