#include <unistd.h>

#include <filesystem>
#include <optional>
#include <set>
#include <system_error>
#include <utility>

#include "inspect/Commands.h"
#include "inspect/ComparedFiles.h"
#include "inspect/model/Inspection.h"
#include "inspect/model/JobResults.h"
#include "inspect/model/Trouble.h"
#include "inspect/model/VerdictCheck.h"
#include "inspect/output/PageDrawing.h"
#include "inspect/output/ProgressLine.h"
#include "inspect/output/ReportFolder.h"
#include "inspect/output/ReportIndex.h"
#include "inspect/output/ReportPages.h"

namespace rvf::inspect {

namespace {

/// The target of a link in a pair's folder, so that the report names the file and not the link.
std::string fileOfPair(const std::string& folder, const char* name) {
  const std::filesystem::path link = std::filesystem::path(folder) / name;
  std::error_code error;
  const std::filesystem::path file = std::filesystem::read_symlink(link, error);
  return error ? link.native() : file.native();
}

}  // namespace

int runReport(const ReportOptions& options) {
  PairOptions own{options.tolerances, options.oldText};
  std::string first = options.first;
  std::string second = options.second;
  std::optional<PairResult> pair;
  if (!options.pair.empty()) {
    pair = readPairResult(options.pair);
    own = withOptionsOf(*pair, own);
    first = fileOfPair(options.pair, "first.rvf");
    second = fileOfPair(options.pair, "second.rvf");
  }
  ComparedFiles files = openFiles(first, second, options.from, own.oldText);
  ReportFolder folder(options.out);
  InspectionSettings settings;
  settings.tolerances = own.tolerances;
  settings.oldText = own.oldText;

  ProgressLine progress(options.progress == When::kAlways ||
                        (options.progress == When::kAuto && ::isatty(STDERR_FILENO) == 1));
  ReportIndex index;
  VerdictCheck check(
      std::move(files.judged), index, [](const Summary&, const ChangeGroups&) {},
      [&](i32 done, i32 all) { progress.show(done, all); });
  inspectFiles(*files.first, *files.second, settings, check);

  const std::vector<PagePlace> chosen =
      index.choosePages(*files.first, *files.second, static_cast<std::size_t>(options.maxPages));
  std::set<i32> customers;
  for (const PagePlace& place : chosen) {
    customers.insert(place.customer);
  }
  settings.selectsCustomer = [&customers](i32 customer, const eString&) {
    return customers.contains(customer);
  };
  ReportPages pages(*files.first, *files.second, chosen, index.objects(), folder,
                    [](const CompareContext& page) { return drawPage(page, DrawingStyle()); });
  inspectFiles(*files.first, *files.second, settings, pages);
  folder.write("index.html", index.html(*files.first, *files.second, pages.drawn()));
  progress.erase();
  folder.complete();

  if (!options.from.empty() && !check.mismatch().empty()) {
    throw Trouble(options.from, "does not agree with its files: " + check.mismatch());
  }
  const Summary& summary = index.summary();
  if (pair && summary.isComplete() && summary.bits != pair->bits) {
    throw Trouble(options.pair, otherBits(*pair, summary.bits));
  }
  if (!summary.isComplete()) {
    return status::kTrouble;
  }
  return summary.changes > 0 || summary.bits != 0 ? status::kDifferent : status::kSame;
}

}  // namespace rvf::inspect
