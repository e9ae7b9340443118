#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "support/RunProgram.h"
#include "support/TempFolder.h"

namespace rvf::test {
namespace {

namespace fs = std::filesystem;

// Each folder of the reference is the working directory of one run, with what the run must leave.

std::vector<std::string> referenceFolders() {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(RVF_REFERENCE_DIR)) {
    if (entry.is_directory()) {
      names.push_back(entry.path().filename());
    }
  }
  std::ranges::sort(names);
  return names;
}

std::string testName(const testing::TestParamInfo<std::string>& info) {
  std::string name = info.param;
  std::ranges::replace(name, '-', '_');
  return name;
}

std::vector<std::string> linesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) {
    lines.push_back(line);
  }
  return lines;
}

/// ASCII text in the encoding that the byte-order mark of `file` tells.
std::string encodedAs(const std::string& file, const std::string& ascii) {
  const bool littleEndian = file.starts_with("\xFF\xFE");
  const bool bigEndian = file.starts_with("\xFE\xFF");
  std::string bytes;
  for (const char c : ascii) {
    bytes += bigEndian ? std::string(1, '\0') : "";
    bytes += c;
    bytes += littleEndian ? std::string(1, '\0') : "";
  }
  return bytes;
}

/// A message file with the time of its banner replaced by TIME.
std::string withoutTime(std::string file) {
  const std::string heading = encodedAs(file, " * Execution Begins: ");
  const std::size_t found = file.find(heading);
  if (found == std::string::npos) {
    return file;
  }
  const std::size_t start = found + heading.size();
  const std::size_t end = file.find(encodedAs(file, "\r\n"), start);
  return file.replace(start, end - start, encodedAs(file, "TIME"));
}

class Reference : public testing::TestWithParam<std::string> {
 protected:
  Reference() {
    for (const auto& entry : fs::directory_iterator(fs::path(RVF_REFERENCE_DIR) / GetParam())) {
      const std::string name = entry.path().filename();
      const std::string bytes = readFile(entry.path());
      given_[name] = bytes;
      if (name != "arguments" && name != "outputs" && !name.starts_with("expected-")) {
        folder_.write(name, bytes);
      }
    }
  }

  static std::string readFile(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  std::optional<std::string> given(const std::string& name) const {
    const auto found = given_.find(name);
    return found == given_.end() ? std::nullopt : std::optional(found->second);
  }
  std::optional<std::string> left(const std::string& name) const {
    return folder_.has(name) ? std::optional(folder_.read(name)) : std::nullopt;
  }
  /// The name under which the run leaves its "difference" or "messages".
  std::string outputName(const std::string& kind) const {
    for (const std::string& line : linesOf(given_.at("outputs"))) {
      if (line.starts_with(kind + "\t")) {
        return line.substr(kind.size() + 1);
      }
    }
    return {};
  }

  std::map<std::string, std::string> given_;
  TempFolder folder_;
};

TEST_P(Reference, RunLeavesWhatItMust) {
  std::vector<std::string> command = {RVF_PROGRAM};
  for (const std::string& argument : linesOf(given_.at("arguments"))) {
    command.push_back(argument);
  }

  const ProgramResult result = runProgram(command, folder_.path());

  EXPECT_EQ(result.status, std::stoi(given_.at("expected-exit"))) << result.err;
  EXPECT_EQ(result.out, given_.at("expected-stdout"));
  std::optional<std::string> messages = left(outputName("messages"));
  if (messages) {
    messages = withoutTime(*messages);
  }
  EXPECT_EQ(messages, given("expected-messages"));
  // Too long and too binary to be printed: show_difference tells two of them apart.
  EXPECT_TRUE(left(outputName("difference")) == given("expected-difference"));
  if (result.status != 255) {
    EXPECT_EQ(result.err, "");
  }
}

INSTANTIATE_TEST_SUITE_P(Pairs, Reference, testing::ValuesIn(referenceFolders()), testName);

}  // namespace
}  // namespace rvf::test
