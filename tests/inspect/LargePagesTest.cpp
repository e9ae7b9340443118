#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <pugixml.hpp>
#include <sstream>

#include "inspect/model/ChangeStream.h"
#include "inspect/model/DigestSet.h"
#include "run/RunFolder.h"
#include "support/Capture.h"

namespace rvf::test {
namespace {

using nlohmann::json;

// More than two stretches of changes.
constexpr std::size_t kParts = 2500;

std::vector<Part> prices(const std::u16string& currency) {
  std::vector<Part> parts;
  for (std::size_t n = 0; n < kParts; ++n) {
    const std::string digits = std::to_string(n);
    const std::u16string price = std::u16string(digits.begin(), digits.end()) + u" " + currency;
    parts.push_back(text({.text = price, .runs = {{.x = 10, .y = 20 * static_cast<int>(n)}}}));
  }
  return parts;
}

/// A page with many parts, and a shared object with as many.
std::string largeJob(const std::u16string& currency) {
  CaptureFields file = captureOf({page(prices(currency)), page({staticRef()})});
  file.statics21 = {{.first = {.parts = prices(currency)}}};
  return writeCapture(file).bytes;
}

class LargePages : public RunFolder, public testing::Test {
 protected:
  LargePages() {
    write("a.rvf", largeJob(u"DEM"));
    write("b.rvf", largeJob(u"EUR"));
  }
  std::vector<std::string> changes(const std::string& options, int status = 1) const {
    const ProgramResult result = shell("'" + builtPath("rvfinspect") + "' " + options);
    EXPECT_EQ(result.status, status) << result.err;
    std::vector<std::string> lines;
    std::istringstream stream(result.out);
    for (std::string line; std::getline(stream, line);) lines.push_back(line);
    return lines;
  }
  json record(const std::vector<std::string>& lines, const std::string& kind) const {
    json found;
    for (const std::string& line : lines) {
      const json each = json::parse(line);
      if (each["record"] != kind) continue;
      EXPECT_TRUE(found.is_null()) << "two of " << kind;
      found = each;
    }
    return found;
  }
};

TEST_F(LargePages, AreOneRecordEach) {
  const std::vector<std::string> lines = changes("changes a.rvf b.rvf --format jsonl");
  for (const char* kind : {"page", "object"}) {
    const json list = record(lines, kind)["changes"];
    ASSERT_EQ(list.size(), kParts) << kind;
    for (std::size_t n = 0; n < kParts; ++n) {
      const std::string price = std::to_string(n);
      EXPECT_EQ(list[n]["first"], n) << kind;
      EXPECT_EQ(list[n]["fields"][0]["from"], price + " DEM") << kind;
      EXPECT_EQ(list[n]["fields"][0]["to"], price + " EUR") << kind;
    }
  }
  EXPECT_EQ(record(lines, "summary")["changes"], 2 * kParts);
}

TEST_F(LargePages, HaveOneTitleAndTheirReasonsAtTheEnd) {
  const std::vector<std::string> lines = changes("changes a.rvf b.rvf");
  const auto count = [&lines](const std::string& start) {
    return std::ranges::count_if(lines, [&](const auto& line) { return line.starts_with(start); });
  };
  EXPECT_EQ(count("    changed TEXT at"), kParts);
  EXPECT_EQ(count("  changed TEXT at"), kParts);
  EXPECT_EQ(count("  Page 1"), 1);
  EXPECT_EQ(count("Shared object"), 1);
  const auto title = std::ranges::find_if(
      lines, [](const std::string& line) { return line.starts_with("  Page 1"); });
  EXPECT_TRUE((title + 1 + 2 * kParts)->starts_with("    why ")) << *(title + 1 + 2 * kParts);
}

TEST_F(LargePages, AreOneCaseEach) {
  changes("changes a.rvf b.rvf --format junit --output out.xml");
  pugi::xml_document document;
  ASSERT_TRUE(document.load_file(path("out.xml").c_str()));
  const auto cases = document.select_nodes("//testcase");
  ASSERT_EQ(cases.size(), 3u);
  for (const pugi::xpath_node& each : {cases[0], cases[2]}) {
    const std::string told = each.node().child("failure").text().get();
    EXPECT_EQ(std::ranges::count(told, '\n'), 20) << told;
  }
  EXPECT_FALSE(cases[1].node().child("failure"));
}

TEST_F(LargePages, CanBeAcceptedAsAWhole) {
  changes("changes a.rvf b.rvf --write-accepted accepted.json");
  const std::vector<std::string> lines =
      changes("changes a.rvf b.rvf --accepted accepted.json --format jsonl", 0);
  EXPECT_TRUE(record(lines, "page").is_null());
  EXPECT_TRUE(record(lines, "object").is_null());
  EXPECT_EQ(record(lines, "summary")["accepted"], 2 * kParts);
}

TEST_F(LargePages, AreDrawnWithTheFirstOfTheirChanges) {
  changes("report a.rvf b.rvf --out report");
  for (const char* name : {"report/pages/00000.js", "report/pages/00001.js"}) {
    const std::string script = read(name);
    const json drawn =
        json::parse(script.substr(script.find('{'), script.rfind('}') + 1 - script.find('{')));
    EXPECT_EQ(drawn["changes"].size(), 2000u) << name;
    EXPECT_EQ(drawn["changesLeftOut"], kParts - 2000) << name;
  }
}

TEST(ChangeStream, PassesOnLongTextsEarlier) {
  std::size_t passed = 0;
  inspect::ChangeStream stream(
      [&passed](const std::vector<inspect::Change>& stretch) { passed += stretch.size(); });
  EXPECT_TRUE(stream.isEmpty());
  inspect::Change change;
  change.fields = {{"text", std::u16string(400'000, u'a'), std::u16string(400'000, u'b')}};
  for (int n = 0; n < 5; ++n) stream.add(change);
  EXPECT_FALSE(stream.isEmpty());
  EXPECT_EQ(passed, 4u);
  EXPECT_EQ(stream.takeLast().size(), 1u);
}

TEST(DigestSet, KeepsWhatItWasGiven) {
  inspect::DigestSet set;
  const auto digest = [](u64 n) { return n % 3 == 0 ? n << 40 : n; };  // many in one slot, and 0
  EXPECT_FALSE(set.contains(0));
  for (u64 n = 0; n < 5000; ++n) EXPECT_TRUE(set.insert(digest(n))) << n;
  for (u64 n = 0; n < 5000; ++n) EXPECT_FALSE(set.insert(digest(n))) << n;
  for (u64 n = 5000; n < 10000; ++n) EXPECT_FALSE(set.contains(digest(n))) << n;
  EXPECT_EQ(set.size(), 5000u);
}

}  // namespace
}  // namespace rvf::test
