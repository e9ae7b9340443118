#include <gtest/gtest.h>

#include <filesystem>
#include <ostream>
#include <string>
#include <vector>

#include "support/Capture.h"
#include "support/Parts.h"
#include "support/RunProgram.h"
#include "support/TempFolder.h"

namespace rvf::test {
namespace {

// The program is run with things that cannot work. What counts: the exit status, every line of the
// message file, standard output, and what the operator reads on standard error.

constexpr const char* kCatalogue =
    "// messages of these tests\n"
    "#define MESS_SYMB_VER 1602008\n"
    "#define OPTION 1019 // E|0|0|Option |1|\n"
    "#define SINK 1806 // S|0|0|Report |1|: |2|\n"
    "#define ARCHIVE 1811 // S|0|0|Output |1|: |2|\n"
    "#define UNUSABLE 1903 // S|0|0|File |1|: |2|\n"
    "#define TOO_NEW 2564 // S|0|0|Record |1| |2|, known |3|\n"
    "#define DAMAGED 9042 // S|0|0|Damage: |1|\n";

constexpr const char* kGreeting =
    "-*-*- Plenarix Batch Compare Utility Version 16.2.0 32-bit (DBCS)  -*-*- Batch Regression "
    "Utility.\n";

const std::string kRule =
    " *******************************************************************************\r\n";

std::string banner() {
  return kRule + " * Plenarix Batch Compare Utility Version 16.2.0 32-bit (DBCS)\r\n" +
         " * Execution Begins: TIME\r\n" + " * Message File  (178236)\r\n" + kRule + kRule +
         " *         Summary of Plenarix Run Options                                     *\r\n" +
         kRule + " Positional Tolerance: 0.\r\n Line Thickness Tolerance: 0.\r\n" + kRule;
}

/// The closing report; `status` is as wide as its field.
std::string closing(const std::string& status, const std::string& words = "") {
  return kRule + " ***                   --- Diff Completed ---                        ***\r\n" +
         " ***                  --- Return Code " + status + " ---                      ***\r\n" +
         kRule + words;
}

const std::string kFailed = closing("     -1");
const std::string kIdentical =
    closing("      0", "\t           --- The files are identical ---\r\n");
const std::string kOtherResolution = closing(
    "2097152",
    "\t           --- The output files are different resolutions and cannot be compared ---\r\n"
    "\t           --- Processing was halted due to errors ---\r\n");

enum class Difference { kNone, kEmpty, kWritten };

struct Case {
  const char* name;
  std::vector<std::string> arguments;
  int status;
  bool greets;           // the run gets to the comparison
  std::string messages;  // the message file; empty: there is none
  std::string told;      // how standard error begins; empty: nothing is on it
  Difference difference = Difference::kNone;

  friend std::ostream& operator<<(std::ostream& out, const Case& c) { return out << c.name; }
};

CaptureFields captureWithResolution(int resolution) {
  CaptureFields fields;
  fields.resolution = resolution;
  return fields;
}

CaptureFields captureWithNewerList() {
  PageBody body;
  body.list.version = kNewestList + 1;
  PageFields page;
  page.body = body;
  return captureOf({page});
}

/// A folder with inputs of all kinds.
class Failure : public testing::TestWithParam<Case> {
 protected:
  Failure() {
    const std::string good = smallestCapture(false);
    folder_.write("MsgResource_en-us.dat", kCatalogue);
    folder_.write("RVF1.rvf", good);
    folder_.write("RVF2.rvf", good);
    folder_.write("other.rvf", writeCapture(captureWithResolution(600)).bytes);
    folder_.write("newer.rvf", writeCapture(captureWithNewerList()).bytes);
    folder_.write("order1.rvf", onePage({text({.text = u"a"}), text({.text = u"b"})}));
    folder_.write("order2.rvf", onePage({text({.text = u"b"}), text({.text = u"a"})}));
    folder_.write("text.rvf", "This is no capture file, but it is long enough for a header.");
    folder_.write("cut.rvf", good.substr(0, 32));  // ends where its index should be
    folder_.write("empty.rvf", "");
    folder_.write("bad.ctl", "-SIMPLERETURN\n-P\xD6S_TOLERANCE=5\n-FOO\n");
    std::filesystem::create_directory(folder_.path() / "folder");
  }

