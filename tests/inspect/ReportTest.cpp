#include <gtest/gtest.h>

#include <array>
#include <nlohmann/json.hpp>
#include <set>

#include "inspect/Commands.h"
#include "inspect/Options.h"
#include "inspect/model/Trouble.h"
#include "inspect/output/ReportFolder.h"
#include "inspect/output/ReportPlan.h"
#include "inspect/output/SharedDrawings.h"
#include "inspect/output/ShownText.h"
#include "messages/MessageReporter.h"
#include "run/RunFolder.h"

namespace rvf::test {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;

std::set<std::string> namesIn(const fs::path& folder) {
  std::set<std::string> names;
  for (const auto& entry : fs::recursive_directory_iterator(folder)) {
    if (!entry.is_directory()) names.insert(fs::relative(entry.path(), folder).string());
  }
  return names;
}

std::string between(const std::string& text, const std::string& start, const std::string& end) {
  const std::size_t from = text.find(start) + start.size();
  return text.substr(from, text.find(end, from) - from);
}

/// The report on two files.
class Report : public TempFolder {
 public:
  Report(const std::string& first, const std::string& second, i32 maxPages = 200) {
    inspect::ReportOptions options;
    options.first = write("first.rvf", first);
    options.second = write("second.rvf", second);
    options.out = path("report");
    options.maxPages = maxPages;
    options.progress = inspect::When::kNever;
    status = inspect::runReport(options);
    messageReporter.reset();
    html = read("report/index.html");
    data = json::parse(between(html, "id=\"data\">", "</script>"));
  }
  /// What a data file brings.
  json brought(const std::string& name) const {
    return json::parse(between(read("report/" + name), "rvfReport.receive(", ");\n"));
  }
  /// The first group of a kind and type.
  json group(const std::string& kind, const std::string& type) const {
    for (const json& each : data["list"]["groups"]) {
      if (each["kind"] == kind && each["type"] == type) return each;
    }
    return {};
  }

