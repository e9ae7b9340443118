#include "messages/catalogue/MessageOutput.h"

#include <gtest/gtest.h>

#include <utility>

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
    "#define F 1806 // S|0|0|sink |1|: |2|\n";

class RecordingSink final : public TextSink {
 public:
  RecordingSink() : TextSink(SinkKind::kFile, u"report.dat") { setBareLineFeed(true); }

  MessageReporter* failsTo = nullptr;  // who is told of a full disk, while there is one
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
  /// The lines that a flush, or a call behind it, has added.
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
            "QZ000020W (3) warning |1| and |2|\n"  // quirk: an empty one ends the substitution
            "QZ000050I (1) information\n"
            "QZ009999W (1) Message a not found. b |3| |4| |5|\n");
  // Behind the flush calls go out at once, and there an empty argument is an argument.
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
  EXPECT_TRUE(t.highestSeverity == 12 && t.errorCount == 3 && t.severeCount == 2);
}

TEST_F(MessageOutputTest, FailingSinkIsToldOnStandardErrorOnly) {
  reporter.FlushMessages();
  // Raised while a line is being written: no endless recursion, and the line is not lost.
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

}  // namespace
}  // namespace rvf
