#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "run/RunFolder.h"

namespace rvf::test {
namespace {

namespace fs = std::filesystem;

// Each reference folder is the working directory of one run and holds its expected outputs.

std::vector<std::string> referenceFolders() {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(sourcePath("tests/reference"))) {
    if (entry.is_directory()) names.push_back(entry.path().filename());
  }
  std::ranges::sort(names);
  return names;
}

/// ASCII text in the encoding given by the byte-order mark of `file`.
std::string encodedAs(const std::string& file, const std::string& ascii) {
  const std::string before(file.starts_with("\xFE\xFF") ? 1 : 0, '\0');
  const std::string behind(file.starts_with("\xFF\xFE") ? 1 : 0, '\0');
  std::string bytes;
  for (const char c : ascii) bytes += before + c + behind;
  return bytes;
}

/// A message file with the time of its banner replaced by TIME.
std::string withoutTime(std::string file) {
  const std::string heading = encodedAs(file, " * Execution Begins: ");
  const std::size_t found = file.find(heading);
  if (found == std::string::npos) return file;
  const std::size_t start = found + heading.size();
  const std::size_t end = file.find(encodedAs(file, "\r\n"), start);
  return file.replace(start, end - start, encodedAs(file, "TIME"));
}

std::optional<std::string> fileIn(const RunFolder& folder, const std::string& name) {
  return folder.has(name) ? std::optional(folder.read(name)) : std::nullopt;
}

class Reference : public testing::TestWithParam<std::string> {};

TEST_P(Reference, RunLeavesWhatItMust) {
  const RunFolder folder(GetParam());

  const ProgramResult result = runProgram(folder.command, folder.path());

  EXPECT_EQ(result.status, std::stoi(folder.read("expected-exit"))) << result.err;
  EXPECT_EQ(result.out, folder.read("expected-stdout"));
  std::optional<std::string> messages = fileIn(folder, folder.messagesName);
  if (messages) messages = withoutTime(*messages);
  EXPECT_EQ(messages, fileIn(folder, "expected-messages"));
  // Binary and too long to be printed; compare two of them with rvfinspect list.
  EXPECT_TRUE(fileIn(folder, folder.differenceName) == fileIn(folder, "expected-difference"));
  std::istringstream told(result.err);
  for (std::string line; std::getline(told, line) && result.status != 255;) {
    EXPECT_NE(line.find(": warning: "), line.npos) << line;
  }
}

INSTANTIATE_TEST_SUITE_P(Pairs, Reference, testing::ValuesIn(referenceFolders()),
                         [](const auto& info) {
                           std::string name = info.param;
                           std::ranges::replace(name, '-', '_');
                           return name;
                         });

}  // namespace
}  // namespace rvf::test