  ProgramResult run(std::vector<std::string> command) const {
    return runProgram(std::move(command), folder_.path());
  }

  /// The message file with the time of its banner replaced; empty if there is none.
  std::string messages() const {
    if (!folder_.has("PlenarixMessages.dat")) {
      return {};
    }
    std::string text = folder_.read("PlenarixMessages.dat");
    const std::string heading = "Execution Begins: ";
    const std::size_t start = text.find(heading) + heading.size();
    return text.replace(start, text.find('\r', start) - start, "TIME");
  }

  Difference difference() const {
    if (!folder_.has("Differenced.dat")) {
      return Difference::kNone;
    }
    return folder_.read("Differenced.dat").empty() ? Difference::kEmpty : Difference::kWritten;
  }

  TempFolder folder_;
};

TEST_P(Failure, LeavesWhatItMust) {
  const Case& c = GetParam();
  std::vector<std::string> command = {RVF_PROGRAM};
  command.insert(command.end(), c.arguments.begin(), c.arguments.end());

  const ProgramResult result = run(command);

  EXPECT_EQ(result.status, c.status);
  EXPECT_EQ(result.out, c.greets ? kGreeting : "");
  EXPECT_EQ(messages(), c.messages);
  EXPECT_EQ(difference(), c.difference);
  if (c.told.empty()) {
    EXPECT_EQ(result.err, "");
  } else {
    EXPECT_EQ(result.err.substr(0, c.told.size()), c.told);
  }
}

std::string unusable(const std::string& path, const std::string& reason) {
  return "QZ001903S (1) File " + path + ": " + reason;
}

const Case kOptionCases[] = {
    {"BadOptions",
     {"-FOO=1", "-COMPARE=a"},
     255,
     false,
     "",
     "QZ001019E (1) Option -FOO=1\nQZ001019E (2) Option -COMPARE=a\nusage: rvfcompare"},
    {"MissingControlFile",
     {"-CONTROLFILE=none.ctl"},
     255,
     false,
     "",
     "rvfcompare: control file none.ctl: No such file or directory\n"},
    {"ControlFileIsFolder",
     {"-CONTROLFILE=folder"},
     255,
     false,
     "",
     "rvfcompare: control file folder: Is a directory\n"},
    {"BadControlLine",
     {"-CONTROLFILE=bad.ctl"},
     255,
     false,
     banner() + kFailed,
     "QZ001019E (1) Option -Pd6S_TOLERANCE=5\nusage: rvfcompare"},
};

const Case kOpenCases[] = {
    {"MissingFirst",
     {"-COMPARE=none.rvf,none2.rvf"},
     255,
     false,
     banner() + kFailed,
     unusable("none.rvf", "No such file or directory\n")},
    {"SecondIsFolder",
     {"-COMPARE=RVF1.rvf,folder"},
     255,
     false,
     banner() + kFailed,
     unusable("folder", "Is a directory\n")},
    {"SecondHasNoName", {"-COMPARE=RVF1.rvf,"}, 255, false, banner() + kFailed, "QZ001903S (1) "},
    {"NameIsNoText",
     {"-COMPARE=\xFF\xC3\xA4,RVF2.rvf"},
     255,
     false,
     banner() + kFailed,
     unusable("\xFF\xC3\xA4", "No such file or directory\n")},
    {"DifferenceFileInNoFolder",
     {"-DIFFERENCEFILE=none/d.dat"},
     255,
     false,
     banner() + kFailed,
     unusable("none/d.dat", "No such file or directory\n")},
};

const Case kInputCases[] = {
    {"Identical", {}, 0, true, banner() + kIdentical, "", Difference::kWritten},
    {"NoCaptureFile",
     {"-COMPARE=text.rvf,RVF2.rvf"},
     255,
     true,
     banner() + unusable("text.rvf", "Invalid RVF\r\n") + kFailed,
     "",
     Difference::kEmpty},
    {"NoCaptureFileWithSimpleReturn",
     {"-COMPARE=RVF1.rvf,text.rvf", "-SIMPLERETURN"},
     255,
     true,
     banner() + unusable("text.rvf", "Invalid RVF\r\n") + kFailed,
     "",
     Difference::kEmpty},
    {"EmptyFile",
     {"-COMPARE=empty.rvf,RVF2.rvf"},
     255,
     true,
     banner() + unusable("empty.rvf", "Invalid RVF\r\n") + kFailed,
     "",
     Difference::kEmpty},
    {"TruncatedFile",
     {"-COMPARE=RVF1.rvf,cut.rvf"},
     255,
     true,
     banner() + unusable("cut.rvf", "Invalid RVF\r\n") + kFailed,
     "",
     Difference::kEmpty},
    {"Resolutions",
     {"-COMPARE=RVF1.rvf,other.rvf"},
     16,
     true,
     banner() + kOtherResolution,
     "",
     Difference::kEmpty},
    {"ResolutionsWithSimpleReturn",
     {"-COMPARE=RVF1.rvf,other.rvf", "/simplereturn"},
     1,
     true,
     banner() + kOtherResolution,
     "",
     Difference::kEmpty},
    {"OrderWithSimpleReturn",
     {"-COMPARE=order1.rvf,order2.rvf", "-SIMPLERETURN"},
     0,
     true,
     banner() + closing("    129",
                        " ************ Differences of the following types encountered! "
                        "************\r\n\t           --- Content ---\r\n"
                        "\t           --- Draw Order ---\r\n"),
     "",
     Difference::kWritten},
    // Nothing is closed: no closing report, and the difference file's bytes are lost.
    {"RecordTooNew",
     {"-COMPARE=newer.rvf,newer.rvf"},
     255,
     true,
     banner(),
     "QZ002564S (1) Record DRAWLIST 108, known 107\n",
     Difference::kEmpty},
};

const Case kFullDiskCases[] = {
    {"DifferenceFile",
     {"-DIFFERENCEFILE=/dev/full"},
     255,
     true,
     banner() + "QZ001811S (1) Output /dev/full: No space left on device\r\n" + kIdentical,
     ""},
    {"MessageFile",
     {"-MESSAGEFILE=/dev/full"},
     255,
     true,
     "",
     "QZ001806S (1) Report /dev/full: No space left on device\n",
     Difference::kWritten},
};

std::string caseName(const testing::TestParamInfo<Case>& info) { return info.param.name; }

INSTANTIATE_TEST_SUITE_P(Options, Failure, testing::ValuesIn(kOptionCases), caseName);
INSTANTIATE_TEST_SUITE_P(Opening, Failure, testing::ValuesIn(kOpenCases), caseName);
INSTANTIATE_TEST_SUITE_P(Inputs, Failure, testing::ValuesIn(kInputCases), caseName);
INSTANTIATE_TEST_SUITE_P(FullDisk, Failure, testing::ValuesIn(kFullDiskCases), caseName);

// Without a message file the console tells it, and standard error why.
TEST_F(Failure, TellsOnTheConsoleThatThereIsNoMessageFile) {
  struct Unopened {
    const char* path;
    const char* reason;
  };
  constexpr Unopened kCases[] = {{"none/m.txt", "No such file or directory"},
                                 {"folder", "Is a directory"}};
  for (const auto& [path, reason] : kCases) {
    const ProgramResult result = run({RVF_PROGRAM, std::string("-MESSAGEFILE=") + path});
    EXPECT_EQ(result.status, 255);
    EXPECT_EQ(result.out,
              std::string(" ****** There was an error opening the Message File named ") + path +
                  " *****\n");
    EXPECT_EQ(result.err, std::string("rvfcompare: message file ") + path + ": " + reason + "\n");
    EXPECT_EQ(difference(), Difference::kNone);
  }
}

TEST_F(Failure, StandardOutputDoesNotCount) {
  for (const std::string redirection : {"> /dev/full", ">&-", "| true"}) {
    const std::string program = RVF_PROGRAM;
    const ProgramResult result = run({"/bin/sh", "-c", program + " " + redirection + "; exit $?"});
    EXPECT_EQ(result.status, 0) << redirection;
    EXPECT_EQ(messages(), banner() + kIdentical) << redirection;
    EXPECT_EQ(difference(), Difference::kWritten) << redirection;
  }
}

}  // namespace
}  // namespace rvf::test
