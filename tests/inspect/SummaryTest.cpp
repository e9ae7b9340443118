#include <gtest/gtest.h>

#include <pugixml.hpp>

#include "inspect/model/JobResults.h"
#include "run/RunFolder.h"

namespace rvf::test {
namespace {

const std::string kBits = "539073";  // for the samples, with a position tolerance of 5

/// A folder of results as rvfjobs leaves it, one line per pair.
class ResultsFolder : public RunFolder {
 public:
  ResultsFolder() { std::filesystem::create_directories(path() / "r/pairs"); }

  /// A pair whose files are not in its folder.
  void add(const std::string& name, const std::string& state, const std::string& bits,
           const std::string& reason = "", const std::string& option = "-pos_tolerance=5",
           const std::string& folder = "") {
    const std::string size = std::to_string(++pairs_ * 1000);
    lines_ += R"({"record":"pair","format":1,"name":")" + name + R"(","folder":"pairs/)" +
              (folder.empty() ? name : folder) + R"(","first":"/a","second":null,"options":[")" +
              option + R"("],"state":")" + state + R"(","reason":")" + reason +
              R"(","status":null,"bits":)" + bits + R"(,"seconds":)" + std::to_string(pairs_) +
              ".5" + R"(,"firstBytes":)" + size + R"(,"secondBytes":null})" + "\n";
    write("r/results.jsonl", lines_);
  }
  /// A pair that differs, with both files.
  void addSamples(const std::string& name, const std::string& bits = kBits,
                  const std::string& option = "-pos_tolerance=5") {
    add(name, "different", bits, "", option);
    std::filesystem::create_directories(path() / "r/pairs" / name);
    for (const char* file : {"first.rvf", "second.rvf"}) {
      std::filesystem::copy(sourcePath("samples/" + std::string(file)), path() / "r/pairs" / name);
    }
  }
  ProgramResult summary(const std::string& arguments) const {
    return shell("I='" + builtPath("rvfinspect") + "'; $I summary " + arguments);
  }

 private:
  std::string lines_;
  int pairs_ = 0;
};

struct Call {
  std::string arguments;
  int status;
  std::string out;  // a part of standard output
  std::string err;  // of standard error
};

void expectAll(const ResultsFolder& folder, const std::vector<Call>& calls) {
  for (const Call& call : calls) {
    const ProgramResult result = folder.summary(call.arguments);
    EXPECT_EQ(result.status, call.status) << call.arguments << "\n" << result.err;
    EXPECT_NE(result.out.find(call.out), std::string::npos) << call.arguments << "\n" << result.out;
    EXPECT_NE(result.err.find(call.err), std::string::npos) << call.arguments << "\n" << result.err;
  }
}

TEST(Summary, TellsTheWorstOfItsPairsByItsStatus) {
  ResultsFolder folder;
  expectAll(folder, {{"r", 2, "", "rvfjobs writes it when a run ends"}});
  folder.add("same", "identical", "0");
  expectAll(folder, {{"r", 0, "identical 1", ""}});
  folder.add("gone", "only-first", "null");
  expectAll(folder, {{"r", 1, "1 only-first: \"gone\"", ""}});
  folder.addSamples("x");
  expectAll(folder, {{"r", 1, "Page count (524288): 1", ""},
                     {"--output r/results.jsonl r", 2, "", "is also an input"}});
  folder.add("f", "failed", "null", "cut at offset 7");
  folder.add("g", "failed", "null", "cut at offset 1234");
  folder.add("h", "killed", "null", "signal 15");
  for (const char* name : {"a", "b", "c", "d", "e"}) folder.add(name, "killed", "null", "signal 9");
  expectAll(folder, {{"r", 2, "5 killed (signal 9): \"a\", \"b\", \"c\" and 2 more", ""},
                     {"r", 2, "2 failed (cut at offset N): \"f\", \"g\"\n", ""},
                     {"r", 2, "Slowest pairs\n  11.500 s: \"e\"\n", ""},
                     {"r", 2, "Largest pairs\n  11000 bytes: \"e\"\n", ""},
                     {"--format jsonl r", 2, R"("failed":8,)", ""},
                     {"--format junit r", 2, "<error message=\"killed: signal 9\"", ""}});
}

