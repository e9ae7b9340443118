#include <unistd.h>

#include <utility>

#include "inspect/Commands.h"
#include "inspect/ComparedFiles.h"
#include "inspect/model/Inspection.h"
#include "inspect/model/SelectedCustomer.h"
#include "inspect/model/Trouble.h"
#include "inspect/model/VerdictCheck.h"
#include "inspect/output/AcceptedFile.h"
#include "inspect/output/ChangesWriter.h"
#include "inspect/output/ProgressLine.h"

namespace rvf::inspect {

namespace {

bool hasSelected(const CaptureFile& file, const Selection& selection) {
  const SelectedCustomer wanted(selection.customer);
  for (i32 c = 0; c < file.customerCount(); ++c) {
    const CustomerRecord& customer = file.customer(c);
    const bool hasPage =
        !selection.page || static_cast<std::size_t>(*selection.page) <= customer.pages.size();
    if (hasPage && wanted.includes(c, customer.id.view())) {
      return true;
    }
  }
  return false;
}

std::unique_ptr<InspectionListener> makeWriter(const ChangesOptions& options, Output& output) {
  switch (options.output.format) {
    case Format::kJsonLines:
      return makeJsonChangesWriter(output, options.showsAllPages);
    case Format::kJUnit:
      return makeJUnitChangesWriter(output);
    default:
      return makeTextChangesWriter(
          output, {takesColour(options.output, output),
                   options.groups ? Grouping::kByGroup : Grouping::kByPage, options.showsAllPages});
  }
}

/// Keeps the totals and the groups for the exit status and the file of accepted changes.
class ResultKeeper {
 public:
  void keep(const Summary& summary, const ChangeGroups& groups) {
    summary_ = summary;
    for (const ChangeGroup* group : groups.sorted()) {
      groups_.emplace(group->id, group->key);
    }
  }
  [[nodiscard]] const Summary& summary() const { return summary_; }
  [[nodiscard]] std::map<u64, GroupKey>& groups() { return groups_; }

 private:
  Summary summary_;
  std::map<u64, GroupKey> groups_;
};

int statusOf(const Summary& summary, bool hasAccepted) {
  if (!summary.isComplete()) {
    return status::kTrouble;
  }
  const bool isDifferent = summary.changes > 0 || (!hasAccepted && summary.bits != 0);
  return isDifferent ? status::kDifferent : status::kSame;
}

}  // namespace

int runChanges(const ChangesOptions& options) {
  ComparedFiles files = openFiles(options.first, options.second, options.from, options.oldText);
  CaptureFile& first = *files.first;
  CaptureFile& second = *files.second;
  for (const std::string& output : {options.output.path, options.writeAccepted}) {
    for (const std::string& input : {first.path(), second.path(), options.from, options.accepted}) {
      refuseToOverwrite(output, input);
    }
  }

  std::map<u64, GroupKey> accepted;
  InspectionSettings settings;
  settings.tolerances = options.tolerances;
  settings.oldText = options.oldText;
  if (!options.accepted.empty()) {
    accepted = readAccepted(options.accepted);
    for (const auto& [id, key] : accepted) {
      settings.acceptedGroups.insert(id);
    }
  }
  if (!hasSelected(first, options.selection) && !hasSelected(second, options.selection)) {
    throw Trouble(first.path(), "neither this file nor the second has such a customer or page");
  }
  if (const SelectedCustomer wanted(options.selection.customer); !wanted.isAny()) {
    settings.selectsCustomer = [wanted](i32 index, const eString& id) {
      return wanted.includes(index, id.view());
    };
  }
  if (options.selection.page) {
    settings.page = *options.selection.page - 1;
  }

  Output output(options.output.path);
  ResultKeeper result;
  const std::unique_ptr<InspectionListener> writer = makeWriter(options, output);
  ProgressLine progress(options.output.progress == When::kAlways ||
                        (options.output.progress == When::kAuto && ::isatty(STDERR_FILENO) == 1));
  VerdictCheck check(
      std::move(files.judged), *writer,
      [&](const Summary& summary, const ChangeGroups& groups) {
        progress.erase();
        result.keep(summary, groups);
      },
      [&](i32 done, i32 all) { progress.show(done, all); });
  inspectFiles(first, second, settings, check);
  output.finish();

  if (!options.writeAccepted.empty()) {
    result.groups().insert(accepted.begin(), accepted.end());
    writeAccepted(options.writeAccepted, result.groups());
  }
  tellUnused(options.accepted, accepted, result.summary().acceptedSeen);
  if (!options.from.empty() && !check.mismatch().empty()) {
    throw Trouble(options.from, "does not agree with its files: " + check.mismatch());
  }
  return statusOf(result.summary(), !options.accepted.empty());
}

}  // namespace rvf::inspect
