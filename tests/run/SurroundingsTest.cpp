#include "run/RunFolder.h"
#include "support/FrozenText.h"

namespace rvf::test {
namespace {

// Runs in a faulty environment: files that cannot be used, outputs that would destroy what the run
// reads, closed streams, full disks. The tests check the exit status, the message file, and what
// the operator reads on standard error.

std::string filledIn(std::string text, const std::string& path) {
  const std::size_t at = text.find('@');
  return at == text.npos ? text : text.replace(at, 1, path);
}

TEST_F(Surroundings, WhatAnOperatorReads) {
  CaptureFields otherResolution, noPages, oldTrailer;
  otherResolution.resolution = 600;
  noPages.customers = {};
  PageFields newer = page({});
  newer.body->list.version = kNewestList + 1;
  StaticFields newerStatic;
  newerStatic.version = kNewestStatic + 1;
  CaptureFields newerTable = captureOf({page({})});
  newerTable.statics21 = {newerStatic};
  PageFields lost = page({line()});
  lost.filePosition = 1000000;
  const std::string smallest = smallestCapture(true);
  write("other.rvf", writeCapture(otherResolution).bytes);
  write("newer.rvf", writeCapture(captureOf({newer})).bytes);
  write("newer-table.rvf", writeCapture(newerTable).bytes);
  write("order1.rvf", onePage({text({.text = u"a"}), text({.text = u"b"})}));
  write("order2.rvf", onePage({text({.text = u"b"}), text({.text = u"a"})}));
  write("cut.rvf", smallestCapture(false).substr(0, 32));  // ends where its index should be
  write("no-trailer.rvf", smallest.substr(0, smallest.size() - 1));
  write("version.rvf", smallest.substr(0, 8) + "\x09" + smallest.substr(9));
  write("empty.rvf", "");
  write("text.rvf", "Dear Mrs Weber, ...");
  write("no-pages.rvf", writeCapture(noPages).bytes);
  write("lost.rvf", writeCapture(captureOf({page({line()}), lost, lost})).bytes);
  write("all-lost.rvf", writeCapture(captureOf(std::vector<PageFields>(12, lost))).bytes);
  write("warned.rvf", onePage({startEnd({.nameValues = std::vector<NameValueFields>(65536)})}));
  write("mark.ctl", "\xFE\xFF-SIMPLERETURN\n");
  write("bad.ctl", "-SIMPLERETURN\n\n-P\xD6S_TOLERANCE=5\n% -X\n-F\x1BO\n");
  write("good.ctl", "-POS_TOLERANCE=5mm\n-CONTROLFILE=bad.ctl");
  shell("mkfifo pipe; ln -s pipe link; truncate -s 2147483647 long.rvf; truncate -s 2G huge.rvf");
  std::string told;
  for (const char* place : {"-COMPARE=@,RVF2.rvf", "-COMPARE=RVF1.rvf,@", "-DIFFERENCEFILE=@",
                            "-MESSAGEFILE=@", "-CONTROLFILE=@"}) {
    const bool isControlFile = std::string(place).starts_with("-CON");
    for (const std::string path :
         {"none/file", "none/\xFF\xC3\xA4", "folder", "/dev/full", "/dev/zero", "pipe", "link"}) {
      if (path == "pipe" && isControlFile) break;  // would wait for a writer
      told += account(filledIn(place, path));
    }
  }
  for (const char* arguments : {"-COMPARE=RVF1.rvf,RVF1.rvf",
                                "-COMPARE=order1.rvf,order2.rvf -SIMPLERETURN",
                                "-COMPARE=RVF1.rvf,other.rvf",
                                "-COMPARE=RVF1.rvf,other.rvf /simplereturn",
                                "-COMPARE=RVF1.rvf,cut.rvf",
                                "-COMPARE=empty.rvf,cut.rvf -SIMPLERETURN",
                                "-COMPARE=text.rvf,RVF1.rvf",
                                "-COMPARE=no-trailer.rvf,RVF1.rvf",
                                "-COMPARE=version.rvf,RVF1.rvf",
                                "-COMPARE=RVF1.rvf,no-pages.rvf",
                                "-COMPARE=long.rvf,RVF1.rvf",
                                "-COMPARE=huge.rvf,RVF1.rvf",
                                "-COMPARE=newer.rvf,newer.rvf",
                                "-COMPARE=lost.rvf,newer-table.rvf",
                                "-COMPARE=lost.rvf,lost.rvf",
                                "-COMPARE=lost.rvf,all-lost.rvf",
                                "-COMPARE=RVF1.rvf,",
                                "word -FOO=1 '' 2 -COMPARE=a -CONTROLFILE=none",
                                "-CONTROLFILE=/dev/null",
                                "-CONTROLFILE=mark.ctl -CONTROLFILEENCODING=UTF8 -CONTROLFILE=none",
                                "-CONTROLFILE=good.ctl -CONTROLFILE=c.ctl",
                                "-COMPARE=warned.rvf,warned.rvf",
                                "--version",
                                "--help --version"}) {
    told += account(arguments);
  }
  // Two files that have lost the same page are not identical, whatever the catalogue says.
  for (const std::string catalogue :
       {"no catalogue", "// test\\n#define MESS_SYMB_VER 1602008\\n#define NO_LOSS 90 // W|||x",
        "// test\\n#define MESS_SYMB_VER 1602008\\n#define NO_SEPARATORS 9999 // W"}) {
    told += account("-COMPARE=lost.rvf,lost.rvf -SIMPLERETURN",
                    "printf '" + catalogue + "\\n' >MsgResource_en-us.dat");
  }
  expectFrozen("operator.txt", told);
  EXPECT_TRUE(run("--help").out.starts_with("usage: rvfcompare [OPTION]...\n"));
  EXPECT_EQ(shell("echo -SIMPLERETURN | \"$P\" -CONTROLFILE=/dev/stdin").status, 1);
  EXPECT_EQ(shell("echo -SIMPLERETURN >pipe & \"$P\" -CONTROLFILE=pipe").status, 1);
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
    std::string output;        // where the output should go
    std::string options = "";  // further options of the run
  };
  const Clash clashes[] = {
      {"", "RVF1.rvf"},
      {"", "RVF2.rvf"},
      {"", "folder/.././/RVF1.rvf"},
      {"", "/proc/self/cwd/RVF1.rvf"},
      {"ln -s RVF1.rvf link", "link"},
      {"ln -s link other", "other"},
      {"ln RVF2.rvf hard", "hard"},
      {"ln -s . here", "here/RVF2.rvf"},
      {"", "RVF1.rvf", "-COMPARE=link,RVF2.rvf "},
      {"", "c.ctl", "-CONTROLFILE=c.ctl "},
      {"echo -CONTROLFILE=c.ctl >d.ctl", "c.ctl", "-CONTROLFILE=d.ctl "},
      {"", "MsgResource_en-us.dat"},
      {"ln -s MsgResource_en-us.dat texts", "texts"},
      {"", "new", "-DIFFERENCEFILE=new "},
      {"", "new", "-DIFFERENCEFILE=./new "},
      {"echo old >old", "old", "-DIFFERENCEFILE=old "},
      {"ln old both", "both", "-DIFFERENCEFILE=old "},
      {"ln -s new dangling", "dangling", "-DIFFERENCEFILE=new "},
      {"ln -s here/new far", "far", "-DIFFERENCEFILE=folder/../dangling "},
      {"mkfifo pipe", "pipe", "-DIFFERENCEFILE=pipe "},
      {"rm MsgResource_en-us.dat", "MsgResource_en-us.dat"},
  };
  std::string told;
  for (const auto& [prepare, output, options] : clashes) {
    shell(prepare);
    const auto before = files();
    for (const std::string option : {"-MESSAGEFILE=", "-DIFFERENCEFILE="}) {
      if (options.starts_with(option)) continue;  // the two conflict with each other
      told += account(options + option + output);
      shell("rm -f PlenarixMessages.dat");
      EXPECT_TRUE(files() == before) << told;
    }
  }
  expectFrozen("clashing-outputs.txt", told);
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

// The limit is in units of 512 bytes. The report is longer than one unit, the difference file of
// the second run longer than eight.
TEST_F(Surroundings, FullDisk) {
  std::string told = account("", "ulimit -f 1");
  const std::string pair = writeCapture(captureOf(std::vector<PageFields>(2000))).bytes;
  write("RVF1.rvf", pair);
  write("RVF2.rvf", pair);
  told += account("", "ulimit -f 8");
  expectFrozen("full-disk.txt", told);
}

// The difference file is a full pipe, so the run blocks in the middle.
TEST_F(Surroundings, TerminalsAndInterruptions) {
  std::vector<PageFields> pages(40000);
  write("RVF1.rvf", writeCapture(captureOf(pages)).bytes);
  pages.back() = page({line()});
  write("RVF2.rvf", writeCapture(captureOf(pages)).bytes);
  shell("mkfifo pipe");
  const std::string notice =
      "rvfcompare: interrupted: the difference file and the message file are incomplete";
  const std::string timeout = "exec timeout --foreground --preserve-status -s ";
  const ProgramResult interrupted =
      shell("exec 3<>pipe; " + timeout + "INT 1 \"$P\" -DIFFERENCEFILE=pipe");
  EXPECT_EQ(interrupted.status, 130);
  EXPECT_EQ(interrupted.err, notice + "\n");
  EXPECT_EQ(report(), kNoEnd);

  // The reader of the pipe takes one block and then either the rest or nothing.
  const std::string reader =
      "export P; exec 3<>pipe; (until [ -s PlenarixMessages.dat ]; do sleep 0.1; done; sleep 1;"
      "dd bs=65536 count=1 <&3 >taken 2>taken; ";
  const std::pair<std::string, std::string> rows[] = {
      {reader + "exec cat <&3 >taken) & script -qec '\"$P\"",
       "rvfcompare: 1 of 40000 pages differs"},
      {reader + ") & script -qec '" + timeout + "TERM 4 \"$P\"", notice}};
  for (const auto& [command, result] : rows) {
    shell("rm PlenarixMessages.dat");
    const std::string shown = shell(command + " -DIFFERENCEFILE=pipe' /dev/null; kill $!").out;
    // The progress line, as many blanks over it, and the result in its place.
    const std::size_t start = shown.find("\r0 of 1 customers, "), end = shown.rfind(" differ\r");
    ASSERT_TRUE(start != shown.npos && end != shown.npos) << shown;
    const std::size_t length = end + 7 - (shown.rfind("\r0 of", end) + 1);
    EXPECT_EQ(shown.substr(end + 7), "\r" + std::string(length, ' ') + "\r" + result + "\r\n");
  }
}

}  // namespace
}  // namespace rvf::test
