#include "run/RunFolder.h"

namespace rvf::test {
namespace {

// What a run does among things that are not as they should be: files that cannot be used, outputs
// that would destroy what the run reads, streams that are closed, disks that are full. What counts:
// the exit status, what the message file tells, and what the operator reads on standard error.

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
    const char* role;       // where the reason is all that is told
    const char* report;
    bool isRead;
  };
  const Place places[] = {
      {"-COMPARE=@,RVF2.rvf", "", "-1", true},
      {"-COMPARE=RVF1.rvf,@", "", "-1", true},
      {"-CONTROLFILE=@", " (control file)", kNoReport, true},
      {"-DIFFERENCEFILE=@", "", "-1", false},
      {"-MESSAGEFILE=@", " (message file)", kNoReport, false},
  };
  shell("mkfifo pipe; ln -s pipe link");
  for (const auto& [path, whyNotRead, whyNotWritten] : files) {
    for (const auto& [arguments, role, expected, isRead] : places) {
      const std::string reason = isRead                     ? whyNotRead
                                 : whyNotWritten == nullptr ? ""
                                                            : whyNotWritten;
      const bool isControlFile = std::string(role).starts_with(" (c");
      if (reason.empty() || (isControlFile && reason.starts_with("Not"))) continue;
      SCOPED_TRACE(filledIn(arguments, path));
      const ProgramResult result = runAnew(filledIn(arguments, path));
      const std::string why = std::string(path) + ": " + reason;
      EXPECT_EQ(result.status, 255);
      EXPECT_EQ(result.err, (*role == 0 ? "QZ001903S (1) File " + why + "\n" : "") +
                                "rvfcompare: " + why + role + "\n");
      EXPECT_EQ(result.out.empty(), isRead || report() != kNoReport) << result.out;
      EXPECT_EQ(report(), expected);
      EXPECT_FALSE(has(differenceName));
    }
  }
}

