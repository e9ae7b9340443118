#include <gtest/gtest.h>

#include <cstdlib>
#include <random>

#include "inspect/Commands.h"
#include "inspect/model/Trouble.h"
#include "messages/MessageReporter.h"
#include "support/Paths.h"
#include "support/TempFolder.h"

namespace rvf::test {
namespace {

using namespace rvf::inspect;

/// What each command makes of two files; a refusal is trouble.
struct Statuses {
  explicit Statuses(const TempFolder& folder) {
    ChangesOptions changesOptions;
    ReportOptions reportOptions;
    CheckOptions checkOptions;
    DumpOptions dumpOptions;
    PageOptions pageOptions;
    changesOptions.first = reportOptions.first = folder.path("whole.rvf");
    changesOptions.second = reportOptions.second = folder.path("damaged.rvf");
    checkOptions.files = {folder.path("damaged.rvf")};
    dumpOptions.file = pageOptions.file = folder.path("damaged.rvf");
    for (auto* output : {&changesOptions.output, &checkOptions.output, &dumpOptions.output}) {
      *output = {Format::kJsonLines, "/dev/null", When::kNever, When::kNever};
    }
    pageOptions.out = "/dev/null";
    reportOptions.out = folder.path("report");
    reportOptions.maxPages = 2;
    reportOptions.progress = When::kNever;
    changes = statusOf(runChanges, changesOptions);
    report = statusOf(runReport, reportOptions);
    check = statusOf(runCheck, checkOptions);
    dump = statusOf(runDump, dumpOptions);
    page = statusOf(runPage, pageOptions);
  }

  template <class Options>
  static int statusOf(int (*command)(const Options&), const Options& options) {
    messageReporter.reset();
    try {
      return command(options);
    } catch (const Trouble&) {
      return status::kTrouble;
    }
  }

  int changes = 0, report = 0, check = 0, dump = 0, page = 0;
};

int sweep() {
  const char* wanted = std::getenv("RVF_SWEEP");
  return wanted == nullptr ? 1 : std::max(std::atoi(wanted), 1);
}

// Files that are cut, and whose counts and offsets are huge, negative or others than they were, end
// each command with a status; and where the check finds damage, no command passes it over.
TEST(DamagedFiles, AreToldByEveryCommand) {
  const TempFolder folder;
  int tried = 0, damaged = 0;
  std::minstd_rand random;
  for (const auto& entry : std::filesystem::directory_iterator(sourcePath("tests/reference"))) {
    if (!std::filesystem::exists(entry.path() / "a.rvf")) continue;
    std::ifstream file(entry.path() / "a.rvf", std::ios::binary);
    const std::string whole{std::istreambuf_iterator<char>(file), {}};
    folder.write("whole.rvf", whole);
    for (int i = 0; i < sweep(); ++i) {
      const auto at = [&] { return random() % whole.size(); };
      std::string bytes = whole;
      for (const char c : {'\xFF', '\x80', '\x00', '\x7F'}) bytes[at()] = c;
      if (++tried % 2 == 1) bytes.resize(at());
      folder.write("damaged.rvf", bytes);
      const Statuses statuses(folder);
      if (statuses.check != status::kTrouble) continue;
      damaged += 1;
      EXPECT_EQ(statuses.changes, status::kTrouble) << entry.path() << " " << i;
      EXPECT_EQ(statuses.report, status::kTrouble) << entry.path() << " " << i;
      EXPECT_EQ(statuses.dump, status::kTrouble) << entry.path() << " " << i;
    }
  }
  EXPECT_GT(damaged, 30);
}

}  // namespace
}  // namespace rvf::test
