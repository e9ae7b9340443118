#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <tuple>

#include "run/RunFolder.h"
#include "support/FaultRun.h"

namespace rvf::test {
namespace {

namespace fs = std::filesystem;

// Each system call of a run fails in turn: alone, with all calls after it, or by killing the
// process. Whatever happens, the status must be the true one or 255, and no output that is left may
// look like the result of a complete run.

constexpr const char* kCatalogueFile = "MsgResource_en-us.dat";
constexpr const char* kMark = "failed";

// Two pairs besides the reference pairs. The difference file of kLong, with four bytes per page, is
// written in several blocks; the pages of kLarge do not fit into memory with the index, so they are
// read one by one.
constexpr const char* kLong = "long";
constexpr const char* kLarge = "large";

void writePair(const RunFolder& folder, CaptureFields fields, const PageFields& lastOfSecond) {
  folder.write("RVF1.rvf", writeCapture(fields).bytes);
  fields.customers.back().pages.back() = lastOfSecond;
  folder.write("RVF2.rvf", writeCapture(fields).bytes);
}

class FaultSweep : public testing::TestWithParam<std::tuple<std::string, std::string>> {
 protected:
  FaultSweep() {
    fs::copy(fs::path(sourcePath("share")) / kCatalogueFile, folder_.path(),
             fs::copy_options::overwrite_existing);
    if (pair_ == kLong) {
      CaptureFields fields;
      fields.customers.assign(4, {.pages = std::vector<PageFields>(10000)});
      writePair(folder_, fields, page({line()}));
    } else if (pair_ == kLarge) {
      const std::vector<PageFields> pages(4000, page({text({.text = u"one"}), line()}));
      writePair(folder_, captureOf(pages), page({text({.text = u"two"}), line()}));
    }
    given_ = folder_.files();
  }

  ProgramResult run(const Faults& faults) {
    for (const std::string& name : outputs_) fs::remove(folder_.path() / name);
    return runWithFaults(faults, folder_.command, folder_.path());
  }

  void checkWhatIsLeft(const ProgramResult& result) const {
    const bool isTrue = folder_.readIfThere(folder_.differenceName) == trueDifference_;
    if (isKilled_) {
      EXPECT_EQ(result.status, -9);
      EXPECT_TRUE(isTrue || !folder_.differenceIsComplete());
      EXPECT_TRUE(isTrue || !folder_.hasClosingReport()) << "it ends after the difference file";
    } else if (result.status == 255) {
      EXPECT_NE(result.err.find("rvfcompare: "), std::string::npos) << "nobody hears why";
    } else {
      EXPECT_EQ(result.status, true_.status) << result.err;
      EXPECT_TRUE(isTrue && folder_.hasClosingReport());
    }
    auto left = folder_.files();
    for (const std::string& name : outputs_) left.erase(name);
    EXPECT_TRUE(left == given_);
  }

