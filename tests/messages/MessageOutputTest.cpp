#include "messages/MessageOutput.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "messages/CatalogueFixture.h"
#include "text/TextSink.h"

namespace rvf {
namespace {

using ::testing::internal::CaptureStderr;
using ::testing::internal::CaptureStdout;
using ::testing::internal::GetCapturedStderr;
using ::testing::internal::GetCapturedStdout;

constexpr auto kWarn = static_cast<MessageNumber>(20);
constexpr auto kError = static_cast<MessageNumber>(30);
constexpr auto kSevere = static_cast<MessageNumber>(40);
constexpr auto kInform = static_cast<MessageNumber>(50);
constexpr auto kUnknown = static_cast<MessageNumber>(60);

constexpr std::string_view kTexts =
    "#define A 20 // W|0|0|warning |1| and |2|\n"
    "#define B 30 // E|0|0|error |1|\n"
    "#define C 40 // S|0|0|severe |1|\n"
    "#define D 50 // I|0|0|information\n"
    "#define E 1000 // I|0|0|run information\n"
    "#define F 1806 // S|0|0|sink |1|: |2|\n";

/// A report of lines that can be told to fail, as a full disk does.
class RecordingSink final : public TextSink {
 public:
  explicit RecordingSink(MessageReporter& reporter)
      : TextSink(SinkKind::kFile, u"report.dat"), reporter_(reporter) {}

  bool fails = false;
  std::vector<std::string> lines;

 protected:
  i32 deliver(std::u16string_view text) override {
    if (fails) {
      reporter_.Report(MessageNumber::kFileWriteFailed, text.size(), name(), u"full");
      reporter_.Report(MessageNumber::kSinkWriteFailed, name(), u"full");
      return 0;
    }
    lines.push_back(toNative(text.substr(0, text.size() - lineEnd().size())));
    return 1;
  }

 private:
  MessageReporter& reporter_;
};

using Lines = std::vector<std::string>;

class MessageOutputTest : public ::testing::Test {
 protected:
  MessageOutputTest() { reporter.attachBackEnd(&output); }
  ~MessageOutputTest() override { onlyFirstOccurrence = 0; }

  void useTexts(std::string_view texts = kTexts) {
    test::useCatalogue(output.catalogue(), folder, std::string(test::kHead) + std::string(texts));
    reporter.AttachReportSink(&sink);
  }
  void noCatalogue() {
    output.catalogue().SetMessageFile(fromNative(folder.path("none.dat")));
    reporter.AttachReportSink(&sink);
  }
  /// The lines that a flush, or a call behind it, has added.
  Lines takeLines() { return std::exchange(sink.lines, {}); }
  Lines flushedLines() {
    reporter.FlushMessages();
    return takeLines();
  }

