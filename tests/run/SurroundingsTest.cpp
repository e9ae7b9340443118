#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <ostream>
#include <string>
#include <vector>

#include "support/Capture.h"
#include "support/DifferenceBytes.h"
#include "support/FaultRun.h"
#include "support/TempFolder.h"

namespace rvf::test {
namespace {

namespace fs = std::filesystem;

// What a run does among things that are not as they should be: devices and FIFOs in the place of
// files, outputs that would destroy what the run reads, a system that is slow, short and full.

constexpr const char* kCatalogue =
    "// messages of these tests\n"
    "#define MESS_SYMB_VER 1602008\n"
    "#define SINK 1806 // S|0|0|Report |1|: |2|\n"
    "#define ARCHIVE 1811 // S|0|0|Output |1|: |2|\n"
    "#define READ 1822 // S|0|0|Reading |2|: |3|\n"
    "#define CLOSE 1848 // S|0|0|Closing |1|: |2|\n"
    "#define UNUSABLE 1903 // S|0|0|File |1|: |2|\n"
    "#define DAMAGED 9042 // S|0|0|Damage: |1|\n";

/// A folder with a pair that differs, and a run over it that nothing disturbs.
class Surroundings : public testing::Test {
 protected:
  Surroundings() {
    folder_.write("MsgResource_en-us.dat", kCatalogue);
    std::vector<PageFields> pages(40, page({text({.text = u"a"}), line()}));
    folder_.write("RVF1.rvf", writeCapture(captureOf(pages)).bytes);
    pages[30] = page({text({.text = u"b"}), line()});
    folder_.write("RVF2.rvf", writeCapture(captureOf(pages)).bytes);
    folder_.write("c.ctl", "-POS_TOLERANCE=5\n");
    fs::create_directory(path("folder"));
  }

  fs::path path(const std::string& name) const { return folder_.path() / name; }

  /// Runs shell text in which PROGRAM stands for the program.
  ProgramResult shell(const std::string& text) const {
    constexpr int kLongestRun = 10;
    const std::string program = std::string("PROGRAM='") + RVF_PROGRAM + "'; ";
    return runProgram({"/bin/sh", "-c", program + text}, folder_.path(), kLongestRun);
  }
  ProgramResult run(const std::string& arguments = "") const {
    return shell("exec \"$PROGRAM\" " + arguments);
  }
  ProgramResult runUnder(const Faults& faults, std::vector<std::string> arguments = {}) const {
    arguments.insert(arguments.begin(), RVF_PROGRAM);
    return runWithFaults(faults, arguments, folder_.path());
  }

  /// The return code that the message file ends with.
  std::string reported() const {
    if (!folder_.has("PlenarixMessages.dat")) return kNoReport;
    const std::string text = folder_.read("PlenarixMessages.dat");
    const std::string label = "Return Code";
    const std::size_t at = text.find(label);
    return at == text.npos ? kNoEnd : std::to_string(std::stoi(text.substr(at + label.size())));
  }
  bool differenceIsComplete() const {
    return folder_.has("Differenced.dat") &&
           DifferenceBytes(folder_.read("Differenced.dat")).isComplete();
  }
  void expectTrueResult(const ProgramResult& result) const {
    EXPECT_EQ(result.status, kTrueStatus) << result.err;
    EXPECT_EQ(reported(), kTrueReport);
    EXPECT_TRUE(differenceIsComplete());
  }

  /// The bytes of all files, by name; a link to a file counts as one.
  std::map<std::string, std::string> contents() const {
    std::map<std::string, std::string> bytes;
    for (const auto& entry : fs::directory_iterator(folder_.path())) {
      const std::string name = entry.path().filename();
      if (entry.is_regular_file()) bytes[name] = folder_.read(name);
    }
    return bytes;
  }