  int status = -1;
  std::string html;
  json data;
};

std::string bytesOf(const CaptureFields& file) { return writeCapture(file).bytes; }

Part words(const std::u16string& content, int x = 100, int y = 100) {
  const int count = static_cast<int>(content.size());
  return text({.text = content, .runs = {{.x = x, .y = y, .charCount = count}}, .rotation = 0});
}

CaptureFields wide(std::vector<PageFields> pages) {
  CaptureFields file = captureOf(std::move(pages));
  file.magic = kWideMagic;
  return file;
}

/// A report says what it is in its first line.
std::string anyReport() { return std::string(inspect::kReportMark) + "\n<html>"; }

TEST(ReportFolder, IsReplacedOnlyByAWholeReportAndOnlyIfItIsOne) {
  struct Case {
    const char* name;
    void (*prepare)(const TempFolder&);
    bool isTaken;
  };
  const Case cases[] = {
      {"new", [](const TempFolder&) {}, true},
      {"new/in/new", [](const TempFolder&) {}, true},
      {"slash/", [](const TempFolder&) {}, true},
      {"empty", [](const TempFolder& at) { fs::create_directory(at.path("empty")); }, true},
      {"report",
       [](const TempFolder& at) {
         fs::create_directories(at.path("report/pages"));
         at.write("report/index.html", anyReport());
         at.write("report/pages/00009.js", "old");
       },
       true},
      {"mine",
       [](const TempFolder& at) {
         fs::create_directory(at.path("mine"));
         at.write("mine/index.html", "<!doctype html><html>");
       },
       false},
      {"file", [](const TempFolder& at) { at.write("file", anyReport()); }, false},
      {"link", [](const TempFolder& at) { fs::create_symlink("/tmp", at.path("link")); }, false},
      {"..", [](const TempFolder&) {}, false},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const TempFolder folder;
    c.prepare(folder);
    const std::set<std::string> before = namesIn(folder.path());
    const std::string target = folder.path(c.name);
    if (!c.isTaken) {
      EXPECT_THROW(inspect::ReportFolder{target}, inspect::Trouble);
      EXPECT_EQ(namesIn(folder.path()), before);
      continue;
    }
    {
      inspect::ReportFolder dropped(target);
      dropped.write("pages/00000.js", "x");
    }
    EXPECT_EQ(namesIn(folder.path()), before) << "what is not completed leaves nothing";
    inspect::ReportFolder report(target);
    report.write("pages/00000.js", "page");
    report.write("index.html", "start");
    EXPECT_EQ(fs::exists(fs::path(target) / "pages/00000.js"), false);
    report.complete();
    EXPECT_EQ(namesIn(target), (std::set<std::string>{"index.html", "pages/00000.js"}));
    std::set<std::string> siblings;
    for (const auto& entry : fs::directory_iterator(folder.path())) {
      siblings.insert(entry.path().filename().string());
    }
    EXPECT_EQ(siblings.size(), 1U) << "neither the unfinished nor the old folder is left";
  }
}

// A file may grow to 8 KiB only, as on a disk that is full.
TEST(ReportFolder, LeavesNothingWhenTheDiskIsFull) {
  const RunFolder folder;
  const std::string inputs =
      sourcePath("samples/first.rvf") + " " + sourcePath("samples/second.rvf");
  const ProgramResult result =
      folder.shell("trap '' XFSZ; ulimit -f 16; exec '" + builtPath("rvfinspect") + "' report " +
                   inputs + " --out report");
  EXPECT_EQ(result.status, inspect::status::kTrouble);
  EXPECT_NE(result.err.find("File too large"), std::string::npos) << result.err;
  EXPECT_TRUE(fs::is_empty(folder.path()));
}

// The policy lets the browser run and apply what it has the digest of, and nothing else.
TEST(Report, AllowsItsOwnScriptAndStyleAlone) {
  const Report report(smallestCapture(true), smallestCapture(true));
  EXPECT_EQ(report.status, inspect::status::kSame);
  const auto policyHash = [&](const std::string& content) {
    report.write("hashed", content);
    const ProgramResult made = runProgram({"/usr/bin/sha256sum", "hashed"}, report.path(), 10);
    static constexpr char kAlphabet[] =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string encoded;
    for (std::size_t at = 0; at < 64; at += 3) {  // three digits are two letters
      const std::string digits = (made.out.substr(0, 64) + "00").substr(at, 3);
      const unsigned bits = static_cast<unsigned>(std::stoul(digits, nullptr, 16));
      encoded += {kAlphabet[bits >> 6U], kAlphabet[bits & 63U]};
    }
    return "'sha256-" + encoded.substr(0, 43) + "='";
  };
  const std::string policy = between(report.html, "Content-Security-Policy\" content=\"", "\"");
  const std::string script = between(report.html, "\n<script>", "</script>");
  const std::string style = between(report.html, "<style>", "</style>");
  EXPECT_NE(policy.find("default-src 'none'; script-src " + policyHash(script) + " file:;"),
            std::string::npos)
      << policy;
  EXPECT_NE(policy.find("style-src " + policyHash(style) + ";"), std::string::npos) << policy;
  EXPECT_EQ(script.find("eval("), std::string::npos);
  EXPECT_EQ(script.find("innerHTML"), std::string::npos);
}

TEST(Report, EscapesWhatCouldEndAScript) {
  const std::u16string hostile =
      std::u16string(u"</script><script>x<!--\u2028\u2029\"\\\u0001") + char16_t{0xDC00} + u"!";
  CaptureFields first = wide({page({words(hostile)})});
  first.label = first.customers[0].id = first.customers[0].pages[0].name = hostile;
  CaptureFields second = first;
  second.label = hostile + u"2";
  second.customers[0].pages[0] = page({words(hostile + u"2")});
  const Report report(bytesOf(first), bytesOf(second));
  std::string told = "</script><script>x<!--\u2028\u2029\"\\\u0001\uFFFD!";
  EXPECT_EQ(report.data["first"]["label"], told);
  EXPECT_EQ(report.data["pages"][0]["id"], told);
  const json drawn = report.brought("pages/00000.js");
  EXPECT_EQ(drawn["changes"][0]["text"], told);
  for (const std::string& name : namesIn(report.path("report"))) {
    SCOPED_TRACE(name);
    const std::string bytes = report.read("report/" + name);
    EXPECT_EQ(bytes.find("\u2028"), std::string::npos);
    EXPECT_EQ(bytes.find('\u0001'), std::string::npos);
    EXPECT_EQ(bytes.find("\xED\xB0"), std::string::npos) << "half a pair";
  }
  EXPECT_EQ(between(report.html, "id=\"data\">", "</script>").find('<'), std::string::npos);
}

TEST(Report, DrawsAFewPagesOfEachGroupAndThenTheLargest) {
  inspect::ReportPlan plan;
  std::array<inspect::ChangeGroup, 3> groups;
  const std::array<i32, 3> pages = {6, 2, 1};
  std::vector<const inspect::ChangeGroup*> order;
  for (std::size_t g = 0; g < groups.size(); ++g) {
    groups[g].id = g;
    order.push_back(&groups[g]);
    for (i32 p = 0; p < pages[g]; ++p) plan.add(g, {static_cast<i32>(g), p, p});
    plan.add(g, {static_cast<i32>(g), pages[g] - 1, pages[g] - 1});  // a second change there
  }
  const std::pair<std::size_t, std::string> cases[] = {
      {0, ""},
      {1, "0/0 "},
      {3, "0/0 1/0 2/0 "},
      {5, "0/0 0/1 1/0 1/1 2/0 "},
      {7, "0/0 0/1 0/2 0/3 1/0 1/1 2/0 "},
      {99, "0/0 0/1 0/2 0/3 0/4 0/5 1/0 1/1 2/0 "},
  };
  for (const auto& [most, expected] : cases) {
    std::string chosen;
    for (const inspect::PagePlace& place : plan.choose(order, most)) {
      chosen += std::to_string(place.customer) + "/" + std::to_string(place.first) + " ";
    }
    EXPECT_EQ(chosen, expected) << most;
  }
}

TEST(Report, StoresOnceWhatDrawingsHaveInCommon) {
  std::vector<std::string> stored;
  inspect::SharedDrawings shared([&](i32 number, const std::string& content) {
    EXPECT_EQ(number, static_cast<i32>(stored.size()));
    stored.push_back(content);
  });
  const auto drawing = [](const std::string& head, const std::string& image) {
    return "<svg xmlns=\"s\" viewBox=\"0 0 9 8\"><defs><g id=\"a\"><text>" + head +
           "</text></g></defs><use href=\"#a\"/><image href=\"data:" + image + "\"/></svg>";
  };
  const inspect::SplitDrawing first = shared.split(drawing("head", "1"));
  const inspect::SplitDrawing same = shared.split(drawing("head", "1"));
  const inspect::SplitDrawing other = shared.split(drawing("head 2", "1"));
  EXPECT_EQ(stored,
            (std::vector<std::string>{"data:1", "<text>head</text>", "<text>head 2</text>"}));
  EXPECT_EQ(first.svg, same.svg);
  EXPECT_EQ(other.stored, (std::vector<i32>{0, 2}));
  EXPECT_EQ(first.viewBox, "0 0 9 8");
  EXPECT_NE(first.svg.find("<g id=\"a\" data-stored=\"1\"/>"), std::string::npos) << first.svg;
}

// An object that only the second file has is drawn where its pages use it, with an outline.
TEST(Report, DrawsObjectsOfTheSecondFileAlone) {
  const auto file = [](bool hasObject) {
    std::vector<Part> parts = {words(u"Body", 100, 500)};
    CaptureFields made = captureOf({page(parts), page(parts)});
    if (hasObject) {
      made.statics21 = {{.first = {.parts = {words(u"Head", 0, 0)}}}};
      parts.push_back(staticRef({.staticIndex = 0, .x = 300, .y = 200, .width = 50}));
      made.customers[0].pages[1] = page(parts);
    }
    return bytesOf(made);
  };
  const Report report(file(false), file(true));
  const json group = report.group("added", "OBJECT");
  ASSERT_EQ(group["drawn"].size(), 1U) << group;
  EXPECT_EQ(group["picture"]["side"], "second");
  const json box = group["picture"]["box"];
  EXPECT_EQ(box[2].get<int>() - box[0].get<int>(), 50);
  EXPECT_EQ(report.data["pages"][0]["second"], 1);
}

// What keeps a report from being whole is in it, and so is what was read before.
TEST(Report, OfDamagedFilesSaysWhatIsMissing) {
  const Capture whole =
      writeCapture(captureOf({page({words(u"a"), words(u"b")}), page({words(u"c")})}));
  std::string damaged = whole.bytes;
  const auto body = static_cast<std::size_t>(whole.bodyOffsets[0]);
  const auto next = static_cast<std::size_t>(whole.bodyOffsets[1]);
  damaged.replace(next - 20, 16, std::string(16, '\x7F'));
  ASSERT_LT(body, next - 20);
  const Report report(whole.bytes, damaged);
  EXPECT_EQ(report.status, inspect::status::kTrouble);
  EXPECT_EQ(report.data["summary"]["complete"], false);
  EXPECT_EQ(report.data["damagedPages"], 1);
  EXPECT_EQ(report.data["damages"][0]["page"], 0);
  EXPECT_EQ(report.data["summary"]["pagesCompared"], 2);
}

// No word of a file is in a redacted report, wherever it stood.
TEST(Report, RedactsEverything) {
  CaptureFields first = wide({page({words(u"Secret-one")})});
  first.label = first.customers[0].id = first.customers[0].pages[0].name = u"Secret-two";
  first.statics21 = {{.first = {.parts = {words(u"Secret-three")}}, .name = u"Secret-four"}};
  CaptureFields second = first;
  second.label = u"Secret-five";
  second.statics21[0].first.parts[0] = words(u"Secret-six");
  second.customers[0].pages[0] = page({words(u"Secret-seven")});
  inspect::redactsTexts = true;
  const Report report(bytesOf(first), bytesOf(second));
  inspect::redactsTexts = false;
  EXPECT_TRUE(report.data["redacted"]);
  for (const std::string& name : namesIn(report.path("report"))) {
    EXPECT_EQ(report.read("report/" + name).find("Secret"), std::string::npos) << name;
  }
  EXPECT_NE(report.read("report/pages/00000.js").find("xxxxxx-xxxxx"), std::string::npos);
}

}  // namespace
}  // namespace rvf::test