  test::TempFolder folder;
  MessageReporter reporter;
  MessageOutput output{reporter};
  RecordingSink sink{reporter};
};

TEST_F(MessageOutputTest, FlushWritesTheHeldMessagesInTheirOrder) {
  reporter.Report(kSevere, u"before the sink");
  useTexts();
  reporter.Report(kWarn, u"a", 2);
  reporter.Report(kWarn, u"only one");
  reporter.Report(kWarn, 1, u"");
  reporter.Report(kWarn, u"", u"b");
  reporter.Report(kInform);
  reporter.Report(kUnknown, u"a", u"b");
  EXPECT_TRUE(takeLines().empty());
  EXPECT_EQ(reporter.tally.highestSeverity, 0);
  EXPECT_EQ(flushedLines(), (Lines{
                                "QZ000040S (1) severe before the sink",
                                "QZ000020W (1) warning a and 2",
                                "QZ000020W (2) warning only one and |2|",
                                // An empty argument ends the substitution ...
                                "QZ000020W (3) warning 1 and |2|",
                                // ... and as the first one it leaves all placeholders.
                                "QZ000020W (4) warning |1| and |2|",
                                "QZ000050I (1) information",
                                "QZ009999W (1) Message a not found. b |3| |4| |5|",
                            }));
  EXPECT_EQ(reporter.tally.warningCount, 5);
  EXPECT_TRUE(reporter.pending().empty());
}

TEST_F(MessageOutputTest, TheFirstMessageHeldBackEndsTheFlush) {
  useTexts("#define A 20 // W|0|2|a |1|\n#define B 30 // S|0|0|b |1|\n");
  for (const char16_t* argument : {u"1", u"2", u"3"}) {
    reporter.Report(kWarn, argument);
  }
  reporter.Report(kError, u"never written");
  EXPECT_EQ(flushedLines(), (Lines{"QZ000020W (1) a 1", "QZ000020W (2) a 2"}));
  EXPECT_EQ(reporter.tally.highestSeverity, 4);
  EXPECT_EQ(reporter.pending().size(), 1U);
  // What a flush left behind stays unwritten, while later calls go out at once.
  CaptureStderr();
  output.printHeldMessages();
  EXPECT_EQ(GetCapturedStderr(), "");
  reporter.Report(kError, u"later");
  EXPECT_EQ(takeLines(), (Lines{"QZ000030S (1) b later"}));
}

TEST_F(MessageOutputTest, CallsBehindTheFlushGoOutAtOnce) {
  useTexts();
  EXPECT_TRUE(flushedLines().empty());
  reporter.Report(kWarn, u"a", u"b");
  reporter.Report(kWarn, u"a", 2);    // an integer form counts its occurrence twice
  reporter.Report(kWarn, u"", u"b");  // here an empty argument is an argument
  reporter.Report(kWarn, static_cast<const char16_t*>(nullptr), u"b");
  reporter.Report(kWarn);
  reporter.Report(kUnknown);
  EXPECT_EQ(takeLines(), (Lines{
                             "QZ000020W (1) warning a and b",
                             "QZ000020W (3) warning a and 2",
                             "QZ000020W (4) warning  and b",
                             "QZ000020W (5) warning  and b",
                             "QZ000020W (6) warning |1| and |2|",
                             "QZ009999W (1) Message |1| not found. |2| |3| |4| |5|",
                         }));
  EXPECT_EQ(reporter.callCount(), 6);
}

TEST_F(MessageOutputTest, FilterByLevelAndOccurrence) {
  struct Row {
    i32 levelFilter;
    i32 onlyFirst;
    bool disabled;
    std::string letters;  // of the lines that get through
  };
  const Row rows[] = {
      {0, 0, false, "WWESIIW"}, {1, 0, false, "WWESIW"}, {2, 0, false, "ESI"},
      {3, 0, false, "ESI"},     {0, 1, false, "WESIIW"}, {0, 0, true, ""},
  };
  for (const Row& row : rows) {
    MessageOutput fresh(reporter);
    test::useCatalogue(fresh.catalogue(), folder, std::string(test::kHead) + std::string(kTexts));
    reporter.attachBackEnd(&fresh);
    reporter.AttachReportSink(&sink);
    reporter.FlushMessages();
    reporter.levelFilter = row.levelFilter;
    onlyFirstOccurrence = row.onlyFirst;
    reporter.reportingDisabled = row.disabled;
    for (const MessageNumber number :
         {kWarn, kWarn, kError, kSevere, kInform, MessageNumber::kInformation, kUnknown}) {
      reporter.Report(number, u"x");
    }
    std::string letters;
    for (const std::string& line : takeLines()) {
      letters += line.at(8);
    }
    EXPECT_EQ(letters, row.letters);
  }
}

TEST_F(MessageOutputTest, TallyBySeverity) {
  struct Row {
    MessageNumber number;
    i32 level, warnings, errors, severes;
    i32 highestStopLevel;  // up to which the message raises the stop flag
  };
  const Row rows[] = {{kInform, 0, 0, 0, 0, -1},
                      {kUnknown, 4, 1, 0, 0, 0},
                      {kError, 8, 0, 1, 0, 1},
                      {kSevere, 12, 0, 1, 1, 2}};
  useTexts();
  reporter.FlushMessages();
  for (const Row& row : rows) {
    for (i32 stopLevel = 0; stopLevel <= 3; ++stopLevel) {
      reporter.tally = {};
      reporter.tally.stopLevel = stopLevel;
      reporter.Report(row.number, u"x");
      const MessageTally& tally = reporter.tally;
      EXPECT_EQ((std::vector{tally.highestSeverity, tally.warningCount, tally.errorCount,
                             tally.severeCount}),
                (std::vector{row.level, row.warnings, row.errors, row.severes}));
      EXPECT_EQ(tally.stopFlag, stopLevel <= row.highestStopLevel);
    }
  }
  // The mark only rises, and the exit value of a severe record stands above it.
  reporter.Report(kWarn, u"x");
  EXPECT_EQ(reporter.tally.effectiveSeverity(), 12);
  output.catalogue().findRecord(40)->exitValue = 3;
  reporter.Report(kSevere, u"x");
  EXPECT_EQ(reporter.tally.effectiveSeverity(), 3);
}

TEST_F(MessageOutputTest, FailingSinkIsToldOnStandardErrorOnly) {
  useTexts();
  // Raised by the banner, while messages are still held.
  reporter.Report(MessageNumber::kSinkWriteFailed, u"report.dat", u"full");
  reporter.Report(MessageNumber::kSinkWriteFailed, u"other.dat", u"full");
  CaptureStderr();
  EXPECT_EQ(flushedLines(), (Lines{"QZ001806S (2) sink other.dat: full"}));
  EXPECT_EQ(GetCapturedStderr(), "QZ001806S (1) sink report.dat: full\n");
  // Raised while a line is being written: no endless recursion, and the line is not lost.
  sink.fails = true;
  CaptureStderr();
  reporter.Report(kWarn, u"a", eString(u'x', 200));
  EXPECT_EQ(GetCapturedStderr(),
            "QZ009999W (2) Message 30 not found. report.dat full |4| |5|\n"
            "QZ001806S (3) sink report.dat: full\n"
            "QZ000020W (1) warning a and " +
                std::string(200, 'x') + "\n");
  EXPECT_EQ(reporter.tally.severeCount, 3);
  sink.fails = false;
  reporter.Report(kError, u"the disk has space again");
  EXPECT_EQ(takeLines(), (Lines{"QZ000030E (1) error the disk has space again"}));
}

TEST_F(MessageOutputTest, HeldMessagesOfARunThatEndsBeforeTheFlush) {
  useTexts();
  reporter.Report(kError, eString(u'x', 200));
  reporter.Report(kError, u"\u00E9");
  CaptureStderr();
  CaptureStdout();
  output.printHeldMessages();
  EXPECT_EQ(GetCapturedStdout(), "");
  EXPECT_EQ(GetCapturedStderr(),
            "QZ000030E (1) error " + std::string(200, 'x') + "\nQZ000030E (2) error \xC3\xA9\n");
  // Nothing reaches the report or the tally, calls are held on, and none is printed twice.
  reporter.Report(kWarn, u"a", u"b");
  CaptureStderr();
  output.printHeldMessages();
  EXPECT_EQ(GetCapturedStderr(), "QZ000020W (1) warning a and b\n");
  EXPECT_TRUE(takeLines().empty());
  EXPECT_EQ(reporter.tally.highestSeverity, 0);
}

TEST_F(MessageOutputTest, WithoutACatalogueMessagesGoToStandardError) {
  noCatalogue();
  const std::string notFound =
      "The error message file - " + folder.path("none.dat") + " - could not be found.\n";
  reporter.Report(kWarn, u"a", 2);
  reporter.Report(kSevere, u"");
  CaptureStderr();
  CaptureStdout();
  EXPECT_TRUE(flushedLines().empty());
  EXPECT_EQ(GetCapturedStdout(), notFound);
  EXPECT_EQ(GetCapturedStderr(), "QZ000020: \"a\", \"2\"\nQZ000040\n");
  EXPECT_EQ(reporter.tally.highestSeverity, 0);
  // Later ones are held; the end of the run can print them.
  reporter.Report(kError, u"late");
  CaptureStderr();
  output.printHeldMessages();
  EXPECT_EQ(GetCapturedStderr(), "QZ000030: \"late\"\n");
}

}  // namespace
}  // namespace rvf