  static constexpr int kTrueStatus = 128;
  static constexpr const char* kTrueReport = "2176";  // Text and Content
  static constexpr const char* kNoReport = "no message file";
  static constexpr const char* kNoEnd = "no closing report";
  TempFolder folder_;
};

constexpr const char* kUnusable = "QZ001903S (1) File ";
constexpr const char* kMessageFileLine =
    " ****** There was an error opening the Message File named ";

TEST_F(Surroundings, DoNotDisturbAnOrdinaryRun) { expectTrueResult(run()); }

// Devices and FIFOs in the place of files

struct OddFile {
  const char* name;
  const char* prepare;
  const char* arguments;
  std::string told;    // on standard error
  const char* report;  // what the message file ends with

  friend std::ostream& operator<<(std::ostream& out, const OddFile& c) { return out << c.name; }
};

class OddFiles : public Surroundings, public testing::WithParamInterface<OddFile> {};

TEST_P(OddFiles, EndTheRunAtOnce) {
  const OddFile& c = GetParam();
  shell(c.prepare);

  const ProgramResult result = run(c.arguments);

  EXPECT_EQ(result.status, 255);
  EXPECT_EQ(result.err, c.told);
  EXPECT_EQ(reported(), c.report);
  EXPECT_FALSE(folder_.has("Differenced.dat"));
}

const OddFile kOddFiles[] = {
    {"FirstIsNull", "", "-COMPARE=/dev/null,RVF2.rvf",
     kUnusable + std::string("/dev/null: Not a regular file\n"), "-1"},
    {"SecondHasNoEnd", "", "-COMPARE=RVF1.rvf,/dev/zero",
     kUnusable + std::string("/dev/zero: Not a regular file\n"), "-1"},
    {"FirstIsFifo", "mkfifo pipe", "-COMPARE=pipe,RVF2.rvf",
     kUnusable + std::string("pipe: Not a regular file\n"), "-1"},
    {"SecondIsLinkToFifo", "mkfifo pipe; ln -s pipe link", "-COMPARE=RVF1.rvf,link",
     kUnusable + std::string("link: Not a regular file\n"), "-1"},
    {"ControlFileIsFifo", "mkfifo pipe", "-CONTROLFILE=pipe",
     "rvfcompare: control file pipe: Not a regular file\n", "no message file"},
    {"ControlFileHasNoEnd", "", "-CONTROLFILE=/dev/zero",
     "rvfcompare: control file /dev/zero: Not a regular file\n", "no message file"},
    {"NobodyReadsTheMessageFile", "mkfifo pipe", "-MESSAGEFILE=pipe",
     "rvfcompare: message file pipe: No such device or address\n", "no message file"},
    {"NobodyReadsTheDifferenceFile", "mkfifo pipe", "-DIFFERENCEFILE=pipe",
     kUnusable + std::string("pipe: No such device or address\n"), "-1"},
};

INSTANTIATE_TEST_SUITE_P(Places, OddFiles, testing::ValuesIn(kOddFiles),
                         [](const auto& info) { return std::string(info.param.name); });

TEST_F(Surroundings, CatalogueThatIsFifoIsPassedOver) {
  shell("rm MsgResource_en-us.dat; mkfifo MsgResource_en-us.dat");
  expectTrueResult(run());
}

TEST_F(Surroundings, OutputsMayGoToWhoeverReads) {
  const ProgramResult result = shell(
      "mkfifo pipe; exec 3<>pipe; \"$PROGRAM\" -DIFFERENCEFILE=pipe -MESSAGEFILE=/dev/stdout;"
      "status=$?; dd bs=4096 count=1 <&3 >copy 2>&-; exit $status");
  EXPECT_EQ(result.status, kTrueStatus) << result.err;
  EXPECT_TRUE(DifferenceBytes(folder_.read("copy")).isComplete());
  EXPECT_NE(result.out.find("Return Code"), std::string::npos);
}

// Outputs in the place of what the run reads

struct Clash {
  const char* name;
  const char* prepare;
  const char* output;   // where the output is to go
  const char* options;  // of the run, beside it
  const char* what;     // what it would destroy

