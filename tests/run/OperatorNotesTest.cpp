#include "run/OperatorNotes.h"

#include "run/FailureLog.h"
#include "run/Progress.h"
#include "support/FrozenText.h"

namespace rvf {
namespace {

using std::chrono_literals::operator""s;

TEST(OperatorNotes, ProgressAndResult) {
  std::string lines;
  for (const i32 pages : {0, 1, 600}) {
    for (const auto elapsed : {1.9s, 2.0s, 60.0s, 3600.0s, 40000.0s}) {
      lines += progressLine({2, 5, pages, 1000, 7, elapsed}) + "\n";
    }
  }
  lines += progressLine({5, 5, 1200, 1000, 7, 9s}) + "\n";
  const ComparisonCounts counts[] = {
      {0, 1, 10, 0, 0},       {129, 3, 10, 1, 0},    {524416, 3, 10, 6, 1}, {524288, 3, 1, 1, 12},
      {1048576, 0, 0, 0, 20}, {1048704, 1, 5, 2, 9}, {1048576, 2, 5, 0, 9}, {2097152, 0, 0, 0, 20},
  };
  for (const ComparisonCounts& found : counts) lines += resultLine(found) + "\n";
  test::expectFrozen("operator-lines.txt", lines);
}

TEST(FailureLog, NamesEachReasonOnceAndTenPlaces) {
  MessageReporter reporter;
  FailureLog log;
  reporter.attachListener(&log);
  EXPECT_TRUE(log.isEmpty());
  reporter.Report(MessageNumber::kConverterNotOpened, u"no loss");
  EXPECT_EQ(log.text(), "");
  reporter.Report(MessageNumber::kSinkWriteFailed, u"a", u"full");
  reporter.Report(MessageNumber::kArchiveWriteFailed, u"b", u"full", 7);
  reporter.Report(MessageNumber::kArchiveCloseFailed, u"c", u"lost");
  for (const i32 bytes : {8, 9})
    reporter.Report(MessageNumber::kFileReadFailed, bytes, u"d", u"bad");
  reporter.Report(MessageNumber::kFileWriteFailed, 8, u"e", u"full");
  reporter.Report(MessageNumber::kFileCloseFailed, u"f", u"lost");
  reporter.Report(MessageNumber::kFileSeekFailed, u"g");
  log.add(u"h", u"known \x1F\x7F better \x80\x9F\xA0\xE9", u"role");
  reporter.Report(MessageNumber::kFileUnusable, u"h", u"not told");
  reporter.Report(MessageNumber::kFileUnusable, u"", u"alone");
  for (const char16_t* file : {u"i", u"j", u"k"})
    reporter.Report(MessageNumber::kFileSeekFailed, file);
  log.countDamage(10);
  for (int i = 0; i < 11; ++i) log.addDamage(u"l", u"offset 1");
  const std::string ten = log.text();
  log.countDamage(1);
  EXPECT_FALSE(log.isEmpty());
  test::expectFrozen("failures.txt", ten + "...\n" + log.text().substr(ten.size()));
}

}  // namespace
}  // namespace rvf
