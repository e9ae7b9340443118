#include <unistd.h>

#include "inspect/Commands.h"
#include "inspect/model/Inspection.h"
#include "inspect/model/JobResults.h"
#include "inspect/model/Trouble.h"
#include "inspect/output/AcceptedFile.h"
#include "inspect/output/ProgressLine.h"
#include "inspect/output/ShownText.h"
#include "inspect/output/SummaryWriter.h"

namespace rvf::inspect {

namespace {

/// Keeps what a summary needs from one pair's changes.
class PairListener final : public InspectionListener {
 public:
  PairListener(const std::u16string& name, ResultsSummary& results, ProgressLine& progress)
      : name_(name), results_(results), progress_(progress) {}

  void begin(const CaptureFile&, const CaptureFile&, const InspectionSettings&) override {}
  void file(const Change&) override {}
  void customer(const Change&, i32, const eString&) override {}
  void verdict(const PageAddress&, const PageVerdict&) override {}
  void page(const PageResult&) override {}
  void object(const ObjectChanges&) override {}
  void damage(const Damage&) override {}
  void progress(i32 done, i32 all) override { progress_.show(done, all); }
  void end(const Summary& summary, const ChangeGroups& groups) override {
    progress_.erase();
    summary_ = summary;
    results_.addGroups(name_, groups);
  }

  [[nodiscard]] const Summary& summary() const { return summary_; }

 private:
  const std::u16string& name_;
  ResultsSummary& results_;
  ProgressLine& progress_;
  Summary summary_;
};

class PairInspector {
 public:
  PairInspector(const SummaryOptions& options, ResultsSummary& results)
      : options_(options),
        results_(results),
        progress_(options.output.progress == When::kAlways ||
                  (options.output.progress == When::kAuto && ::isatty(STDERR_FILENO) == 1)) {
    if (!options.accepted.empty()) {
      accepted_ = readAccepted(options.accepted);
      for (const auto& [id, key] : accepted_) {
        settings_.acceptedGroups.insert(id);
      }
    }
  }

  /// If a pair cannot be read again, the reason is kept with it, and the others follow all the
  /// same.
  PairInspection inspect(const PairResult& pair) {
    PairInspection result;
    try {
      inspect(pair, result);
    } catch (const Trouble& trouble) {
      result.trouble = shownText(std::string_view(trouble.subject)) + ": " + trouble.what();
    }
    return result;
  }

  void tellUnusedEntries() const { tellUnused(options_.accepted, accepted_, seen_); }

 private:
  void inspect(const PairResult& pair, PairInspection& result) {
    const PairOptions own = withOptionsOf(pair, {options_.tolerances, options_.oldText});
    settings_.tolerances = own.tolerances;
    settings_.oldText = own.oldText;
    const std::string folder = options_.results + "/" + pair.folder;
    CaptureFile first(folder + "/first.rvf", own.oldText);
    CaptureFile second(folder + "/second.rvf", own.oldText);
    PairListener listener(pair.name, results_, progress_);
    inspectFiles(first, second, settings_, listener);

    const Summary& summary = listener.summary();
    seen_.insert(summary.acceptedSeen.begin(), summary.acceptedSeen.end());
    result.changes = summary.changes;
    result.changesAccepted = summary.changesAccepted;
    if (!summary.isComplete()) {
      result.trouble = counted(summary.damagedPages, "damaged page");
    } else if (summary.bits != pair.bits) {
      result.trouble = otherBits(pair, summary.bits);
    }
    result.isAccepted =
        !options_.accepted.empty() && result.trouble.empty() && summary.changes == 0;
  }

  const SummaryOptions& options_;
  ResultsSummary& results_;
  ProgressLine progress_;
  std::map<u64, GroupKey> accepted_;
  std::set<u64> seen_;
  InspectionSettings settings_;
};

std::unique_ptr<SummaryWriter> makeWriter(const OutputOptions& options, Output& output) {
  switch (options.format) {
    case Format::kJsonLines:
      return makeJsonSummaryWriter(output);
    case Format::kJUnit:
      return makeJUnitSummaryWriter(output);
    case Format::kHtml:
      return makePageSummaryWriter(output, options.path);
    default:
      return makeTextSummaryWriter(output, takesColour(options, output));
  }
}

}  // namespace

int runSummary(const SummaryOptions& options) {
  JobResults results(options.results);
  ResultsSummary summary;
  PairInspector inspector(options, summary);
  refuseToOverwrite(options.output.path, results.path());
  refuseToOverwrite(options.output.path, options.accepted);
  const bool reads = options.groups || !options.accepted.empty();

  Output output(options.output.path);
  const std::unique_ptr<SummaryWriter> writer = makeWriter(options.output, output);
  writer->begin(options.results);
  while (const std::optional<PairResult> pair = results.next()) {
    std::optional<PairInspection> inspection;
    if (reads && pair->outcome() == Outcome::kDifferent) {
      inspection = inspector.inspect(*pair);
    }
    const PairInspection* inspected = inspection ? &*inspection : nullptr;
    summary.add(*pair, inspected);
    writer->pair(*pair, inspected);
  }
  writer->end(summary);
  output.finish();
  inspector.tellUnusedEntries();
  if (!summary.isComplete()) {
    return status::kTrouble;
  }
  return summary.differs() ? status::kDifferent : status::kSame;
}

}  // namespace rvf::inspect
