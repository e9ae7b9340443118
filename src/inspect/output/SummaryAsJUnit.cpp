#include "inspect/model/BitNames.h"
#include "inspect/output/JUnitReport.h"
#include "inspect/output/ShownText.h"
#include "inspect/output/SummaryWriter.h"

namespace rvf::inspect {

namespace {

/// One suite with one case per pair.
class JUnitSummaryWriter final : public SummaryWriter {
 public:
  explicit JUnitSummaryWriter(Output& output) : report_(output) {}

  void begin(const std::string& folder) override {
    report_.beginSuite(shownText(std::string_view(folder)));
  }

  void pair(const PairResult& pair, const PairInspection* inspection) override {
    const std::string name = shownText(pair.name);
    const Outcome outcome = pair.outcome();
    if (inspection != nullptr && !inspection->trouble.empty()) {
      report_.error(name, inspection->trouble);
    } else if (outcome == Outcome::kIdentical ||
               (inspection != nullptr && inspection->isAccepted)) {
      report_.passed(name);
    } else if (outcome == Outcome::kDifferent) {
      report_.failed(name, bitsInWords(pair.bits.value_or(0)),
                     inspection == nullptr ? "" : counted(inspection->changes, "change"));
    } else if (outcome == Outcome::kOneSided) {
      report_.failed(name, pair.state, "");
    } else {
      report_.error(name, pair.state + (pair.reason.empty() ? "" : ": " + shownText(pair.reason)));
    }
  }

  void end(const ResultsSummary&) override { report_.finish(); }

 private:
  JUnitReport report_;
};

}  // namespace

std::unique_ptr<SummaryWriter> makeJUnitSummaryWriter(Output& output) {
  return std::make_unique<JUnitSummaryWriter>(output);
}

}  // namespace rvf::inspect