TEST_F(Surroundings, ControlFilesMayBePipes) {
  EXPECT_EQ(shell("echo -SIMPLERETURN | \"$P\" -CONTROLFILE=/dev/stdin").status, 1);
  EXPECT_EQ(shell("mkfifo pipe; echo -SIMPLERETURN >pipe & \"$P\" -CONTROLFILE=pipe").status, 1);
  EXPECT_EQ(run("-CONTROLFILE=/dev/null").status, kTrueStatus);
  EXPECT_EQ(
      run("-CONTROLFILE=/dev/zero").err,
      "rvfcompare: /dev/zero: Internal Buffer Full - End of Record Not Found (control file)\n");
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
  write("warned.rvf", onePage({startEnd({.nameValues = std::vector<NameValueFields>(65536)})}));
  write("mark.ctl", "\xFE\xFF-SIMPLERETURN\n");
  write("bad.ctl", "-SIMPLERETURN\n\n-P\xD6S_TOLERANCE=5\n% -X\n-F\x1BO\n");
  write("good.ctl", "-POS_TOLERANCE=5mm\n");
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
      {"-COMPARE=RVF1.rvf,cut.rvf", 255, unusable + "cut.rvf: Invalid RVF\n-1", 'E',
       "rvfcompare: cut.rvf: Damaged or cut short at offset 32, in the header, the shared objects "
       "or "
       "the index\n"},
      {"-COMPARE=empty.rvf,cut.rvf -SIMPLERETURN", 255, unusable + "empty.rvf: Invalid RVF\n-1",
       'E', "rvfcompare: empty.rvf: The file is empty\n"},
      // Nothing is closed: no closing report, and the difference file's bytes are lost.
      {"-COMPARE=newer.rvf,newer.rvf", 255, kNoEnd, 'E',
       "QZ002564S (1) Record DRAWLIST 108, known 107\n"
       "rvfcompare: newer.rvf: A record DRAWLIST has version 108, this program knows versions up "
       "to "
       "107, at offset 44, customer 0 \"C1\", page 0\n"},
      {"-COMPARE=RVF1.rvf,", 255, "-1", 'N',
       "QZ001903S (1) File (no name): No such file or directory\n"
       "rvfcompare: (no name): No such file or directory\n"},
      {"word -FOO=1 '' 2 -COMPARE=a -CONTROLFILE=none", 255, kNoReport, 'N',
       "QZ001019E (1) Option word\nQZ001019E (2) Option -FOO=1  2\n"
       "QZ001019E (3) Option -COMPARE=a\n"
       "rvfcompare: word: an option begins with - or /, as in -COMPARE=FIRST,SECOND\n"
       "rvfcompare: -FOO=1  2: no such option\n"
       "rvfcompare: -COMPARE=a: the option is to be written as -COMPARE=FIRST,SECOND\n"},
      {"-CONTROLFILE=mark.ctl -CONTROLFILEENCODING=UTF8 -CONTROLFILE=none", 255, kNoReport, 'N',
       "rvfcompare: mark.ctl: Incorrect Byte-Order Mark Found in UTF Encoded File (control "
       "file)\n"},
      {"-CONTROLFILE=bad.ctl -CONTROLFILE=good.ctl", 255, "-1", 'N',
       "rvfcompare: good.ctl:1: warning: -POS_TOLERANCE=5mm: taken as 5\n"
       "QZ001019E (1) Option -Pd6S_TOLERANCE=5\n"
       "rvfcompare: bad.ctl:3: -P\xC3\x96S_TOLERANCE=5: no such option; did you mean "
       "-POS_TOLERANCE=N?\n"
       "rvfcompare: bad.ctl:5: -F\\x1BO: no such option\n"},
      {"-DIFFERENCEFILE=/dev/full", 255,
       "QZ001811S (1) Output /dev/full: No space left on device\n2176", 'N',
       "rvfcompare: /dev/full: writing failed: No space left on device\n"},
      {"-MESSAGEFILE=/dev/full", 255, kNoReport, 'C',
       "QZ001806S (1) Report /dev/full: No space left on device\n"
       "rvfcompare: /dev/full: writing failed: No space left on device\n"},
      {"-COMPARE=warned.rvf,warned.rvf", 255, "QZ009048S (1) Values\nQZ009048S (2) Values\n129",
       'C', "rvfcompare: PlenarixMessages.dat: It holds a message that is severe\n"},
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
    const std::string reason = "It is also " + what + " of this run";

    ProgramResult result = run(options + "-MESSAGEFILE=" + output);
    EXPECT_EQ(result.status, 255);
    EXPECT_EQ(result.out, kMessageFileLine + output + " *****\n");
    EXPECT_EQ(result.err, "rvfcompare: " + output + ": " + reason + " (message file)\n");
    EXPECT_TRUE(files() == before);

    if (what == "the difference file") continue;
    result = run(options + "-DIFFERENCEFILE=" + output);
    EXPECT_EQ(result.status, 255);
    EXPECT_TRUE(result.err.ends_with("rvfcompare: " + output + ": " + reason + "\n"));
    EXPECT_EQ(report(), "-1");
    shell("rm PlenarixMessages.dat");
    EXPECT_TRUE(files() == before);
  }
}

