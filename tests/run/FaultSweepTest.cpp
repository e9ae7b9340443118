#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <ostream>
#include <sstream>
#include <string>
#include <vector>

#include "support/Capture.h"
#include "support/DifferenceBytes.h"
#include "support/FaultRun.h"
#include "support/TempFolder.h"

namespace rvf::test {
namespace {

namespace fs = std::filesystem;

// Every single call of the system fails once, and from each one on all fail, or it is the last one
// before the process is killed, until a run has no call left. Whatever happens: the status is the
// true one or 255, and nothing that is left can be taken for the result of a run that came to its
// end.

constexpr const char* kMark = "failed";
constexpr const char* kKill = "-1";

struct Kind {
  const char* name;
  const char* call;
  std::string error;

  friend std::ostream& operator<<(std::ostream& out, const Kind& kind) { return out << kind.name; }
};

const Kind kKinds[] = {
    {"Read", "read", std::to_string(EIO)},
    {"Write", "write", std::to_string(ENOSPC)},
    {"Seek", "seek", std::to_string(EIO)},
    {"Close", "close", std::to_string(EDQUOT)},
    {"Open", "open", std::to_string(EMFILE)},
    {"Stat", "stat", std::to_string(EIO)},
    {"Memory", "allocate", std::to_string(ENOMEM)},
    {"Everything", "all", std::to_string(EIO)},
    {"Kill", "all", kKill},
};

/// Pairs of the reference that between them have differences, none, a control file, UTF-16 and
/// several customers.
const char* const kPairs[] = {"plain-181", "plain-text-1418", "plain-text-1368"};

// Pairs that are made here: the difference file of the one is written in several blocks, and the
// pages of the other do not fit into memory with the index, so that they are read one by one.
constexpr const char* kLongPair = "long";
constexpr const char* kLargePair = "large";

std::string readFile(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

std::vector<std::string> linesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

class FaultSweep : public testing::TestWithParam<std::tuple<const char*, Kind>> {
 protected:
  void SetUp() override {
    if (!canInjectFaults()) GTEST_SKIP() << "a build with sanitizers";
    folder_.write(kCatalogue, readFile(fs::path(RVF_SHARE_DIR) / kCatalogue));
    const std::string pair = std::get<0>(GetParam());
    if (pair == kLongPair) {
      writeLongPair();
    } else if (pair == kLargePair) {
      writeLargePair();
    } else {
      takeReferencePair(fs::path(RVF_REFERENCE_DIR) / pair);
    }
    true_ = run({});
    trueDifference_ = folder_.read(differenceName_);
    ASSERT_TRUE(DifferenceBytes(trueDifference_).isComplete());
    ASSERT_TRUE(hasClosingReport());
  }

  void addInput(const std::string& name, const std::string& bytes) {
    inputs_.emplace_back(name, bytes);
    folder_.write(name, bytes);
  }
  void takeReferencePair(const fs::path& pair) {
    for (const auto& entry : fs::directory_iterator(pair)) {
      const std::string name = entry.path().filename();
      if (name.ends_with(".rvf") || name == "c.txt") addInput(name, readFile(entry.path()));
    }
    for (const std::string& argument : linesOf(readFile(pair / "arguments"))) {
      command_.push_back(argument);
    }
    for (const std::string& line : linesOf(readFile(pair / "outputs"))) {
      const std::string name = line.substr(line.find('\t') + 1);
      (line.starts_with("difference") ? differenceName_ : messagesName_) = name;
    }
  }
  void writeLongPair() {
    constexpr int kCustomers = 4, kPages = 10000;  // the difference file has four bytes a page
    CaptureFields fields;
    fields.customers.assign(kCustomers, {.pages = std::vector<PageFields>(kPages)});
    addInput("RVF1.rvf", writeCapture(fields).bytes);
    fields.customers.back().pages.pop_back();
    addInput("RVF2.rvf", writeCapture(fields).bytes);
  }

  void writeLargePair() {
    std::vector<PageFields> pages(4000, page({text({.text = u"one"}), line()}));
    addInput("RVF1.rvf", writeCapture(captureOf(pages)).bytes);
    pages.back() = page({text({.text = u"two"}), line()});
    addInput("RVF2.rvf", writeCapture(captureOf(pages)).bytes);
  }

  ProgramResult run(const Faults& faults) {
    for (const std::string& name : {differenceName_, messagesName_, std::string(kMark)}) {
      fs::remove(folder_.path() / name);
    }
    return runWithFaults(faults, command_, folder_.path());
  }

  std::string left(const std::string& name) const {
    return folder_.has(name) ? folder_.read(name) : "";
  }
  /// Whether the message file has its end, in any of its encodings.
  bool hasClosingReport() const {
    std::string text = left(messagesName_);
    std::erase(text, '\0');
    return text.find("Return Code") != std::string::npos;
  }

  void checkWhatIsLeft(const ProgramResult& result, bool isKilled) {
    const std::string difference = left(differenceName_);
    const bool isComplete = DifferenceBytes(difference).isComplete();
    const bool isTrue = difference == trueDifference_;
    if (isKilled) {
      EXPECT_EQ(result.status, -9);
      EXPECT_TRUE(isTrue || !isComplete);
      // The report is ended after the difference file is.
      EXPECT_TRUE(isTrue || !hasClosingReport());
    } else if (result.status == 255) {
      EXPECT_FALSE(result.err.empty() && !hasMessage()) << "nobody hears why";
    } else {
      EXPECT_EQ(result.status, true_.status) << result.err;
      EXPECT_TRUE(isTrue && hasClosingReport());
    }
    for (const auto& [name, bytes] : inputs_) EXPECT_TRUE(folder_.read(name) == bytes) << name;
  }
  bool hasMessage() const {
    std::string text = left(messagesName_);
    std::erase(text, '\0');
    return text.find("QZ00") != std::string::npos;
  }

  static constexpr const char* kCatalogue = "MsgResource_en-us.dat";
  TempFolder folder_;
  std::vector<std::pair<std::string, std::string>> inputs_;
  std::vector<std::string> command_ = {RVF_PROGRAM};
  std::string differenceName_ = "Differenced.dat", messagesName_ = "PlenarixMessages.dat";
  ProgramResult true_;
  std::string trueDifference_;
};

TEST_P(FaultSweep, LeavesNothingThatDeceives) {
  const Kind& kind = std::get<1>(GetParam());
  const bool isKilled = kind.error == kKill;
  for (const std::string range : {"once", "on"}) {
    if (isKilled && range == "on") continue;
    int at = 1;
    for (;; ++at) {
      SCOPED_TRACE(std::string(kind.call) + " " + std::to_string(at) + " " + range);
      const ProgramResult result = run({{"CALL", kind.call},
                                        {"AT", std::to_string(at)},
                                        {"FOR", range},
                                        {"ERROR", kind.error},
                                        {"MARK", kMark}});
      if (!folder_.has(kMark)) {
        EXPECT_EQ(result.status, true_.status);
        break;
      }
      checkWhatIsLeft(result, isKilled);
      if (HasFailure()) return;
    }
    EXPECT_GT(at, 1) << "no such call was made";
    RecordProperty(range, at - 1);
  }
}

std::string sweepName(const testing::TestParamInfo<FaultSweep::ParamType>& info) {
  std::string name = std::get<0>(info.param);
  std::erase(name, '-');
  return name + std::get<1>(info.param).name;
}

const Kind kWriting[] = {{"Write", "write", std::to_string(ENOSPC)},
                         {"KillAtWrite", "write", kKill}};
const Kind kReading[] = {{"Read", "read", std::to_string(EIO)},
                         {"Seek", "seek", std::to_string(EIO)},
                         {"KillAtRead", "read", kKill}};

INSTANTIATE_TEST_SUITE_P(Long, FaultSweep,
                         testing::Combine(testing::Values(kLongPair), testing::ValuesIn(kWriting)),
                         sweepName);
INSTANTIATE_TEST_SUITE_P(Large, FaultSweep,
                         testing::Combine(testing::Values(kLargePair), testing::ValuesIn(kReading)),
                         sweepName);
INSTANTIATE_TEST_SUITE_P(Pairs, FaultSweep,
                         testing::Combine(testing::ValuesIn(kPairs), testing::ValuesIn(kKinds)),
                         sweepName);

}  // namespace
}  // namespace rvf::test
