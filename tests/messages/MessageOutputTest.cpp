#include "messages/MessageOutput.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

#include "messages/CatalogueFixture.h"
#include "text/TextSink.h"

namespace rvf {
namespace {

constexpr auto kWarn = MessageNumber{20}, kError = MessageNumber{30}, kSevere = MessageNumber{40},
               kInform = MessageNumber{50}, kUnknown = MessageNumber{60};
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
  ~MessageOutputTest() override { onlyFirstOccurrence = 0; }

  void useTexts(std::string_view texts = kTexts) {
    test::useCatalogue(output.catalogue(), folder, std::string(test::kHead) + std::string(texts));
    reporter.attachBackEnd(&output);
    reporter.AttachReportSink(&sink);
  }
  /// The lines that a flush, or a call behind it, has added.
  Lines takeLines() { return std::exchange(sink.lines, {}); }
  Lines flushedLines() {
    reporter.FlushMessages();
    return takeLines();
  }
  /// What the action prints on standard error, and on standard output before a bar.
  static std::string printedBy(const auto& action) {
    ::testing::internal::CaptureStderr();
    ::testing::internal::CaptureStdout();
    action();
    const std::string out = ::testing::internal::GetCapturedStdout();
    return (out.empty() ? "" : out + "|") + ::testing::internal::GetCapturedStderr();
  }
  std::string printedHeld() {
    return printedBy([this] { output.printHeldMessages(); });
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
  EXPECT_EQ(
      flushedLines(),
      (Lines{"QZ000040S (1) severe before the sink", "QZ000020W (1) warning a and 2",
             "QZ000020W (2) warning only one and |2|",
             // Quirk: an empty argument ends the substitution.
             "QZ000020W (3) warning 1 and |2|", "QZ000020W (4) warning |1| and |2|",
             "QZ000050I (1) information", "QZ009999W (1) Message a not found. b |3| |4| |5|"}));
  EXPECT_EQ(reporter.tally.warningCount, 5);
  // Behind the flush calls go out at once, and there an empty argument is an argument.
  reporter.Report(kWarn, u"a", u"b");
  reporter.Report(kWarn, u"a", 2);  // quirk: an integer form counts its occurrence twice
  reporter.Report(kWarn, u"", u"b");
  reporter.Report(kWarn, static_cast<const char16_t*>(nullptr), u"b");
  reporter.Report(kWarn);
  EXPECT_EQ(takeLines(), (Lines{"QZ000020W (5) warning a and b", "QZ000020W (7) warning a and 2",
                                "QZ000020W (8) warning  and b", "QZ000020W (9) warning  and b",
                                "QZ000020W (10) warning |1| and |2|"}));
  EXPECT_EQ(reporter.callCount(), 12);
}

TEST_F(MessageOutputTest, TheFirstMessageHeldBackEndsTheFlush) {
  useTexts("#define A 20 // W|0|2|a |1|\n#define B 30 // S|0|0|b |1|\n");
  for (const char16_t* argument : {u"1", u"2", u"3"}) reporter.Report(kWarn, argument);
  reporter.Report(kError, u"never written");
  EXPECT_EQ(flushedLines(), (Lines{"QZ000020W (1) a 1", "QZ000020W (2) a 2"}));
  EXPECT_EQ(reporter.tally.highestSeverity, 4);
  EXPECT_EQ(reporter.pending().size(), 1U);
  EXPECT_EQ(printedHeld(), "");
  reporter.Report(kError, u"later");
  EXPECT_EQ(takeLines(), (Lines{"QZ000030S (1) b later"}));
}

TEST_F(MessageOutputTest, FilterByLevelAndOccurrence) {
  useTexts();
  reporter.FlushMessages();
  const auto letters = [this] {  // of the lines that get through
    for (const MessageNumber number :
         {kWarn, kError, kSevere, kInform, MessageNumber::kInformation, kUnknown}) {
      reporter.Report(number, u"x");
    }
    std::string found;
    for (const std::string& line : takeLines()) found += line.at(8);
    return found;
  };
  onlyFirstOccurrence = 1;
  EXPECT_EQ(letters() + letters(), "WESIIW");
  onlyFirstOccurrence = 0;
  const char* const byLevel[] = {"WESIIW", "WESIW", "ESI", "ESI"};
  for (; reporter.levelFilter <= 3; ++reporter.levelFilter) {
    EXPECT_EQ(letters(), byLevel[reporter.levelFilter]);
  }
  reporter.reportingDisabled = true;
  EXPECT_EQ(letters(), "");
}

TEST_F(MessageOutputTest, TallyBySeverity) {
  useTexts();
  reporter.FlushMessages();
  // Highest severity, warnings, errors, severe ones; the lowest stop level that is not reached.
  const std::pair<MessageNumber, std::array<i32, 5>> rows[] = {{kInform, {0, 0, 0, 0, 0}},
                                                               {kUnknown, {4, 1, 0, 0, 1}},
                                                               {kError, {8, 0, 1, 0, 2}},
                                                               {kSevere, {12, 0, 1, 1, 3}}};
  MessageTally& t = reporter.tally;
  for (const auto& [number, expected] : rows) {
    for (i32 stopLevel = 0; stopLevel <= 3; ++stopLevel) {
      t = {.stopLevel = stopLevel};
      reporter.Report(number, u"x");
      EXPECT_EQ((std::array{t.highestSeverity, t.warningCount, t.errorCount, t.severeCount}),
                (std::array{expected[0], expected[1], expected[2], expected[3]}));
      EXPECT_EQ(t.stopFlag, stopLevel < expected[4]);
    }
  }
  reporter.Report(kWarn, u"x");
  EXPECT_EQ(t.effectiveSeverity(), 12);  // it only rises
  output.catalogue().findRecord(40)->exitValue = 3;
  reporter.Report(kSevere, u"x");
  EXPECT_EQ(t.effectiveSeverity(), 3);
}

TEST_F(MessageOutputTest, FailingSinkIsToldOnStandardErrorOnly) {
  useTexts();
  // Raised by the banner, while messages are still held.
  reporter.Report(MessageNumber::kSinkWriteFailed, u"report.dat", u"full");
  reporter.Report(MessageNumber::kSinkWriteFailed, u"other.dat", u"full");
  EXPECT_EQ(printedBy([this] { reporter.FlushMessages(); }),
            "QZ001806S (1) sink report.dat: full\n");
  EXPECT_EQ(takeLines(), (Lines{"QZ001806S (2) sink other.dat: full"}));
  // Raised while a line is being written: no endless recursion, and the line is not lost.
  sink.fails = true;
  const std::string rest(200, 'x');
  EXPECT_EQ(printedBy([&] { reporter.Report(kWarn, u"a", fromNative(rest)); }),
            "QZ009999W (2) Message 30 not found. report.dat full |4| |5|\n"
            "QZ001806S (3) sink report.dat: full\n"
            "QZ000020W (1) warning a and " +
                rest + "\n");
  EXPECT_EQ(reporter.tally.severeCount, 3);
  sink.fails = false;
  reporter.Report(kError, u"the disk has space again");
  EXPECT_EQ(takeLines(), (Lines{"QZ000030E (1) error the disk has space again"}));
}

TEST_F(MessageOutputTest, MessagesOfARunWithoutFlushOrCatalogue) {
  useTexts();
  const std::string word(200, 'x');
  reporter.Report(kError, fromNative(word));
  reporter.Report(kError, u"\u00E9");
  EXPECT_EQ(printedHeld(), "QZ000030E (1) error " + word + "\nQZ000030E (2) error \xC3\xA9\n");
  // Calls are held on, none is printed twice, and nothing reaches the report or the tally.
  reporter.Report(kWarn, u"a", u"b");
  EXPECT_EQ(printedHeld(), "QZ000020W (1) warning a and b\n");
  EXPECT_TRUE(takeLines().empty() && reporter.tally.highestSeverity == 0);

  reporter = MessageReporter();
  MessageOutput bare(reporter);
  bare.catalogue().SetMessageFile(fromNative(folder.path("none.dat")));
  reporter.attachBackEnd(&bare);
  reporter.AttachReportSink(&sink);
  reporter.Report(kWarn, u"a", 2);
  reporter.Report(kSevere, u"");
  EXPECT_EQ(printedBy([this] { reporter.FlushMessages(); }),
            "The error message file - " + folder.path("none.dat") + " - could not be found.\n|" +
                "QZ000020: \"a\", \"2\"\nQZ000040\n");
  EXPECT_TRUE(takeLines().empty() && reporter.tally.highestSeverity == 0);
  reporter.Report(kError, u"late");
  EXPECT_EQ(printedBy([&] { bare.printHeldMessages(); }), "QZ000030: \"late\"\n");
}

}  // namespace
}  // namespace rvf