TEST(Summary, GroupsChangesOfAllPairsByTheirOwnOptions) {
  ResultsFolder folder;
  const std::string premium = "changed TEXT: text, page 2 at (290, 1010); at least 1 distinct";
  folder.addSamples("x");
  folder.addSamples("y", kBits, "/DIFFTOLERANCE=4");
  expectAll(folder,
            {{"--groups r", 2, "Not explained: \"y\": the files now give ", ""},
             {"--groups r", 2, "In 2 pairs: \"x\", \"y\"\n  2 pages, 2 customers: " + premium, ""},
             {"--groups --format jsonl r", 2, R"("inPairs":{"count":2,"names":["x","y"]})", ""},
             {"--groups --format junit r", 2, "<error message=\"the files now give ", ""}});
}

TEST(Summary, TakesTheOptionsOfAPairAsARunDoes) {
  using enum inspect::OldText;
  struct {
    std::vector<std::u16string> options;
    Tolerances tolerances;
    inspect::OldText oldText;
  } const cases[] = {
      {{}, {0, 0}, kOneByte},
      {{u"-POS_TOLERANCE=5", u"-LINE_TOLERANCE=7"}, {5, 7}, kOneByte},
      {{u"  /difftolerance=4 dots"}, {4, 4}, kOneByte},
      {{u"-DBCS_MODE=True"}, {0, 0}, kTwoBytes},
      {{u"-DBCS_MODE=true", u"-DBCS_MODE=no"}, {0, 0}, kOneByte},
      {{u"POS_TOLERANCE=5", u"-", u"", u"-POS_TOLERANCE"}, {0, 0}, kOneByte},
  };
  for (const auto& c : cases) {
    inspect::PairResult pair;
    pair.options = c.options;
    const inspect::PairOptions options = withOptionsOf(pair, {});
    EXPECT_EQ(options.tolerances.positionTolerance, c.tolerances.positionTolerance);
    EXPECT_EQ(options.tolerances.lineTolerance, c.tolerances.lineTolerance);
    EXPECT_EQ(options.oldText, c.oldText);
  }
}

TEST(Summary, LeavesAcceptedChangesOut) {
  ResultsFolder folder;
  folder.addSamples("x");
  folder.addSamples("y", kBits, "");  // its tolerance comes from elsewhere
  const std::string write =
      "/dev/null 2>/dev/null; $I changes --write-accepted acc "
      "r/pairs/x/first.rvf r/pairs/x/second.rvf >/dev/null; $I summary ";
  expectAll(
      folder,
      {{write + "--accepted acc --position-tolerance 5 r", 0, "by accepted changes alone 2", ""},
       {"--accepted acc --position-tolerance 5 --format junit r", 0, "name=\"y\" />", ""},
       {"--accepted acc r", 2, "Not explained: \"y\"", ""},
       {"/dev/null 2>&1; grep -v TEXT acc | sed 's/\"page\":2/\"page\":7/' >few; $I summary "
        "--position-tolerance 5 --accepted few r",
        1, "changed TEXT", "nothing matches"}});
  for (const std::string name : {"first", "second"}) {
    folder.write("r/pairs/y/" + name + ".rvf",
                 folder.read("r/pairs/y/" + name + ".rvf").substr(0, 5000));
  }
  expectAll(folder, {{"--accepted acc r", 2, "\"y\": r/pairs/y/first.rvf: damaged", ""}});
}