// Two files that have lost the same page are not identical, whatever the catalogue knows of it,
// unless it says that this is not severe.
TEST_F(Surroundings, LossCountsWithoutTheCatalogue) {
  PageFields lost = page({line()});
  lost.filePosition = 1000000;
  write("RVF1.rvf", writeCapture(captureOf({page({line()}), lost, lost})).bytes);
  const std::string head = "// test\n#define MESS_SYMB_VER 1602008\n";
  const std::pair<std::string, int> catalogues[] = {
      {kCatalogue, 255},
      {"no catalogue\n", 255},
      {head, 255},
      {head + "#define NO_SEPARATORS 9999 // W\n", 255},
      {head + "#define DAMAGED 9042 // S|0|1|Damage\n", 255},
      {head + "#define DAMAGED 9042 // W|0|0|Damage\n", 0},
      {head + "#define DAMAGED 9042 // W|0|1|Damage\n", 0},
  };
  for (const auto& [catalogue, status] : catalogues) {
    SCOPED_TRACE(catalogue);
    write("MsgResource_en-us.dat", catalogue);
    EXPECT_EQ(run("-COMPARE=RVF1.rvf,RVF1.rvf -SIMPLERETURN").status, status);
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
  EXPECT_EQ(noReport.err,
            "QZ001806S (1) Report PlenarixMessages.dat: File too large\n"
            "rvfcompare: PlenarixMessages.dat: writing failed: File too large\n");
  EXPECT_EQ(report(), kNoEnd);

  const std::string pair = writeCapture(captureOf(std::vector<PageFields>(2000))).bytes;
  write("RVF1.rvf", pair);
  write("RVF2.rvf", pair);
  const ProgramResult noResult = shell("ulimit -f 8; exec \"$P\"");
  EXPECT_EQ(noResult.status, 255);
  EXPECT_EQ(noResult.err, "rvfcompare: Differenced.dat: writing failed: File too large\n");
  EXPECT_EQ(report(), "QZ001811S (1) Output Differenced.dat: File too large\n0");
  EXPECT_FALSE(differenceIsComplete());
}

TEST_F(Surroundings, QuestionsTouchNoFile) {
  const ProgramResult version = run("--version");
  EXPECT_EQ(version.status, 0);
  EXPECT_EQ(version.out, "rvfcompare 16.2.0\n");
  const ProgramResult help = run("--help");
  EXPECT_EQ(help.status, 0);
  EXPECT_TRUE(help.out.starts_with("usage: rvfcompare [OPTION]...\n"));
  EXPECT_NE(help.out.find("\n  -POS_TOLERANCE=N            positions may"), std::string::npos);
  EXPECT_EQ(version.err + help.err, "");
  EXPECT_FALSE(has(messagesName));
  EXPECT_NE(run("--help --version").err.find("understood as the only argument"), std::string::npos);
}

// The difference file is a pipe that takes no more, so that the run is in its midst.
TEST_F(Surroundings, TerminalsAndInterruptions) {
  std::vector<PageFields> pages(40000);
  write("RVF1.rvf", writeCapture(captureOf(pages)).bytes);
  pages.back() = page({line()});
  write("RVF2.rvf", writeCapture(captureOf(pages)).bytes);
  shell("mkfifo pipe");
  const std::string start = "exec 3<>pipe; ";
  for (const auto& [name, status] : {std::pair("INT", 130), std::pair("TERM", 143)}) {
    const ProgramResult result = shell(start + "exec timeout --foreground --preserve-status -s " +
                                       name + " 0.4 \"$P\" -DIFFERENCEFILE=pipe");
    EXPECT_EQ(result.status, status);
    EXPECT_EQ(result.err,
              "rvfcompare: interrupted: the difference file and the message file are incomplete\n");
    EXPECT_EQ(report(), kNoEnd);
  }
  const std::string terminal = "script -qec '$P -DIFFERENCEFILE=pipe' /dev/null";
  const std::string shown =
      shell(start + "export P; (sleep 0.4; exec cat <&3 >taken) & " + terminal + "; kill $!").out;
  const std::size_t line = shown.find("\r0 of 1 customers, ");
  const std::size_t result = shown.find("\rrvfcompare: 1 of 40000 pages differs\r\n");
  ASSERT_TRUE(line != shown.npos && result != shown.npos) << shown;
  EXPECT_EQ(shown.find_first_not_of(" \r", shown.rfind("differ", result) + 6), result + 1)
      << "the line is erased";
}

}  // namespace
}  // namespace rvf::test
