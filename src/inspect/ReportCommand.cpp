#include <unistd.h>

#include <set>
#include <utility>

#include "inspect/Commands.h"
#include "inspect/ComparedFiles.h"
#include "inspect/model/Inspection.h"
#include "inspect/model/Trouble.h"
#include "inspect/model/VerdictCheck.h"
#include "inspect/output/PageDrawing.h"
#include "inspect/output/ProgressLine.h"
#include "inspect/output/ReportFolder.h"
#include "inspect/output/ReportIndex.h"
#include "inspect/output/ReportPages.h"

namespace rvf::inspect {

int runReport(const ReportOptions& options) {
  ComparedFiles files = openFiles(options.first, options.second, options.from, options.oldText);
  ReportFolder folder(options.out);
  InspectionSettings settings;
  settings.tolerances = options.tolerances;
  settings.oldText = options.oldText;

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
  if (!summary.isComplete()) {
    return status::kTrouble;
  }
  return summary.changes > 0 || summary.bits != 0 ? status::kDifferent : status::kSame;
}

}  // namespace rvf::inspect