// The page has the data of the JSON Lines, which a browser test compares with what it shows.
TEST(Summary, LinksItsPageToTheReportsThatExist) {
  ResultsFolder folder;
  folder.addSamples("a b#1%");
  folder.addSamples("y");
  folder.add("z", "only-first", "null");
  folder.write("r/pairs/y/result.json", "{}");
  const std::string line = folder.read("r/results.jsonl");
  folder.write("r/pairs/a b#1%/result.json", line.substr(0, line.find('\n') + 1));
  const std::string report = "r 2>&1; cd r/pairs; $I report --pair ";
  const std::string link = R"("report":"pairs/a%20b%231%25/report/index.html"})";
  expectAll(
      folder,
      {{report + "'a b#1%' --out 'a b#1%/report'", 1, "", ""},
       {report + "y --out y/report", 2, "", "y/result.json: is not the result of a pair"},
       {report + "z --out z/report", 2, "", "z/result.json: cannot be read"},
       {report + "y y --pair y --out y/report", 2, "", "--pair"},
       {"--format html r", 1, link, ""},
       {"--format html --output r/index.html r && cat r/index.html", 1, "", ""},
       {"r >index.html --format html --output x.html; cat x.html", 0, "\"report\":\"r/pairs", ""},
       {"r --format html --output r/pairs/z.html; cat r/pairs/z.html", 0, ":\"../pairs/a%20", ""},
       {"--format html --groups r", 1, R"("inPairs":{"count":2,"names":["a b#1%","y"]})", ""}});
  EXPECT_TRUE(std::filesystem::exists(folder.path() / "r/pairs/a b#1%/report/index.html"));
  EXPECT_FALSE(std::filesystem::exists(folder.path() / "r/pairs/y/report"));
  EXPECT_NE(folder.read("r/index.html").find(link), std::string::npos);
  EXPECT_EQ(folder.summary("--format html --redact r").out.find("\"report\":"), std::string::npos);

  // Other files than those compared: the report is written all the same, and says so.
  std::filesystem::copy(folder.path() / "r/pairs/y/first.rvf",
                        folder.path() / "r/pairs/a b#1%/second.rvf",
                        std::filesystem::copy_options::overwrite_existing);
  expectAll(folder, {{report + "'a b#1%' --out 'a b#1%/report'", 2, "", "the files now give "}});
}

// Names and messages are untrusted, and so may be the whole file.
TEST(Summary, TakesNothingInResultsForMoreThanData) {
  ResultsFolder hostile;
  hostile.add(R"(\u001b[2J\u202e<b>&\ud83d\ude00\")", "failed", "null", R"(\u0007\u0085)", "", "x");
  for (const char* format : {"text", "jsonl", "junit", "html"}) {
    const ProgramResult result = hostile.summary(std::string("r --format ") + format);
    EXPECT_EQ(result.status, 2);
    for (const char* code : {"\x1b", "\x07", "\xC2\x85", "\xE2\x80\xAE"}) {
      EXPECT_EQ(result.out.find(code), std::string::npos) << format;
    }
    EXPECT_TRUE(!result.out.starts_with("<") || result.out.find("<b>") == std::string::npos);
    if (result.out.starts_with("<?xml")) {
      EXPECT_TRUE(pugi::xml_document().load_string(result.out.c_str()));
    }
  }
  const std::string pair = hostile.read("r/results.jsonl");
  const std::pair<std::string, std::string> edits[] = {{"pairs/x", "pairs/../../x"},
                                                       {"pairs/x", "/etc"},
                                                       {"pairs/x", "pairs/"},
                                                       {"failed", "unheard-of"},
                                                       {"1000", "-1000"},
                                                       {"1000", "1e300"},
                                                       {"1.5", "1e999"},
                                                       {"\"bits\":null", "\"bits\":4294967296"},
                                                       {"}", ""}};
  for (const auto& [from, to] : edits) {
    std::string edited = pair;
    edited.replace(edited.find(from), from.size(), to);
    hostile.write("r/results.jsonl", pair + edited);
    expectAll(hostile, {{"r", 2, "", "r/results.jsonl: line 2 "}});
  }
}

}  // namespace
}  // namespace rvf::test
