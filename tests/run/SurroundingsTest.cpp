#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "run/RunFolder.h"
#include "support/Capture.h"
#include "support/FaultRun.h"

namespace rvf::test {
namespace {

// What a run does among things that are not as they should be: files that cannot be used, outputs
// that would destroy what the run reads, streams that are closed, a system that is slow, short and
// full. What counts: the exit status, what the message file tells, and what the operator reads on
// standard error.

/// A folder with a catalogue of these tests, a control file, and a pair that differs in one text.
class Surroundings : public testing::Test, protected RunFolder {
 protected:
  Surroundings() {
    write("MsgResource_en-us.dat", kCatalogue);
    write("c.ctl", "-POS_TOLERANCE=5\n");
    std::vector<PageFields> pages(40, page({text({.text = u"a"}), line()}));
    write("RVF1.rvf", writeCapture(captureOf(pages)).bytes);
    pages[30] = page({text({.text = u"b"}), line()});
    write("RVF2.rvf", writeCapture(captureOf(pages)).bytes);
    std::filesystem::create_directory(path() / "folder");
  }

  /// Runs with the outputs of the run before removed.
  ProgramResult runAnew(const std::string& arguments) const {
    shell("rm -f Differenced.dat PlenarixMessages.dat");
    return run(arguments);
  }
  ProgramResult runUnder(const Faults& faults, std::vector<std::string> arguments = {}) const {
    arguments.insert(arguments.begin(), RVF_PROGRAM);
    return runWithFaults(faults, arguments, path());
  }

  void expectTrueResult(const ProgramResult& result) const {
    EXPECT_EQ(result.status, kTrueStatus) << result.err;
    EXPECT_EQ(report(), "2176") << "Text and Content";
    EXPECT_TRUE(differenceIsComplete());
  }