  friend std::ostream& operator<<(std::ostream& out, const Clash& c) { return out << c.name; }
};

class Clashes : public Surroundings, public testing::WithParamInterface<Clash> {
 protected:
  std::string reason() const {
    return std::string(GetParam().output) + ": It is also " + GetParam().what + " of this run\n";
  }
  std::string argumentsFor(const std::string& option) const {
    return std::string(GetParam().options) + " -" + option + "=" + GetParam().output;
  }
};

TEST_P(Clashes, MessageFileDestroysNothing) {
  shell(GetParam().prepare);
  const auto before = contents();

  const ProgramResult result = run(argumentsFor("MESSAGEFILE"));

  EXPECT_EQ(result.status, 255);
  EXPECT_EQ(result.out, kMessageFileLine + std::string(GetParam().output) + " *****\n");
  EXPECT_EQ(result.err, "rvfcompare: message file " + reason());
  EXPECT_TRUE(contents() == before);
}

TEST_P(Clashes, DifferenceFileDestroysNothing) {
  shell(GetParam().prepare);
  const auto before = contents();

  const ProgramResult result = run(argumentsFor("DIFFERENCEFILE"));

  EXPECT_EQ(result.status, 255);
  EXPECT_NE(result.err.find("It is also " + std::string(GetParam().what)), std::string::npos);
  EXPECT_NE(result.err.find(GetParam().output), std::string::npos);
  EXPECT_EQ(reported(), "-1");
  auto after = contents();
  after.erase("PlenarixMessages.dat");
  EXPECT_TRUE(after == before);
}

const Clash kClashes[] = {
    {"FirstInput", "", "RVF1.rvf", "", "an input"},
    {"SecondInput", "", "RVF2.rvf", "", "an input"},
    {"OtherSpelling", "", "folder/.././/RVF1.rvf", "", "an input"},
    {"AbsolutePath", "", "/proc/self/cwd/RVF1.rvf", "", "an input"},
    {"SymbolicLink", "ln -s RVF1.rvf link", "link", "", "an input"},
    {"LinkToLink", "ln -s RVF1.rvf link; ln -s link other", "other", "", "an input"},
    {"HardLink", "ln RVF2.rvf link", "link", "", "an input"},
    {"LinkToFolder", "ln -s . here", "here/RVF2.rvf", "", "an input"},
    {"InputIsLink", "ln -s RVF1.rvf link", "RVF1.rvf", "-COMPARE=link,RVF2.rvf", "an input"},
    {"ControlFile", "", "c.ctl", "-CONTROLFILE=c.ctl", "a control file"},
    {"NestedControlFile", "echo -CONTROLFILE=c.ctl >d.ctl; ln c.ctl link", "link",
     "-CONTROLFILE=d.ctl", "a control file"},
    {"Catalogue", "", "MsgResource_en-us.dat", "", "the message catalogue"},
    {"LinkToCatalogue", "ln -s MsgResource_en-us.dat link", "link", "", "the message catalogue"},
    {"PlaceOfCatalogue", "rm MsgResource_en-us.dat", "MsgResource_en-us.dat", "",
     "the message catalogue"},
};

INSTANTIATE_TEST_SUITE_P(Outputs, Clashes, testing::ValuesIn(kClashes),
                         [](const auto& info) { return std::string(info.param.name); });

TEST_F(Surroundings, OutputsMustNotBeOneFile) {
  struct Row {
    const char* prepare;
    const char* messages;
    const char* difference;
  };
  const Row rows[] = {
      {"", "new", "new"},
      {"", "new", "./new"},
      {"echo old >old", "old", "old"},
      {"ln old link", "link", "old"},
      {"ln -s new dangling", "dangling", "new"},
      {"ln -s . here; ln -s here/new far", "far", "folder/../dangling"},
      {"mkfifo pipe", "pipe", "pipe"},
  };
  for (const Row& row : rows) {
    shell(row.prepare);
    const auto before = contents();
    const ProgramResult result =
        run(std::string("-MESSAGEFILE=") + row.messages + " -DIFFERENCEFILE=" + row.difference);
    EXPECT_EQ(result.status, 255);
    EXPECT_EQ(result.out, kMessageFileLine + std::string(row.messages) + " *****\n");
    EXPECT_EQ(result.err, std::string("rvfcompare: message file ") + row.messages +
                              ": It is also the difference file of this run\n");
    EXPECT_TRUE(contents() == before) << row.messages;
  }
}

TEST_F(Surroundings, WhatIsSharedWithoutLoss) {
  EXPECT_EQ(run("-MESSAGEFILE=/dev/null -DIFFERENCEFILE=/dev/null").status, kTrueStatus);
  EXPECT_EQ(run("-COMPARE=RVF1.rvf,RVF1.rvf").status, 0);
  shell("ln -s new dangling");
  EXPECT_EQ(run("-DIFFERENCEFILE=dangling").status, kTrueStatus);
  EXPECT_TRUE(DifferenceBytes(folder_.read("new")).isComplete());
}

// Two files that have lost the same page: without severities they would be identical.
TEST_F(Surroundings, LossCountsWithoutCatalogueToo) {
  PageFields lost = page({line()});
  lost.filePosition = 1000000;
  folder_.write("RVF1.rvf", writeCapture(captureOf({page({line()}), lost})).bytes);
  for (const std::string catalogue : {kCatalogue, "no catalogue\n"}) {
    folder_.write("MsgResource_en-us.dat", catalogue);
    EXPECT_EQ(run("-COMPARE=RVF1.rvf,RVF1.rvf").status, 255) << catalogue;
  }
}

// A system that is closed, full, slow or changing

TEST_F(Surroundings, ClosedStreamsDoNotCount) {
  for (const std::string redirections : {">&-", "2>&-", "<&-", "<&- >&- 2>&-"}) {
    SCOPED_TRACE(redirections);
    expectTrueResult(run(redirections));
    EXPECT_EQ(run("-COMPARE=RVF1.rvf,none " + redirections).status, 255);
    EXPECT_EQ(reported(), "-1");
  }
}

// The limit counts in units of 512 bytes. The report is longer than one, the difference file of the
// second run than two.
TEST_F(Surroundings, FullDisk) {
  const ProgramResult noReport = shell("ulimit -f 1; exec \"$PROGRAM\"");
  EXPECT_EQ(noReport.status, 255);
  EXPECT_NE(noReport.err.find("QZ001806S (1) Report PlenarixMessages.dat: File too large"),
            std::string::npos);
  EXPECT_EQ(reported(), kNoEnd);

  std::vector<PageFields> pages(2000);
  folder_.write("RVF1.rvf", writeCapture(captureOf(pages)).bytes);
  folder_.write("RVF2.rvf", writeCapture(captureOf(pages)).bytes);
  const ProgramResult noResult = shell("ulimit -f 8; exec \"$PROGRAM\"");
  EXPECT_EQ(noResult.status, 255);
  EXPECT_EQ(noResult.err, "");
  EXPECT_NE(folder_.read("PlenarixMessages.dat")
                .find("QZ001811S (1) Output Differenced.dat: File too large"),
            std::string::npos);
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
  const ProgramResult result = runUnder({{"CALL", "close"}, {"AT", "1"}, {"FOR", "on"}});
  EXPECT_EQ(result.status, 255);
  EXPECT_NE(folder_.read("PlenarixMessages.dat").find("QZ001848S"), std::string::npos);
}

// Every byte of these files counts, so a run that misses one has no result. Two files that have
// lost the same are not identical.
TEST_F(Surroundings, InputThatShrinksIsDamage) {
  if (!canInjectFaults()) GTEST_SKIP() << "a build with sanitizers";
  const auto size = static_cast<int>(fs::file_size(path("RVF1.rvf")));
  ASSERT_EQ(fs::file_size(path("RVF2.rvf")), fs::file_size(path("RVF1.rvf")));
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
