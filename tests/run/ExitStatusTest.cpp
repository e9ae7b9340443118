#include "run/ExitStatus.h"

#include <gtest/gtest.h>

#include <ctime>
#include <string>

#include "run/RunReport.h"
#include "support/FrozenText.h"
#include "text/NativeText.h"
#include "text/encoding/TextSink.h"

namespace rvf {
namespace {

// The exit status, plain, with SIMPLERETURN and folded for the process, and the closing report: for
// each bit, for bits that a run can set together, and for those that no run sets.
TEST(ExitStatus, AndItsWords) {
  std::vector<i32> statuses = {-1,
                               0,
                               129,
                               160,
                               128 | 256,
                               524288 | 129,
                               1048576 | 524288,
                               1048576 | 524288 | (65535 - 30),
                               2097151,
                               2097152 + 129};
  for (i32 bit = 1; bit <= 2097152; bit *= 2) statuses.push_back(bit);
  std::string all;
  for (const i32 status : statuses) {
    MemorySink sink;
    writeClosingReport(sink, status);
    all += std::to_string(status) + ": full " + std::to_string(formExitStatus(status, false)) +
           ", simple " + std::to_string(formExitStatus(status, true)) + ", process " +
           std::to_string(foldToProcessStatus(status)) + "\n" + std::string(sink.bytes());
  }
  std::erase(all, '\r');
  test::expectFrozen("exit-statuses.txt", all);
}

TEST(Banner, TellsTheLocalTime) {
  std::string before, after, banner;
  const auto now = [] {
    const std::time_t time = std::time(nullptr);
    const std::tm t = *std::localtime(&time);
    eString text;
    text.Format(u"Begins: %d/%d/%d   %.2d:%.2d:%.2d\r\n", t.tm_mon + 1, t.tm_mday, t.tm_year + 1900,
                t.tm_hour, t.tm_min, t.tm_sec);
    return toNative(text.view());
  };
  do {  // again if the second changes in between
    before = now();
    MemorySink sink;
    writeBanner(&sink, u"Message File");
    banner = sink.bytes();
    after = now();
  } while (before != after);
  EXPECT_NE(banner.find(before), banner.npos) << banner;
  writeBanner(nullptr, u"");  // writes nothing
}

}  // namespace
}  // namespace rvf
