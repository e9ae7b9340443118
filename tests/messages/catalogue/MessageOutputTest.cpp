#include "messages/catalogue/MessageOutput.h"

#include <gtest/gtest.h>

#include <regex>

#include "messages/ProcessEnd.h"
#include "support/FrozenText.h"
#include "support/TempFolder.h"
#include "text/NativeText.h"
#include "text/encoding/TextSink.h"

namespace rvf {
namespace {

constexpr auto kWarn = MessageNumber{20}, kError = MessageNumber{30}, kSevere = MessageNumber{40},
               kInform = MessageNumber{50}, kUnknown = MessageNumber{60};
constexpr std::string_view kTexts =
    "// test\n#define MESS_SYMB_VER 1602008\n"
    "#define A 20 // W|0|0|warning |1| and |2|\n"
    "#define B 30 // E|0|0|error |1|\n"
    "#define C 40 // S|0|2|severe |1|\n"
    "#define D 50 // I|0|0|information\n"
    "#define E 1000 // I|0|0|always shown\n"
    "#define F 1806 // S|0|0|sink |1|: |2|\n"
    "#define G 1903 // W|0|0|file |1|: |2|\n";

class RecordingSink final : public TextSink {
 public:
  RecordingSink() : TextSink(SinkKind::kFile, u"report.dat") { setBareLineFeed(true); }

  MessageReporter* failsTo = nullptr;  // receives the failure while the disk is full
  std::string lines;

 protected:
  i32 deliver(std::u16string_view text, Conversion) override {
    if (failsTo != nullptr) {
      failsTo->Report(MessageNumber::kSinkWriteFailed, u"other.dat", u"full");
      return 0;
    }
    lines += toNative(text);
    return 1;
  }
};

class MessageOutputTest : public ::testing::Test {
 protected:
  MessageOutputTest() {
    output.catalogue().SetMessageFile(fromNative(folder.write("catalogue.dat", kTexts)));
    reporter.attachBackEnd(&output);
    reporter.AttachReportSink(&sink);
  }
  /// The lines added by a flush or a later call.
  std::string takeLines() { return std::exchange(sink.lines, {}); }
  static std::string printedBy(const auto& action) {
    ::testing::internal::CaptureStderr();
    action();
    return ::testing::internal::GetCapturedStderr();
  }

