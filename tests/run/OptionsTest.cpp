#include <gtest/gtest.h>

#include "messages/MessageReporter.h"
#include "run/OptionLine.h"
#include "run/OptionTable.h"
#include "support/FrozenText.h"
#include "support/TempFolder.h"
#include "text/NativeText.h"

namespace rvf::test {
namespace {

/// All settings, one word each.
Rows settingsOf(const RunOptions& o) {
  const auto text = [](const eString& value) { return "'" + toNative(value.view()) + "'"; };
  return {"first " + text(o.firstFile),
          "second " + text(o.secondFile),
          "difference " + text(o.differenceFile),
          "messages " + text(o.messageFile),
          "position " + std::to_string(o.tolerances.positionTolerance),
          "line " + std::to_string(o.tolerances.lineTolerance),
          "encoding " + std::to_string(o.msgEncoding),
          "simple " + std::to_string(o.simpleReturn),
          "dbcs " + std::to_string(o.dbcsMode),
          "controls " + std::to_string(o.controlFiles.size()),
          "read as " + std::to_string(controlFileEncodingId(o.controlFileEncoding))};
}

// Each line, applied to the settings of a new run: what it changes, and what the operator is told.
TEST(Options, UnderstandExactlyTheLinesOfTheTable) {
  const std::size_t before = messageReporter.pending().size();
  std::string all;
  for (const std::string line :
       {"", "   \t", "% a comment", "  * a comment", "-SIMPLERETURN", " /simpleReturn \t ",
        "-compare=a.rvf,", "-COMPARE= a,b , c ", "-DIFFTOLERANCE=7", "/POS_TOLERANCE=5",
        "-LINE_TOLERANCE=+5", "-POS_TOLERANCE= -12", "-POS_TOLERANCE=7 8", "-POS_TOLERANCE=3.9",
        "-POS_TOLERANCE=x", "-POS_TOLERANCE=- 5", "-POS_TOLERANCE=0x1", "-POS_TOLERANCE=05",
        "-POS_TOLERANCE=2147483648", "-POS_TOLERANCE=-99999999999999999999999999",
        "-DIFFERENCEFILE=d e", "-MESSAGEFILE=", "-CONTROLFILE=c", "-DBCS_MODE=", "-DBCS_MODE=true",
        "-DBCS_MODE=no", "-DBCS_MODE=YES", "-CONTROLFILEENCODING=UTF8", "-CONTROLFILEENCODING=utf8",
        "-CONTROLFILEENCODING=ISO88591", "-MSGENCODE=UTF16", "-MSGENCODE=utf16le",
        "-MSGENCODE=Utf16Be", "-MSGENCODE=ASCII", "-MSGENCODE=EBCDIC", "-MSGENCODE=UTF8",
        "-MSGENCODE=LATIN1", "-MSGENCODE=LATIN2", "-MSGENCODE=ISO88592", "-MSGENCODE=SJIS",
        "-MSGENCODE=BIG5", "-MSGENCODE=UTF-8",
        // not understood
        "\t-SIMPLERETURN", "word", "-", "-=", "-=5", "--SIMPLERETURN", "-SIMPLERETURN=1",
        "-SIMPLERETURN=", "-COMPARE", "-COMPARE=", "-COMPARE=a.rvf", "-COMPARE=,b.rvf",
        "-COMPARE =a,b", "- COMPARE=a,b", "-COMPARES=a,b", "-POS_TOLERANCE", "-POS_TOLERENCE=5",
        "-TOLERANCE=5", "-MSGFILE=x", "-FOO=1", "-OCMPR=a,b", "-ISMPLERETURN", "-BCS_MODE=TRUE",
        "--help", "/VERSION",
        "-AN_OPTION_OF_SOMETHING_ELSE_THAT_IS_LONGER_THAN_ANY_MISSPELLING_CAN_BE=1"}) {
    RunOptions options;
    const Rows usual = settingsOf(options);
    all += "\"" + line + "\"";
    if (!options.parseOption(fromNative(line))) {
      all += ": " + toNative(explainBadOption(fromNative(line)).view());
    }
    for (const std::string& setting : settingsOf(options)) {
      if (std::ranges::find(usual, setting) == usual.end()) all += ", " + setting;
    }
    for (const auto& warning : options.warnings) all += "; " + toNative(warning.text.view());
    all += "\n";
  }
  expectFrozen("options.txt", all);
  EXPECT_EQ(messageReporter.pending().size(), before) << "who reads the lines reports them";
}

TEST(Options, FollowControlFilesOnceEach) {
  const TempFolder folder;
  const std::string first = "-CONTROLFILE=" + folder.path("first.txt");
  const std::string second = "-CONTROLFILE=" + folder.path("second.txt");
  folder.write("first.txt", second + "\n" + first + "\n-FOO\n-POS_TOLERANCE=1\n-BAR\n\n" +
                                "-LINE_TOLERANCE=1 \t\r\n");
  folder.write("second.txt", "-POS_TOLERANCE=2\n" + first);
  RunOptions options;
  std::vector<eString> arguments = {u"rvfcompare", u"-LINE_TOLERANCE=9"};
  arguments.insert(arguments.end(), 2, fromNative(first));
  EXPECT_TRUE(options.parseCommandLine(arguments, ControlFiles::kRead))
      << "the last file was in order";
  folder.write("second.txt", "-FOO");
  EXPECT_FALSE(RunOptions().parseCommandLine(std::vector{eString(), fromNative(second)},
                                             ControlFiles::kRead));
  EXPECT_TRUE(options.badControlLine);
  EXPECT_EQ(options.badLineText.view(), u"-FOO");
  EXPECT_EQ(options.controlFiles.size(), 2U);
  EXPECT_EQ(options.tolerances.positionTolerance, 2);
  EXPECT_EQ(options.tolerances.lineTolerance, 1) << "control files override the command line";
}

// The next character overwrites the third digit of a longer number; after a single digit, a gap
// ends the text.
TEST(PrintableCopy, WritesOtherCharactersAsDigits) {
  std::string all;
  for (const char16_t* line : {u"-A b~\x7F", u"-\u00E4x", u"a\u20ACb", u"a\u20AC", u"a\tb"}) {
    all += toNative(printableCopy(line).view()) + " ";
  }
  EXPECT_EQ(all, "-A b~\x7F -e4x a20b a20 a9 ");
}

}  // namespace
}  // namespace rvf::test
