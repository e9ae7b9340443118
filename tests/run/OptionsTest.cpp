#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "compare/Tolerances.h"
#include "messages/MessageReporter.h"
#include "run/OptionTable.h"
#include "run/RunOptions.h"
#include "support/TempFolder.h"
#include "text/NativeText.h"

namespace rvf::test {
namespace {

/// Starts each test with the process-wide settings of a new process.
class Options : public testing::Test {
 protected:
  Options() {
    positionTolerance = 0;
    lineTolerance = 0;
    simpleReturn = 0;
  }
  ~Options() override {
    positionTolerance = 0;
    lineTolerance = 0;
    simpleReturn = 0;
  }

  bool parseLine(const char* line) { return options.parseOption(fromNative(line)); }

  bool parseWords(std::vector<const char*> words, bool readControl = false) {
    std::vector<eString> arguments = {u"rvfcompare"};
    for (const char* word : words) {
      arguments.push_back(fromNative(word));
    }
    return options.parseCommandLine(arguments, readControl);
  }

  /// The texts of the messages 1019 that this test has raised.
  std::vector<std::string> reported() const {
    std::vector<std::string> texts;
    const auto& pending = messageReporter.pending();
    for (std::size_t i = pendingBefore; i < pending.size(); ++i) {
      EXPECT_EQ(pending[i].number, MessageNumber::kOptionNotUnderstood);
      texts.push_back(toNative(pending[i].arguments[0].text()));
    }
    return texts;
  }

  /// Reads one control file of this content.
  bool readControl(const std::string& content, const char* encoding = "UTF8") {
    options.controlFileEncoding = fromNative(encoding);
    options.addControlFile(fromNative(folder.write("control.txt", content)));
    return options.readControlFiles();
  }

