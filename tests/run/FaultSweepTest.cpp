#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <map>
#include <string>
#include <tuple>
#include <vector>

#include "run/RunFolder.h"
#include "support/Capture.h"
#include "support/FaultRun.h"

namespace rvf::test {
namespace {

namespace fs = std::filesystem;

// Every single call of the system fails once, and from each one on all fail, or it is the last one
// before the process is killed, until a run has no call left. Whatever happens: the status is the
// true one or 255, and nothing that is left can be taken for the result of a run that came to its
// end.

constexpr const char* kCatalogueFile = "MsgResource_en-us.dat";
constexpr const char* kMark = "failed";

// Two pairs beside those of the reference. The difference file of kLong, with four bytes a page, is
// written in several blocks; the pages of kLarge do not fit into memory with the index, so that
// they are read one by one.
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
      EXPECT_TRUE(!result.err.empty() || folder_.report().starts_with("QZ")) << "nobody hears why";
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

// Between them the pairs of the reference have differences, none, a control file, UTF-16 and
// several customers.
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

}  // namespace
}  // namespace rvf::test
