#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "messages/MessageReporter.h"
#include "run/OptionTable.h"
#include "support/TempFolder.h"
#include "text/NativeText.h"

namespace rvf::test {
namespace {

class Options : public testing::Test {
 protected:
  bool parseLine(const std::string& line) { return options.parseOption(fromNative(line)); }

  RunOptions options;
};

TEST_F(Options, UnderstandExactlyTheLinesOfTheTable) {
  const std::size_t before = messageReporter.pending().size();
  for (const char* line :
       {"", "   \t", "% a comment", "  * a comment", "-SIMPLERETURN", " /simpleReturn \t ",
        "-compare=a.rvf,", "/POS_TOLERANCE=5", "-MSGENCODE=KLINGON",
        "-DBCS_MODE=", "-MESSAGEFILE=", "-CONTROLFILEENCODING=anything"}) {
    EXPECT_TRUE(parseLine(line)) << '"' << line << '"';
  }
  for (const char* line :  // only blanks are removed in front
       {"\t-SIMPLERETURN", "word", "-", "-=", "-=5", "--SIMPLERETURN", "-SIMPLERETURN=1",
        "-SIMPLERETURN=", "-COMPARE", "-COMPARE=", "-COMPARE=a.rvf", "-COMPARE=,b.rvf",
        "-COMPARE =a,b", "- COMPARE=a,b", "-COMPARES=a,b", "-POS_TOLERANCE"}) {
    EXPECT_FALSE(parseLine(line)) << '"' << line << '"';
  }
  EXPECT_EQ(messageReporter.pending().size(), before) << "who reads the lines reports them";
}

TEST_F(Options, ReadNumbersFromTheirFront) {
  const std::pair<const char*, i32> cases[] = {{"+5", 5},
                                               {" -12", -12},
                                               {"7 8", 7},
                                               {"3.9", 3},
                                               {"x", 0},
                                               {"- 5", 0},
                                               {"0x1", 0},
                                               {"2147483648", 2147483647},
                                               {"-99999999999999999999999999", -2147483647 - 1}};
  for (const auto& [value, number] : cases) {
    EXPECT_TRUE(parseLine(std::string("-POS_TOLERANCE=") + value));
    EXPECT_EQ(options.tolerances.positionTolerance, number) << '"' << value << '"';
  }
  EXPECT_EQ(options.tolerances.lineTolerance, 0);
}

TEST_F(Options, MapTheEncodingsOfTheMessageFile) {
  const std::pair<const char*, i32> cases[] = {
      {"UTF16", 12}, {"utf16le", 20}, {"Utf16Be", 21}, {"ASCII", 1},     {"EBCDIC", 2},
      {"UTF8", 11},  {"LATIN1", 14},  {"LATIN2", 15},  {"ISO88592", 13}, {"SJIS", 10},
      {"BIG5", 3},   {"UTF-8", 3},  // an unknown name changes nothing
  };
  for (const auto& [name, id] : cases) {
    EXPECT_TRUE(parseLine(std::string("-MSGENCODE=") + name));
    EXPECT_EQ(options.msgEncoding, id) << name;
  }
}

TEST_F(Options, FollowControlFilesOnceEach) {
  const TempFolder folder;
  const std::string first = "-CONTROLFILE=" + folder.path("first.txt");
  const std::string second = "-CONTROLFILE=" + folder.path("second.txt");
  folder.write("first.txt", second + "\n" + first + "\n-FOO\n-POS_TOLERANCE=1\n-BAR\n\n" +
                                "-LINE_TOLERANCE=1 \t\r\n");
  folder.write("second.txt", "-POS_TOLERANCE=2\n" + first);
  std::vector<eString> arguments = {u"rvfcompare", u"-LINE_TOLERANCE=9"};
  arguments.insert(arguments.end(), 2, fromNative(first));
  EXPECT_TRUE(options.parseCommandLine(arguments, true)) << "the last file was in order";
  EXPECT_TRUE(options.badControlLine);
  EXPECT_EQ(options.badLineText.view(), u"-FOO");
  EXPECT_EQ(options.controlFiles.size(), 2U);
  EXPECT_EQ(options.tolerances.positionTolerance, 2);
  EXPECT_EQ(options.tolerances.lineTolerance, 1) << "control files override the command line";
}

TEST(PrintableCopy, WritesOtherCharactersAsDigits) {
  const std::pair<const char16_t*, const char16_t*> cases[] = {
      {u"-A b~\x7F", u"-A b~\x7F"},
      {u"-\u00E4x", u"-e4x"},
      {u"a\u20ACb", u"a20b"},  // the next character stands on the third digit
      {u"a\u20AC", u"a20"},    // and so does the end
      {u"a\tb", u"a9"},        // a single digit leaves a gap, at which the text ends
  };
  for (const auto& [line, copy] : cases) EXPECT_EQ(printableCopy(eString(line)).view(), copy);
}

}  // namespace
}  // namespace rvf::test
