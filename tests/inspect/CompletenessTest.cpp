#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <set>
#include <string>

#include "inspect/Inspected.h"
#include "inspect/model/DifferenceFileReader.h"
#include "inspect/model/Trouble.h"
#include "inspect/model/VerdictCheck.h"
#include "messages/MessageReporter.h"
#include "run/RunFolder.h"
#include "run/RunOptions.h"

namespace rvf::test {
namespace {

std::string sample(const std::string& name) {
  std::ifstream file(sourcePath("samples/" + name), std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

// Every differing byte is reported, whatever it means: as a change, as damage, or because the file
// is rejected.
TEST(Completeness, NoByteOfTheSamplesGoesUnnoticed) {
  const std::string bytes = sample("first.rvf");
  ASSERT_FALSE(bytes.empty());
  int step = 7;  // every byte with RVF_SWEEP=1
  if (const char* wanted = std::getenv("RVF_SWEEP")) step = std::max(std::atoi(wanted), 1);
  for (std::size_t at = 0; at < bytes.size(); at += static_cast<std::size_t>(step)) {
    std::string changed = bytes;
    changed[at] = static_cast<char>(changed[at] ^ 0x01);
    try {
      const Inspected result(bytes, changed);
      EXPECT_TRUE(!result.changes.empty() || !result.damages.empty()) << "byte " << at;
    } catch (const inspect::Trouble&) {
      // rejected
    }
    messageReporter.reset();
  }
}

// Not even bytes that nothing refers to.
TEST(Completeness, UnusedBytesAreNoticedWhereTheyMoveSomething) {
  const Capture capture = writeCapture(captureOf({page({text({.text = u"Dear reader"})})}));
  const std::string& bytes = capture.bytes;
  std::string before = bytes;
  const auto index = static_cast<unsigned char>(bytes[0]);  // the index begins in the first 256
  before.insert(index, "unused");
  before[0] = static_cast<char>(index + 6);
  const std::string all = "file changed FILE indexPosition length [bytes that no field holds]";
  EXPECT_EQ(Inspected(bytes, before).changes, std::vector{all});
  const std::string end = "file changed FILE length [bytes that no field holds]";
  EXPECT_EQ(Inspected(bytes + "unused", bytes).changes, std::vector{end});
}

// Every page of the reference pairs has the bits in its difference file.
TEST(Completeness, BitsAreThoseOfARun) {
  int compared = 0;
  for (const auto& entry : std::filesystem::directory_iterator(sourcePath("tests/reference"))) {
    if (!entry.is_directory()) continue;
    const RunFolder folder(entry.path().filename());
    if (folder.readIfThere("expected-difference").empty()) continue;
    std::vector<eString> arguments;
    for (const std::string& word : folder.command) arguments.push_back(fromNative(word));
    const auto before = std::filesystem::current_path();
    std::filesystem::current_path(folder.path());
    RunOptions options;
    static_cast<void>(options.parseCommandLine(arguments, ControlFiles::kRead));
    const auto oldText =
        options.dbcsMode ? inspect::OldText::kTwoBytes : inspect::OldText::kOneByte;
    inspect::JudgedPages judged;
    eDiskFile file;
    ASSERT_TRUE(file.Open(u"expected-difference", open_flags::kRead, FileContent::kBinary));
    static_cast<void>(readDifferenceFile(file, judged));
    struct : inspect::InspectionListener {
      void begin(const inspect::CaptureFile&, const inspect::CaptureFile&,
                 const inspect::InspectionSettings&) override {}
      void file(const inspect::Change&) override {}
      void customer(const inspect::Change&, i32, const eString&) override {}
      void verdict(const inspect::PageAddress&, const inspect::PageVerdict& verdict) override {
        DiffFlags explained = 0;
        for (const inspect::VerdictReason& reason : verdict.why) explained |= reason.bits;
        EXPECT_EQ(explained, verdict.bits);
      }
      void page(const inspect::PageResult&) override {}
      void object(const inspect::ObjectChanges&) override {}
      void damage(const inspect::Damage&) override {}
      void end(const inspect::Summary&, const inspect::ChangeGroups&) override {}
    } quiet;
    inspect::VerdictCheck check(
        judged, quiet, [](auto&, auto&) {}, [](i32, i32) {});
    inspect::CaptureFile a(toNative(options.firstFile.view()), oldText);
    inspect::CaptureFile b(toNative(options.secondFile.view()), oldText);
    inspect::inspectFiles(a, b, {.tolerances = options.tolerances, .oldText = oldText}, check);
    EXPECT_EQ(check.mismatch(), "") << entry.path();
    std::filesystem::current_path(before);
    messageReporter.reset();
    compared += 1;
  }
  EXPECT_GT(compared, 40);
}

}  // namespace
}  // namespace rvf::test