  static constexpr int kTrueStatus = 128;
  static constexpr const char* kMessageFileLine =
      " ****** There was an error opening the Message File named ";
  static constexpr const char* kCatalogue =
      "// messages of these tests\n"
      "#define MESS_SYMB_VER 1602008\n"
      "#define OPTION 1019 // E|0|0|Option |1|\n"
      "#define SINK 1806 // S|0|0|Report |1|: |2|\n"
      "#define ARCHIVE 1811 // S|0|0|Output |1|: |2|\n"
      "#define READ 1822 // S|0|0|Reading |2|: |3|\n"
      "#define CLOSE 1848 // S|0|0|Closing |1|: |2|\n"
      "#define UNUSABLE 1903 // S|0|0|File |1|: |2|\n"
      "#define TOO_NEW 2564 // S|0|0|Record |1| |2|, known |3|\n"
      "#define DAMAGED 9042 // S|0|0|Damage: |1|\n";
};

std::string filledIn(std::string text, const std::string& path) {
  const std::size_t at = text.find('@');
  return at == text.npos ? text : text.replace(at, 1, path);
}

TEST_F(Surroundings, UnusableFilesEndTheRunAtOnce) {
  struct Unusable {
    const char* path;
    const char* whyNotRead;
    const char* whyNotWritten;  // null: it can be
  };
  const Unusable files[] = {
      {"none/file", "No such file or directory", "No such file or directory"},
      {"none/\xFF\xC3\xA4", "No such file or directory", "No such file or directory"},
      {"folder", "Is a directory", "Is a directory"},
      {"pipe", "Not a regular file", "No such device or address"},
      {"link", "Not a regular file", "No such device or address"},
      {"/dev/null", "Not a regular file", nullptr},
      {"/dev/zero", "Not a regular file", nullptr},
  };
  struct Place {
    const char* arguments;  // with @ for the path
    const char* told;
    const char* report;
    bool isRead;
  };
  const Place places[] = {
      {"-COMPARE=@,RVF2.rvf", "QZ001903S (1) File @: ", "-1", true},
      {"-COMPARE=RVF1.rvf,@", "QZ001903S (1) File @: ", "-1", true},
      {"-CONTROLFILE=@", "rvfcompare: control file @: ", kNoReport, true},
      {"-DIFFERENCEFILE=@", "QZ001903S (1) File @: ", "-1", false},
      {"-MESSAGEFILE=@", "rvfcompare: message file @: ", kNoReport, false},
  };
  shell("mkfifo pipe; ln -s pipe link");
  for (const auto& [path, whyNotRead, whyNotWritten] : files) {
    for (const auto& [arguments, told, expected, isRead] : places) {
      const char* reason = isRead ? whyNotRead : whyNotWritten;
      if (reason == nullptr) continue;
      SCOPED_TRACE(filledIn(arguments, path));
      const ProgramResult result = runAnew(filledIn(arguments, path));
      EXPECT_EQ(result.status, 255);
      EXPECT_EQ(result.err, filledIn(told, path) + reason + "\n");
      EXPECT_EQ(result.out.empty(), isRead || report() != kNoReport) << result.out;
      EXPECT_EQ(report(), expected);
      EXPECT_FALSE(has(differenceName));
    }
  }
}

TEST_F(Surroundings, EveryEndOfARun) {
  CaptureFields otherResolution;
  otherResolution.resolution = 600;
  PageFields newer = page({});
  newer.body->list.version = kNewestList + 1;
  write("other.rvf", writeCapture(otherResolution).bytes);
  write("newer.rvf", writeCapture(captureOf({newer})).bytes);
  write("order1.rvf", onePage({text({.text = u"a"}), text({.text = u"b"})}));
  write("order2.rvf", onePage({text({.text = u"b"}), text({.text = u"a"})}));
  write("cut.rvf", smallestCapture(false).substr(0, 32));  // ends where its index should be
  write("empty.rvf", "");
  write("mark.ctl", "\xFE\xFF-SIMPLERETURN\n");
  write("bad.ctl", "-SIMPLERETURN\n-P\xD6S_TOLERANCE=5\n-FOO\n");
  struct Row {
    const char* arguments;
    int status;
    std::string report;
    char difference = 'E';  // empty, complete (C) or not there (N)
    std::string told = "";  // on standard error, in front of the usage
  };
  const std::string unusable = "QZ001903S (1) File ";
  const Row rows[] = {
      {"-COMPARE=RVF1.rvf,RVF1.rvf", 0, "0", 'C'},
      {"-COMPARE=order1.rvf,order2.rvf -SIMPLERETURN", 0, "129", 'C'},
      {"-COMPARE=RVF1.rvf,other.rvf", 16, "2097152"},
      {"-COMPARE=RVF1.rvf,other.rvf /simplereturn", 1, "2097152"},
      {"-COMPARE=RVF1.rvf,cut.rvf", 255, unusable + "cut.rvf: Invalid RVF\n-1"},
      {"-COMPARE=empty.rvf,cut.rvf -SIMPLERETURN", 255, unusable + "empty.rvf: Invalid RVF\n-1"},
      // Nothing is closed: no closing report, and the difference file's bytes are lost.
      {"-COMPARE=newer.rvf,newer.rvf", 255, kNoEnd, 'E',
       "QZ002564S (1) Record DRAWLIST 108, known 107\n"},
      {"-COMPARE=RVF1.rvf,", 255, "-1", 'N', "QZ001903S (1) File |1|: |2|\n"},
      {"word -FOO=1 '' 2 -COMPARE=a -CONTROLFILE=none", 255, kNoReport, 'N',
       "QZ001019E (1) Option word\nQZ001019E (2) Option -FOO=1  2\n"
       "QZ001019E (3) Option -COMPARE=a\n"},
      {"-CONTROLFILE=mark.ctl -CONTROLFILEENCODING=UTF8 -CONTROLFILE=none", 255, kNoReport, 'N',
       "rvfcompare: control file mark.ctl: Incorrect Byte-Order Mark Found in UTF Encoded File\n"},
      {"-CONTROLFILE=bad.ctl", 255, "-1", 'N', "QZ001019E (1) Option -Pd6S_TOLERANCE=5\n"},
      {"-DIFFERENCEFILE=/dev/full", 255,
       "QZ001811S (1) Output /dev/full: No space left on device\n2176", 'N'},
      {"-MESSAGEFILE=/dev/full", 255, kNoReport, 'C',
       "QZ001806S (1) Report /dev/full: No space left on device\n"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.arguments);
    const ProgramResult result = runAnew(row.arguments);
    EXPECT_EQ(result.status, row.status);
    EXPECT_EQ(report(), row.report);
    EXPECT_EQ(result.err.substr(0, result.err.find("usage")), row.told);
    EXPECT_EQ(has(differenceName), row.difference != 'N');
    EXPECT_EQ(readIfThere(differenceName).empty(), row.difference != 'C');
    EXPECT_EQ(differenceIsComplete(), row.difference == 'C');
  }
}

TEST_F(Surroundings, CatalogueThatIsFifoIsPassedOver) {
  expectTrueResult(run());
  shell("rm MsgResource_en-us.dat; mkfifo MsgResource_en-us.dat");
  expectTrueResult(run());
}

TEST_F(Surroundings, OutputsMayGoToWhoeverReads) {
  const ProgramResult result = shell(
      "mkfifo pipe; exec 3<>pipe; \"$P\" -DIFFERENCEFILE=pipe -MESSAGEFILE=/dev/stdout;"
      "status=$?; dd bs=4096 count=1 <&3 >Differenced.dat 2>&-; exit $status");
  EXPECT_EQ(result.status, kTrueStatus) << result.err;
  EXPECT_TRUE(differenceIsComplete());
  EXPECT_NE(result.out.find("Return Code"), std::string::npos);

  EXPECT_EQ(run("-MESSAGEFILE=/dev/null -DIFFERENCEFILE=/dev/null").status, kTrueStatus);
  shell("rm Differenced.dat; ln -s Differenced.dat dangling");
  EXPECT_EQ(run("-DIFFERENCEFILE=dangling").status, kTrueStatus);
  EXPECT_TRUE(differenceIsComplete());
}

TEST_F(Surroundings, OutputsDestroyNothing) {
  struct Clash {
    const char* prepare;
    std::string output;         // where the output is to go
    std::string what;           // what it would destroy
    std::string options = " ";  // of the run, beside it
  };
  const Clash clashes[] = {
      {"", "RVF1.rvf", "an input"},
      {"", "RVF2.rvf", "an input"},
      {"", "folder/.././/RVF1.rvf", "an input"},
      {"", "/proc/self/cwd/RVF1.rvf", "an input"},
      {"ln -s RVF1.rvf link", "link", "an input"},
      {"ln -s link other", "other", "an input"},
      {"ln RVF2.rvf hard", "hard", "an input"},
      {"ln -s . here", "here/RVF2.rvf", "an input"},
      {"", "RVF1.rvf", "an input", "-COMPARE=link,RVF2.rvf "},
      {"", "c.ctl", "a control file", "-CONTROLFILE=c.ctl "},
      {"echo -CONTROLFILE=c.ctl >d.ctl", "c.ctl", "a control file", "-CONTROLFILE=d.ctl "},
      {"", "MsgResource_en-us.dat", "the message catalogue"},
      {"ln -s MsgResource_en-us.dat texts", "texts", "the message catalogue"},
      {"rm MsgResource_en-us.dat", "MsgResource_en-us.dat", "the message catalogue"},
      {"", "new", "the difference file", "-DIFFERENCEFILE=new "},
      {"", "new", "the difference file", "-DIFFERENCEFILE=./new "},
      {"echo old >old", "old", "the difference file", "-DIFFERENCEFILE=old "},
      {"ln old both", "both", "the difference file", "-DIFFERENCEFILE=old "},
      {"ln -s new dangling", "dangling", "the difference file", "-DIFFERENCEFILE=new "},
      {"ln -s here/new far", "far", "the difference file", "-DIFFERENCEFILE=folder/../dangling "},
      {"mkfifo pipe", "pipe", "the difference file", "-DIFFERENCEFILE=pipe "},
  };
  for (const auto& [prepare, output, what, options] : clashes) {
    SCOPED_TRACE(options + output);
    shell(prepare);
    const auto before = files();
    const std::string reason = "It is also " + what + " of this run\n";

    ProgramResult result = run(options + "-MESSAGEFILE=" + output);
    EXPECT_EQ(result.status, 255);
    EXPECT_EQ(result.out, kMessageFileLine + output + " *****\n");
    EXPECT_EQ(result.err, "rvfcompare: message file " + output + ": " + reason);
    EXPECT_TRUE(files() == before);

    if (what == "the difference file") continue;
    result = run(options + "-DIFFERENCEFILE=" + output);
    EXPECT_EQ(result.status, 255);
    EXPECT_NE(result.err.find(output), std::string::npos);
    EXPECT_NE(result.err.find("It is also " + what), std::string::npos);
    EXPECT_EQ(report(), "-1");
    shell("rm PlenarixMessages.dat");
    EXPECT_TRUE(files() == before);
  }
}

// Two files that have lost the same page: without severities they would be identical.
TEST_F(Surroundings, LossCountsWithoutCatalogueToo) {
  PageFields lost = page({line()});
  lost.filePosition = 1000000;
  write("RVF1.rvf", writeCapture(captureOf({page({line()}), lost})).bytes);
  for (const std::string catalogue : {kCatalogue, "no catalogue\n"}) {
    write("MsgResource_en-us.dat", catalogue);
    EXPECT_EQ(run("-COMPARE=RVF1.rvf,RVF1.rvf").status, 255) << catalogue;
  }
}

TEST_F(Surroundings, StandardStreamsDoNotCount) {
  for (const std::string redirections :
       {"> /dev/full", ">&-", "2>&-", "<&-", "<&- >&- 2>&-", "2> /dev/full"}) {
    SCOPED_TRACE(redirections);
    expectTrueResult(run(redirections));
    EXPECT_EQ(run("-COMPARE=RVF1.rvf,none " + redirections).status, 255);
    EXPECT_EQ(report(), "-1");
  }
  expectTrueResult(shell("{ \"$P\"; echo $? >status; } | true; exit $(cat status)"));
}

// The limit counts in units of 512 bytes. The report is longer than one, the difference file of the
// second run than eight.
TEST_F(Surroundings, FullDisk) {
  const ProgramResult noReport = shell("ulimit -f 1; exec \"$P\"");
  EXPECT_EQ(noReport.status, 255);
  EXPECT_EQ(noReport.err, "QZ001806S (1) Report PlenarixMessages.dat: File too large\n");
  EXPECT_EQ(report(), kNoEnd);

  const std::string pair = writeCapture(captureOf(std::vector<PageFields>(2000))).bytes;
  write("RVF1.rvf", pair);
  write("RVF2.rvf", pair);
  const ProgramResult noResult = shell("ulimit -f 8; exec \"$P\"");
  EXPECT_EQ(noResult.status, 255);
  EXPECT_EQ(noResult.err, "");
  EXPECT_EQ(report(), "QZ001811S (1) Output Differenced.dat: File too large\n0");
  EXPECT_FALSE(differenceIsComplete());
}

TEST_F(Surroundings, ShortAndInterruptedCallsGoOn) {
  if (!canInjectFaults()) GTEST_SKIP() << "a build with sanitizers";
  const Faults rows[] = {
      {{"PIECE", "1"}},
      {{"PIECE", "7"}},
      {{"BREAK", "2"}},
      {{"BREAK", "3"}},
      {{"PIECE", "5"}, {"BREAK", "2"}},
  };
  for (const Faults& faults : rows) expectTrueResult(runUnder(faults));
  EXPECT_EQ(runUnder({{"CALL", "read"}, {"AT", "3"}, {"FOR", "on"}, {"ERROR", "4"}}).status, 255);
}

// What a network drive keeps back comes out when the file is closed.
TEST_F(Surroundings, BytesLostAtTheCloseFailTheRun) {
  if (!canInjectFaults()) GTEST_SKIP() << "a build with sanitizers";
  EXPECT_EQ(runUnder({{"CALL", "close"}, {"AT", "1"}, {"FOR", "on"}}).status, 255);
  EXPECT_NE(report().find("QZ001848S (2) Closing Differenced.dat: "), std::string::npos);
}

// Every byte of these files counts, so a run that misses one has no result. Two files that have
// lost the same are not identical.
TEST_F(Surroundings, InputThatShrinksIsDamage) {
  if (!canInjectFaults()) GTEST_SKIP() << "a build with sanitizers";
  const auto size = static_cast<int>(read("RVF1.rvf").size());
  ASSERT_EQ(read("RVF2.rvf").size(), read("RVF1.rvf").size());
  for (int length = 0; length <= size;
       length += length < size - 1 ? std::min(211, size - 1 - length) : 1) {
    for (const std::string file : {"RVF1.rvf", "RVF2.rvf", ".rvf"}) {
      SCOPED_TRACE(file + " " + std::to_string(length));
      const Faults faults = {{"SHRINK", std::to_string(length)}, {"FILE", file}};
      EXPECT_EQ(runUnder(faults).status, length < size ? 255 : kTrueStatus);
      EXPECT_EQ(runUnder(faults, {"-COMPARE=RVF1.rvf,RVF1.rvf"}).status,
                length < size && file != "RVF2.rvf" ? 255 : 0);
    }
  }
}

}  // namespace
}  // namespace rvf::test