  const std::string pair_ = std::get<0>(GetParam());
  const bool isKilled_ = std::get<1>(GetParam()).starts_with("kill");
  const RunFolder folder_{pair_ == kLong || pair_ == kLarge ? "" : pair_};
  const std::vector<std::string> outputs_ = {folder_.differenceName, folder_.messagesName, kMark};
  std::map<std::string, std::string> given_;
  ProgramResult true_;
  std::string trueDifference_;
};

TEST_P(FaultSweep, LeavesNothingThatDeceives) {
  true_ = run({});
  trueDifference_ = folder_.read(folder_.differenceName);
  ASSERT_TRUE(folder_.differenceIsComplete() && folder_.hasClosingReport());
  const std::string kind = std::get<1>(GetParam());
  const std::string call = kind.substr(kind.find('_') + 1);
  const std::string error = isKilled_ ? "-1" : std::to_string(call == "write" ? ENOSPC : EIO);
  for (const std::string range : {"once", "on"}) {
    if (isKilled_ && range == "on") continue;
    for (int at = 1;; ++at) {
      SCOPED_TRACE(std::to_string(at) + " " + range);
      const std::string number = std::to_string(at);
      const ProgramResult result =
          run({{"CALL", call}, {"AT", number}, {"FOR", range}, {"ERROR", error}, {"MARK", kMark}});
      if (!folder_.has(kMark)) {
        EXPECT_EQ(result.status, true_.status);
        EXPECT_GT(at, 1) << "no such call was made";
        break;
      }
      checkWhatIsLeft(result);
      if (HasFailure()) return;
    }
  }
}

std::string sweepName(const testing::TestParamInfo<FaultSweep::ParamType>& info) {
  std::string name = std::get<0>(info.param) + "_" + std::get<1>(info.param);
  std::erase(name, '-');
  return name;
}

// Together, these reference pairs have differences and none, a control file, UTF-16, and several
// customers.
const auto kReferencePairs = testing::Values("plain-181", "plain-text-1418", "plain-text-1368");
const auto kCalls = testing::Values("read", "write", "seek", "close", "open", "stat", "allocate",
                                    "all", "kill_all");
INSTANTIATE_TEST_SUITE_P(Reference, FaultSweep, testing::Combine(kReferencePairs, kCalls),
                         sweepName);
INSTANTIATE_TEST_SUITE_P(Long, FaultSweep,
                         testing::Combine(testing::Values(kLong),
                                          testing::Values("write", "kill_write")),
                         sweepName);
INSTANTIATE_TEST_SUITE_P(Large, FaultSweep,
                         testing::Combine(testing::Values(kLarge),
                                          testing::Values("read", "seek", "kill_read")),
                         sweepName);

// Runs on a system that moves few bytes at a time, interrupts calls, and loses data.

class FaultySurroundings : public Surroundings {
 protected:
  ProgramResult runUnder(const Faults& faults, std::vector<std::string> arguments = {}) const {
    arguments.insert(arguments.begin(), builtPath("rvfcompare"));
    return runWithFaults(faults, arguments, path());
  }
};

TEST_F(FaultySurroundings, ShortAndInterruptedCallsGoOn) {
  const Faults rows[] = {
      {{"PIECE", "1"}},
      {{"PIECE", "7"}},
      {{"BREAK", "2"}},
      {{"BREAK", "3"}},
      {{"PIECE", "5"}, {"BREAK", "2"}},
  };
  for (const Faults& faults : rows) expectTrueResult(runUnder(faults));
  EXPECT_EQ(runUnder({{"CALL", "read"}, {"AT", "3"}, {"FOR", "on"}, {"ERROR", "4"}}).status, 255);
}

// A network drive may report lost bytes only when the file is closed.
TEST_F(FaultySurroundings, BytesLostAtTheCloseFailTheRun) {
  EXPECT_EQ(runUnder({{"CALL", "close"}, {"AT", "1"}, {"FOR", "on"}}).status, 255);
  EXPECT_NE(report().find("QZ001848S (2) Closing Differenced.dat: "), std::string::npos);
}

// Every byte of these files matters, so a run that misses one has no result. Two files that have
// lost the same bytes are not identical.
TEST_F(FaultySurroundings, InputThatShrinksIsDamage) {
  const auto size = static_cast<int>(read("RVF1.rvf").size());
  ASSERT_EQ(read("RVF2.rvf").size(), read("RVF1.rvf").size());
  for (int length = 0; length <= size;
       length += length < size - 1 ? std::min(211, size - 1 - length) : 1) {
    for (const std::string file : {"RVF1.rvf", "RVF2.rvf", ".rvf"}) {
      SCOPED_TRACE(file + " " + std::to_string(length));
      const Faults faults = {{"SHRINK", std::to_string(length)}, {"FILE", file}};
      EXPECT_EQ(runUnder(faults).status, length < size ? 255 : kTrueStatus);
      EXPECT_EQ(runUnder(faults, {"-COMPARE=RVF1.rvf,RVF1.rvf"}).status,
                length < size && file != "RVF2.rvf" ? 255 : 0);
    }
  }
}

}  // namespace
}  // namespace rvf::test