  RunOptions options;
  TempFolder folder;
  std::size_t pendingBefore = messageReporter.pending().size();
};

std::string utf16(const std::string& ascii, bool bigEndian) {
  std::string bytes;
  for (const char c : ascii) {
    bytes += bigEndian ? std::string{'\0', c} : std::string{c, '\0'};
  }
  return bytes;
}

TEST_F(Options, UnderstandExactlyTheLinesOfTheTable) {
  struct Case {
    const char* line;
    bool understood;
  };
  const Case cases[] = {
      {"", true},
      {"   \t", true},
      {"% a comment", true},
      {"  * a comment", true},
      {"\t-SIMPLERETURN", false},  // only blanks are removed in front
      {"word", false},
      {"-", false},
      {"-=", false},
      {"-=5", false},
      {"--SIMPLERETURN", false},
      {"-SIMPLERETURN", true},
      {" /simpleReturn \t ", true},
      {"-SIMPLERETURN=1", false},
      {"-SIMPLERETURN=", false},
      {"-COMPARE", false},
      {"-COMPARE=", false},
      {"-COMPARE=a.rvf", false},
      {"-COMPARE=,b.rvf", false},
      {"-COMPARE =a,b", false},
      {"- COMPARE=a,b", false},
      {"-compare=a.rvf,", true},
      {"-COMPARES=a,b", false},
      {"-POS_TOLERANCE", false},
      {"/POS_TOLERANCE=5", true},
      {"-MSGENCODE=KLINGON", true},
      {"-DBCS_MODE=", true},
      {"-MESSAGEFILE=", true},
      {"-CONTROLFILEENCODING=anything", true},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(parseLine(c.line), c.understood) << '"' << c.line << '"';
  }
  EXPECT_TRUE(reported().empty());  // who reads the lines reports them
}

TEST_F(Options, ReadNumbersFromTheirFront) {
  struct Case {
    const char* value;
    i32 number;
  };
  const Case cases[] = {
      {"5", 5},
      {"+5", 5},
      {"-5", -5},
      {" 12", 12},
      {"7 8", 7},
      {"3.9", 3},
      {"abc", 0},
      {"", 0},
      {"- 5", 0},
      {"0x10", 0},
      {"2147483647", 2147483647},
      {"2147483648", 2147483647},
      {"-2147483648", -2147483647 - 1},
      {"-99999999999999999999999999", -2147483647 - 1},
  };
  for (const Case& c : cases) {
    EXPECT_TRUE(parseLine((std::string("-POS_TOLERANCE=") + c.value).c_str()));
    EXPECT_EQ(positionTolerance, c.number) << '"' << c.value << '"';
  }
  EXPECT_EQ(lineTolerance, 0);
}

TEST_F(Options, MapTheEncodingsOfTheMessageFile) {
  struct Case {
    const char* name;
    i32 id;
  };
  const Case cases[] = {
      {"UTF16", 12},  {"utf16le", 20}, {"Utf16Be", 21},  {"ASCII", 1}, {"EBCDIC", 2}, {"UTF8", 11},
      {"LATIN1", 14}, {"LATIN2", 15},  {"ISO88592", 13}, {"SJIS", 10}, {"BIG5", 3},
  };
  for (const Case& c : cases) {
    EXPECT_TRUE(parseLine((std::string("-MSGENCODE=") + c.name).c_str()));
    EXPECT_EQ(options.msgEncoding, c.id) << c.name;
  }
  EXPECT_TRUE(parseLine("-MSGENCODE=UTF-8"));
  EXPECT_EQ(options.msgEncoding, 3) << "an unknown name changes nothing";
}

TEST_F(Options, JoinTheWordsOfAValue) {
  EXPECT_TRUE(parseWords({"-DIFFERENCEFILE=the", "", "differences.bin", "/MESSAGEFILE=a", "%b"}));
  EXPECT_EQ(options.differenceFile.view(), u"the  differences.bin");
  EXPECT_EQ(options.messageFile.view(), u"a %b");
}

TEST_F(Options, ReportEveryBadArgumentAndReadNoControlFileThen) {
  EXPECT_FALSE(
      parseWords({"first word", "-CONTROLFILE=no such file", "-FOO=1", "2", "-bar "}, true));
  const std::vector<std::string> expected = {"first word", "-FOO=1 2", "-bar "};
  EXPECT_EQ(reported(), expected);
  EXPECT_TRUE(options.badArgument);
  EXPECT_FALSE(options.controlFileFailure);
}

TEST_F(Options, TakeAControlFileInEachEncoding) {
  const std::string text = "\n  % comment\r\n   \r\n-POS_TOLERANCE=5 \t\r\n\n/line_tolerance=6";
  struct Case {
    const char* encoding;
    std::string content;
  };
  const Case cases[] = {
      {"ISO88591", text},
      {"UTF8", text},
      {"UTF8", "\xEF\xBB\xBF" + text},
      {"utf8", text},  // no name of the table, so one byte a character
      {"UTF16LE", utf16(text, false)},
      {"UTF16LE", "\xFF\xFE" + utf16(text, false)},
      {"UTF16LE", "\xFE\xFF" + utf16(text, true)},  // the mark overrides the name
      {"UTF16BE", utf16(text, true)},
      {"UTF16BE", "\xFF\xFE" + utf16(text, false)},
  };
  for (const Case& c : cases) {
    positionTolerance = lineTolerance = 0;
    options = RunOptions();
    EXPECT_TRUE(readControl(c.content, c.encoding)) << c.encoding;
    EXPECT_EQ(positionTolerance, 5) << c.encoding;
    EXPECT_EQ(lineTolerance, 6) << c.encoding;
  }
  EXPECT_TRUE(reported().empty());
}

TEST_F(Options, FollowControlFilesOnceEach) {
  const std::string first = folder.path("first.txt");
  const std::string second = folder.path("second.txt");
  folder.write("first.txt", "-CONTROLFILE=" + second + "\n-CONTROLFILE=" + first +
                                "\n-POS_TOLERANCE=1\n-LINE_TOLERANCE=1\n");
  folder.write("second.txt", "-POS_TOLERANCE=2\n-CONTROLFILE=" + first + "\n");
  const std::string named = "-CONTROLFILE=" + first;
  EXPECT_TRUE(parseWords({named.c_str(), named.c_str(), "-LINE_TOLERANCE=9"}, true));
  EXPECT_EQ(options.controlFiles.size(), 2U);
  EXPECT_EQ(positionTolerance, 2);
  EXPECT_EQ(lineTolerance, 1) << "control files override the command line";
}

TEST_F(Options, GoOnBehindABadControlLine) {
  folder.write("last.txt", "-LINE_TOLERANCE=4\n");
  EXPECT_TRUE(readControl("-FOO\n-POS_TOLERANCE=3\n-BAR\n-CONTROLFILE=" + folder.path("last.txt")))
      << "the last file was in order";
  EXPECT_TRUE(options.badControlLine);
  EXPECT_EQ(positionTolerance, 3);
  EXPECT_EQ(lineTolerance, 4);
  EXPECT_EQ(reported(), std::vector<std::string>{"-FOO"}) << "only the first one is told";
  EXPECT_EQ(options.badLineText.view(), u"-FOO");

  options = RunOptions();
  EXPECT_FALSE(readControl("-POS_TOLERANCE=3\n-BAR"));
}

TEST_F(Options, TellWhyAControlFileCannotBeUsed) {
  const std::string missing = folder.path("missing.txt");
  const std::string bad = "-CONTROLFILE=" + missing;
  const std::string good = "-CONTROLFILE=" + folder.write("good.txt", "-POS_TOLERANCE=3\n");
  EXPECT_FALSE(parseWords({bad.c_str(), good.c_str()}, true));
  ASSERT_TRUE(options.controlFileFailure);
  EXPECT_EQ(toNative(options.controlFileFailure->path.view()), missing);
  EXPECT_EQ(options.controlFileFailure->reason.view(), u"No such file or directory");
  EXPECT_EQ(positionTolerance, 0) << "no later file is read";

  options = RunOptions();
  EXPECT_FALSE(readControl("\xFE\xFF-POS_TOLERANCE=3\n", "UTF8"));
  ASSERT_TRUE(options.controlFileFailure);
  EXPECT_EQ(options.controlFileFailure->reason.view(),
            u"Incorrect Byte-Order Mark Found in UTF Encoded File");
  EXPECT_TRUE(reported().empty());
}

TEST(PrintableCopy, WritesOtherCharactersAsDigits) {
  struct Case {
    std::u16string_view line, copy;
  };
  const Case cases[] = {
      {u"-A b~\x7F", u"-A b~\x7F"},
      {u"-\u00E4x", u"-e4x"},
      {u"\u00FF\u00FE", u"fffe"},
      {u"a\u20ACb", u"a20b"},  // the next character stands on the third digit
      {u"a\u20AC", u"a20"},    // and so does the end
      {u"a\tb", u"a9"},        // a single digit leaves a gap, at which the text ends
      {u"", u""},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(printableCopy(eString(c.line)).view(), c.copy);
  }
}

}  // namespace
}  // namespace rvf::test