  test::TempFolder folder;
  MessageReporter reporter;
  MessageOutput output{reporter};
  RecordingSink sink;
};

TEST_F(MessageOutputTest, FlushWritesTheHeldMessagesInTheirOrder) {
  reporter.reportUnchecked(kSevere, u"first");
  reporter.reportUnchecked(kWarn, u"a", 2);
  reporter.reportUnchecked(kWarn, u"only one");
  reporter.reportUnchecked(kWarn, u"", u"b");
  reporter.reportUnchecked(kInform);
  reporter.reportUnchecked(kUnknown, u"a", u"b");
  EXPECT_EQ(takeLines(), "");
  reporter.FlushMessages();
  EXPECT_EQ(takeLines(),
            "QZ000040S (1) severe first\n"
            "QZ000020W (1) warning a and 2\n"
            "QZ000020W (2) warning only one and |2|\n"
            "QZ000020W (3) warning |1| and |2|\n"  // quirk: an empty argument ends the substitution
            "QZ000050I (1) information\n"
            "QZ009999W (1) Message a not found. b |3| |4| |5|\n");
  // After the flush, calls are written at once, and there an empty argument is an argument.
  reporter.reportUnchecked(kWarn, u"a", 2);  // quirk: an integer form counts its occurrence twice
  reporter.reportUnchecked(kWarn, u"", u"b");
  reporter.reportUnchecked(kWarn, static_cast<const char16_t*>(nullptr), u"b");
  reporter.reportUnchecked(kWarn);
  EXPECT_EQ(takeLines(),
            "QZ000020W (5) warning a and 2\n"
            "QZ000020W (6) warning  and b\n"
            "QZ000020W (7) warning  and b\n"
            "QZ000020W (8) warning |1| and |2|\n");
  EXPECT_TRUE(reporter.callCount() == 10 && reporter.tally.warningCount == 8);
}

TEST_F(MessageOutputTest, TheFirstMessageHeldBackEndsTheFlush) {
  for (const char16_t* argument : {u"1", u"2", u"3"}) reporter.reportUnchecked(kSevere, argument);
  reporter.reportUnchecked(kError, u"never written");
  reporter.FlushMessages();
  EXPECT_EQ(printedBy([this] { output.printHeldMessages(); }), "");
  reporter.reportUnchecked(kError, u"later");
  EXPECT_EQ(takeLines(),
            "QZ000040S (1) severe 1\nQZ000040S (2) severe 2\nQZ000030E (1) error later\n");
  const MessageTally& t = reporter.tally;
  EXPECT_EQ(t.highestSeverity, 12);
  EXPECT_EQ(t.errorCount, 3);
  EXPECT_EQ(t.severeCount, 2);
}

// What is written and tallied under each setting that has no option.
TEST_F(MessageOutputTest, SettingsOfTheReporter) {
  const auto reportAll = [this] {
    for (const MessageNumber number :
         {kInform, kWarn, kError, kSevere, MessageNumber::kInformation}) {
      reporter.reportUnchecked(number, u"x");
    }
    const MessageTally& t = reporter.tally;
    std::string all = takeLines();
    for (const i32 value : {t.highestSeverity, t.sectionSeverity, i32{t.stopFlag}, t.exitOverride,
                            t.severeCount, t.errorCount, t.warningCount}) {
      all += std::to_string(value) + " ";
    }
    reporter.tally = {};
    return all + "\n";
  };
  reporter.FlushMessages();
  onlyFirstOccurrence = 1;
  std::string all = "first occurrences\n" + reportAll() + "second ones\n";
  all += reportAll();
  onlyFirstOccurrence = 0;
  reporter.overrides = {
      {kInform, u'W', 1, 9, false}, {kError, u'?', 1, 0, true}, {kWarn, 0, 1, 4, false}};
  reporter.FlushMessages();
  all += "overridden\n" + reportAll();
  reporter.overrides = {{kInform, u'I', 1, 0, false},
                        {kError, 0, 1, 0, false},
                        {kWarn, 0, 1, 0, false},
                        {kSevere, 0, 1, 0, false}};
  reporter.FlushMessages();
  for (i32 i = 0; i < 4; ++i) {
    reporter.levelFilter = i;
    reporter.tally.stopLevel = i;
    all += "level " + std::to_string(i) + "\n" + reportAll();
  }
  reporter.levelFilter = 0;
  reporter.reportingDisabled = true;
  all += "disabled\n" + reportAll();
  reporter.reportingDisabled = false;
  reporter.directOutput = false;
  all += "stored\n" + reportAll();
  all += std::to_string(reporter.storedMessages.size()) + "\n";
  reporter.directOutput = reporter.structuredForm = true;
  reporter.structuredSink = &sink;
  all += "structured\n" + reportAll();
  test::expectFrozen("message-settings.txt", all);
  reporter.timePrefix = true;
  reporter.reportUnchecked(kError, u"x");
  EXPECT_TRUE(std::regex_search(takeLines(), std::regex("^[0-2]\\d:[0-5]\\d:[0-5]\\d QZ000030E")));
}

// Data loss makes the run fail, even if the flush does not reach the message, after the flush, and
// without a record; but a catalogue that makes it a warning overrules this.
TEST_F(MessageOutputTest, LossCountsUnlessTheCatalogueSaysOtherwise) {
  const std::pair<std::string, i32> cases[] = {{"w|", 4},   {"l|", 12}, {"h|", 0},  {"hw|", 0},
                                               {"hl|", 12}, {"h|w", 4}, {"h|l", 12}};
  for (const auto& [steps, severity] : cases) {
    MessageReporter fresh;
    MessageOutput its(fresh);
    its.catalogue().SetMessageFile(fromNative(folder.path("catalogue.dat")));
    fresh.attachBackEnd(&its);
    fresh.AttachReportSink(&sink);
    fresh.overrides = {{kInform, 0, 0, 0, true}};
    for (const char step : steps) {
      if (step == 'h') fresh.reportUnchecked(kInform);  // held back
      if (step == 'l') fresh.Report(MessageNumber::kFileSeekFailed, u"f");
      if (step == 'w') fresh.Report(MessageNumber::kFileUnusable, u"f", u"r");
      if (step == '|') fresh.FlushMessages();
    }
    EXPECT_EQ(fresh.tally.highestSeverity, severity) << steps;
  }
}

TEST(MessageReporter, HandsOverItsMessagesAndResets) {
  MessageReporter& reporter = messageReporter;
  reporter.reset();
  reporter.setLocation(7, u"input");
  reporter.Report(MessageNumber::kRecordTooNew, u"DRAWLIST", 108, 107);
  reporter.clearLocation();
  reporter.reportUnchecked(kWarn, 2.5, static_cast<const char16_t*>(nullptr));
  std::deque<MessageEntry> taken = reporter.takePending();
  ASSERT_EQ(taken.size(), 2U);
  EXPECT_EQ(taken[0].number, MessageNumber::kRecordTooNew);
  EXPECT_EQ(taken[0].arguments[1], u"108");
  EXPECT_EQ(taken[0].location, 7);
  EXPECT_EQ(taken[0].locationName, u"input");
  EXPECT_FALSE(taken[1].hasLocation);
  EXPECT_EQ(taken[1].arguments[0], u"2");
  EXPECT_EQ(reporter.messageCount(), 2);
  muteAllMessages = 1;
  EXPECT_EQ(reporter.reportUnchecked(kWarn), 0);
  reporter.reset();
  EXPECT_EQ(reporter.callCount() + muteAllMessages + reporter.messageCount(), 0);
  EXPECT_FALSE(reporter.FlushMessages()) << "nobody stands behind it";
}

TEST(Severity, HasNamesAndDisplayNumbers) {
  std::string names;
  for (const char16_t letter : {u'I', u'W', u'E', u'S', u'x'}) {
    names += toNative(severityName(letter)) + std::to_string(severityDisplayNumber(letter)) + " ";
  }
  for (i32 i = 0; i <= 6; ++i) names += toNative(severityDisplayName(i)) + ",";
  EXPECT_EQ(names,
            "Information2 Warning3 Error4 Severe Error5 2 "
            "Unknown,No Change,Information,Warning,Error,Severe Error,Unknown,");
}

TEST_F(MessageOutputTest, FailingSinkIsToldOnStandardErrorOnly) {
  reporter.FlushMessages();
  // Reported while a line is being written: no endless recursion, and the line is not lost.
  sink.failsTo = &reporter;
  EXPECT_EQ(printedBy([this] { reporter.reportUnchecked(kError, u"x"); }),
            "QZ001806S (1) sink other.dat: full\nQZ000030E (1) error x\n");
  sink.failsTo = nullptr;
  const auto tell = [this] { reporter.Report(MessageNumber::kSinkWriteFailed, sink.name(), u""); };
  EXPECT_EQ(printedBy(tell), "QZ001806S (2) sink report.dat: \n");
}

TEST_F(MessageOutputTest, MessagesOfARunWithoutFlushOrCatalogue) {
  const auto print = [this] { output.printHeldMessages(); };
  reporter.reportUnchecked(kWarn, fromNative(std::string(200, 'x')), u"b");
  EXPECT_EQ(printedBy(print), "QZ000020W (1) warning " + std::string(200, 'x') + " and b\n");
  EXPECT_EQ(printedBy(print), "");
  output.catalogue().SetMessageFile(fromNative(folder.path("none.dat")));
  reporter.reportUnchecked(kSevere, u"a", 2);
  EXPECT_EQ(printedBy(print), "The error message file - " + folder.path("none.dat") +
                                  " - could not be found.\nQZ000040: \"a\", \"2\"\n");
}

TEST(ProcessEnd, EndsWithFailure) { EXPECT_EXIT(endProcess(), testing::ExitedWithCode(255), ""); }

}  // namespace
}  // namespace rvf
