#include <gtest/gtest.h>

#include <pugixml.hpp>
#include <set>

#include "run/RunFolder.h"
#include "support/Capture.h"

namespace rvf::test {
namespace {

/// A folder with both samples and the outputs of a run over them.
class InspectFolder : public RunFolder {
 public:
  InspectFolder() {
    for (const char* name : {"first.rvf", "second.rvf"}) {
      std::filesystem::copy(sourcePath("samples/" + std::string(name)), path());
    }
  }
  ProgramResult inspect(const std::string& arguments) const {
    return shell("I='" + builtPath("rvfinspect") + "'; $I " + arguments);
  }
};

struct Command {
  std::string arguments;
  int status;
  std::string out;  // a part of standard output
  std::string err;  // of standard error
};

TEST(InspectCommands, AnswerWithTheirStatusAndOneLineOfTrouble) {
  const InspectFolder folder;
  ASSERT_EQ(folder.run("-COMPARE=first.rvf,second.rvf -POS_TOLERANCE=5").status, 197);
  folder.write("cut.dat", folder.read("Differenced.dat").substr(0, 200));
  folder.write("broken.rvf", folder.read("first.rvf").substr(0, 5000));
  folder.write("upright.rvf", onePage({text({.runs = {{.x = 40, .y = 60}}, .rotation = 18})}));
  const std::string pair = " first.rvf second.rvf ";
  const Command commands[] = {
      {"--version", 0, "rvfinspect ", ""},
      {"changes --help", 0, "Example:", ""},
      {"", 2, "", "a command is missing: changes, report, list"},
      {"chagnes" + pair, 2, "", "did you mean changes?"},
      {"changes --postion-tolerance 5" + pair, 2, "", "did you mean --position-tolerance?"},
      {"changes --format xml" + pair, 2, "", "xml is not one of text, jsonl, junit"},
      {"changes first.rvf", 2, "", "FIRST requires SECOND"},
      {"changes --from x" + pair, 2, "", "FIRST excludes --from"},
      {"changes --page 0" + pair, 2, "", "0 is no number from 1"},
      {"changes --customer nobody" + pair, 2, "", "such a customer or page"},
      {"changes first.rvf gone.rvf", 2, "", "gone.rvf: No such file or directory"},
      {"changes first.rvf Differenced.dat", 2, "", "Differenced.dat: not a page-capture file"},
      {"changes first.rvf broken.rvf", 2, "", "broken.rvf: damaged"},
      {"changes --output /dev/full" + pair, 2, "", "/dev/full: No space left on device"},
      {"changes --output first.rvf" + pair, 2, "", "first.rvf: is also an input"},
      {"changes" + pair + ">/dev/full", 2, "", "standard output: No space left on device"},
      {"changes" + pair, 1, "text: \"Premium       EUR [-118.40-]{+121.90+}\"", ""},
      {"changes --color always" + pair, 1, "\x1b[32m{+121.90+}\x1b[m", ""},
      {"changes first.rvf first.rvf", 1, "Changes: 0 that count", ""},
      {"changes --customer '#2' --page 2" + pair, 0, "Verdict: identical", ""},
      {"changes --from Differenced.dat --position-tolerance 5", 1, "8 differing", ""},
      {"changes --from Differenced.dat", 2, "",
       "does not agree with its files: customer 1, page 1"},
      {"changes --write-accepted acc" + pair + ">/dev/null; $I changes --accepted acc" + pair, 0,
       "9 accepted", ""},
      {"changes --accepted acc first.rvf first.rvf", 0, "", "nothing matches"},
      {"changes --redact" + pair, 1, "[-999.99-]{+999.99+}", ""},
      {"list Differenced.dat", 1, "page 2: Text, Content (2176)", ""},
      {"list --bit Fonts --format jsonl Differenced.dat", 1, "\"bits\":14720", ""},
      {"list cut.dat", 2, "Incomplete: the file ends inside a field", ""},
      {"list first.rvf", 2, "not a difference file", ""},
      {"dump --customer '#1' --page 9 first.rvf", 2, "", "no such customer or page"},
      {"dump --index --objects first.rvf", 2, "", "excludes"},
      {"dump first.rvf", 0, "text \"Premium       EUR 118.40\"", ""},
      {"dump --redact first.rvf", 0, " data 93 bytes info(", ""},
      {"dump --redact --format jsonl first.rvf | tr '{' '\n' | grep -c '\"length\":93}'", 0, "1",
       ""},
      {"check first.rvf", 0, "first.rvf: sound", ""},
      {"check broken.rvf", 2, "expected a sound page-capture file", ""},
      {"page first.rvf --customer '#1' --page 2", 0, "data:image/png;base64,iVBOR", ""},
      {"page upright.rvf", 0, "viewBox=\"-60 -65 150 175\"", ""},
      {"page first.rvf --redact --page 2", 0, "xxxxxxx", ""},
      {"dump first.rvf | head -1", 0, "File first.rvf", ""},
  };
  for (const Command& c : commands) {
    const ProgramResult result = folder.inspect(c.arguments);
    EXPECT_EQ(result.status, c.status) << c.arguments << "\n" << result.err;
    EXPECT_NE(result.out.find(c.out), std::string::npos) << c.arguments << "\n" << result.out;
    EXPECT_NE(result.err.find(c.err), std::string::npos) << c.arguments << "\n" << result.err;
    EXPECT_LE(std::ranges::count(result.err, '\n'), c.status == 0 ? 9 : 1) << result.err;
  }
}

// A result that is lost is trouble, whichever writer loses it.
TEST(InspectCommands, ReportAFullDisk) {
  const InspectFolder folder;
  ASSERT_EQ(folder.run("-COMPARE=first.rvf,second.rvf").status, 229);
  std::filesystem::create_directory(folder.path("results"));
  folder.write(
      "results/results.jsonl",
      R"({"name":"x","folder":"pairs/x","first":"a","second":"b","options":[],"reason":"",)"
      R"("state":"killed","status":9,"bits":null,"seconds":0.1,"firstBytes":1,)"
      R"("secondBytes":1})");
  const std::map<std::string, std::vector<std::string>> formatsOf = {
      {"changes first.rvf second.rvf", {"text", "text --groups", "jsonl", "junit"}},
      {"list Differenced.dat", {"text", "jsonl", "junit"}},
      {"dump first.rvf", {"text", "text --index", "jsonl"}},
      {"check first.rvf", {"text", "jsonl"}},
      {"summary results", {"text", "jsonl", "junit", "html"}}};
  std::vector<std::string> writers = {
      "page first.rvf --out /dev/full", "page first.rvf >/dev/full",
      "changes first.rvf second.rvf --output /dev/null --write-accepted /dev/full"};
  for (const auto& [command, formats] : formatsOf) {
    for (const std::string& format : formats) {
      writers.push_back(command + " --output /dev/full --format " + format);
      writers.push_back(command + " --format " + format + " >/dev/full");
    }
  }
  for (const std::string& writer : writers) {
    const ProgramResult result = folder.inspect(writer);
    EXPECT_EQ(result.status, 2) << writer;
    EXPECT_NE(result.err.find(": No space left on device\n"), std::string::npos) << writer << "\n"
                                                                                 << result.err;
  }
  EXPECT_EQ(folder.inspect("report first.rvf second.rvf --out /dev/full").status, 2);
}

// What an error line repeats of the command line steers no terminal either.
TEST(InspectCommands, LetNothingOfAnArgumentReachTheTerminal) {
  const InspectFolder folder;
  folder.shell("E=$(printf '\\033[2J'); cp first.rvf \"$E\"; head -c 5000 first.rvf >\"cut$E\"");
  for (const char* arguments : {"$E",
                                "--$E",
                                "changes --$E",
                                "changes gone$E first.rvf",
                                "changes first.rvf cut$E",
                                "changes --from $E",
                                "changes --accepted $E first.rvf first.rvf",
                                "changes --customer $E first.rvf first.rvf",
                                "changes --format $E",
                                "changes --page $E",
                                "changes --output $E $E first.rvf",
                                "list gone$E",
                                "list --bit $E x",
                                "dump gone$E",
                                "dump --customer $E first.rvf",
                                "check cut$E gone$E",
                                "page cut$E",
                                "page --fonts $E first.rvf",
                                "page --out $E/x first.rvf",
                                "summary $E",
                                "report cut$E first.rvf --out x",
                                "report first.rvf first.rvf --out $E"}) {
    const ProgramResult result =
        folder.shell("E=$(printf '\\033[2J'); '" + builtPath("rvfinspect") + "' " + arguments);
    EXPECT_EQ(result.status, 2) << arguments << "\n" << result.err;
    EXPECT_EQ(std::ranges::count(result.err, '\n'), 1) << arguments << "\n" << result.err;
    EXPECT_EQ((result.out + result.err).find('\x1b'), std::string::npos) << arguments;
  }
}

TEST(InspectCommands, LetNothingOfAFileReachTheTerminal) {
  const InspectFolder folder;
  const std::u16string hostile = u"a\x1b[2J\x07\x85\x202E<b>&\"\xD800";
  CaptureFields file = captureOf({{.name = hostile, .body = PageBody{}}});
  file.magic = kWideMagic;
  file.label = hostile;
  file.customers[0].id = hostile;
  file.customers[0].pages[0].body->list.parts = {text({.text = hostile}),
                                                 bookmark({.title = hostile})};
  folder.write("a.rvf", writeCapture(file).bytes);
  file.customers[0].pages[0].body->list.parts = {text({.text = hostile + u"b"})};
  folder.write("b.rvf", writeCapture(file).bytes);
  for (const char* arguments :
       {"changes a.rvf b.rvf", "changes --groups a.rvf b.rvf", "changes --format jsonl a.rvf b.rvf",
        "changes --format junit a.rvf b.rvf", "dump a.rvf", "dump --format jsonl a.rvf",
        "check a.rvf", "check --format jsonl a.rvf", "page a.rvf"}) {
    const std::string out = folder.inspect(arguments).out;
    for (const char* code : {"\x1b", "\x07", "\xC2\x85", "\xE2\x80\xAE", "\xED\xA0\x80"}) {
      EXPECT_EQ(out.find(code), std::string::npos) << arguments;
    }
    if (out.starts_with("<?xml")) {
      EXPECT_TRUE(pugi::xml_document().load_string(out.c_str())) << arguments;
    }
  }
}

// A file that a run rejects or reports as damaged is never called sound, and no other is called
// damaged.
TEST(InspectCommands, CheckAgreesWithARun) {
  std::map<int, int> seen;
  for (const auto& entry : std::filesystem::directory_iterator(sourcePath("tests/reference"))) {
    if (!entry.is_directory()) continue;
    const RunFolder folder(entry.path().filename());
    for (const auto& file : std::filesystem::directory_iterator(folder.path())) {
      if (file.path().extension() != ".rvf") continue;
      const std::string name = "'" + file.path().filename().string() + "'";
      // A run over the file and itself fails if and only if the file cannot be read.
      const int run = folder
                          .run("-COMPARE=" + name + "," + name + " -DIFFERENCEFILE=own.dat " +
                               "-MESSAGEFILE=own.txt")
                          .status;
      const int check = folder.shell("'" + builtPath("rvfinspect") + "' check " + name).status;
      EXPECT_EQ(check == 2, run == 255) << entry.path() << " " << name << " " << run;
      seen[check] += 1;
    }
  }
  EXPECT_GT(seen[2], 5);
  EXPECT_GT(seen[0] + seen[3], 40);
}

}  // namespace
}  // namespace rvf::test
