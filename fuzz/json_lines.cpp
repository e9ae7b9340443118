// The JSON Lines output for two page-capture files: every line is a record that follows the schema,
// and complete outputs have their first and last record.

#include "support/CommandsOnPair.h"
#include "support/RecordSchema.h"
#include "support/WrittenText.h"

namespace rvf::fuzz {
namespace {

/// The names of all records.
std::vector<std::string> requireRecords(const std::string& text) {
  static const RecordSchema schema;
  requireHarmless(text);
  std::vector<std::string> names;
  std::size_t begin = 0;
  for (std::size_t end = 0; (end = text.find('\n', begin)) != text.npos; begin = end + 1) {
    const auto record = nlohmann::json::parse(text.substr(begin, end - begin), nullptr, false);
    require(!record.is_discarded(), "a line is JSON");
    schema.requireValid(record);
    names.push_back(record["record"]);
  }
  require(begin == text.size(), "the last line has its end");
  return names;
}

}  // namespace

void checkInput(FuzzInput input) {
  using inspect::Format;
  const CommandsOnPair commands(input);
  const auto changes = requireRecords(commands.changes(Format::kJsonLines));
  require(changes.empty() || (changes.front() == "run" && changes.back() == "summary"),
          "an inspection begins with its files and ends with its totals");
  const auto dump = requireRecords(commands.dump(Format::kJsonLines));
  require(dump.empty() || dump.front() == "capture", "a dump begins with its file");
  const auto check = requireRecords(commands.check(Format::kJsonLines));
  require(!check.empty() && check.back() == "check", "a check ends with its result");
  requireRecords(commands.list(Format::kJsonLines));
}

}  // namespace rvf::fuzz
