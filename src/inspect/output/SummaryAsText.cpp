#include <cstdio>

#include "inspect/model/BitNames.h"
#include "inspect/output/ChangeLines.h"
#include "inspect/output/ShownText.h"
#include "inspect/output/SummaryWriter.h"

namespace rvf::inspect {

namespace {

std::string quoted(const std::u16string& name) { return "\"" + shownText(name) + "\""; }

std::string namesOf(const NamedPairs& pairs) {
  std::string text;
  for (const std::u16string& name : pairs.names) {
    text += (text.empty() ? "" : ", ") + quoted(name);
  }
  const i64 others = pairs.count - static_cast<i64>(pairs.names.size());
  return others == 0 ? text : text + " and " + std::to_string(others) + " more";
}

class TextSummaryWriter final : public SummaryWriter {
 public:
  TextSummaryWriter(Output& output, bool isColoured) : output_(output), isColoured_(isColoured) {}

  void begin(const std::string& folder) override {
    output_.line("Results in " + shownText(std::string_view(folder)));
  }

  void pair(const PairResult& pair, const PairInspection* inspection) override {
    if (inspection != nullptr && !inspection->trouble.empty()) {
      output_.line("Not explained: " + quoted(pair.name) + ": " + inspection->trouble);
    }
  }

  void end(const ResultsSummary& summary) override {
    writeGroups(summary);
    writeBits(summary);
    writeReasons(summary);
    writeGreatest(summary);
    output_.line("\nPairs: " + std::to_string(summary.pairs()) + ", of which");
    output_.line("  identical " + std::to_string(summary.count(Outcome::kIdentical)));
    output_.line("  different " + std::to_string(summary.count(Outcome::kDifferent)) +
                 (summary.accepted() == 0
                      ? ""
                      : ", by accepted changes alone " + std::to_string(summary.accepted())));
    output_.line("  on one side only " + std::to_string(summary.count(Outcome::kOneSided)));
    output_.line("  without an answer " + std::to_string(summary.count(Outcome::kFailed)));
  }

 private:
  void writeGroups(const ResultsSummary& summary) {
    for (const GroupOfPairs* entry : summary.groups()) {
      output_.line("\nIn " + counted(entry->pairs.count, "pair") + ": " + namesOf(entry->pairs));
      for (const std::string& line : linesOf(entry->group, isColoured_)) {
        output_.line("  " + line);
      }
    }
    if (summary.changesNotGrouped() > 0) {
      output_.line("Not grouped: " + counted(summary.changesNotGrouped(), "change"));
    }
  }

  void writeBits(const ResultsSummary& summary) {
    if (!summary.pairsByBit().empty()) {
      output_.line("\nDifferent pairs by bit");
    }
    for (const auto& [bit, pairs] : summary.pairsByBit()) {
      output_.line("  " + bitsInWords(bit) + ": " + std::to_string(pairs));
    }
  }

  void writeReasons(const ResultsSummary& summary) {
    if (!summary.reasons().empty()) {
      output_.line("\nOn one side only, or without an answer");
    }
    for (const FailedPairs* failed : summary.reasons()) {
      const std::string reason =
          failed->reason.empty() ? "" : " (" + shownText(failed->reason) + ")";
      output_.line("  " + std::to_string(failed->count) + " " + failed->state + reason + ": " +
                   namesOf(*failed));
    }
    if (summary.reasonsLeftOut() > 0) {
      output_.line("  " + std::to_string(summary.reasonsLeftOut()) + " for other reasons");
    }
  }

  void writeGreatest(const ResultsSummary& summary) {
    if (!summary.slowest().entries().empty()) {
      output_.line("\nSlowest pairs");
    }
    for (const auto& [seconds, name] : summary.slowest().entries()) {
      char text[400];  // a number of any size
      std::snprintf(text, sizeof text, "%.3f", seconds);
      output_.line("  " + std::string(text) + " s: " + quoted(name));
    }
    if (!summary.largest().entries().empty()) {
      output_.line("\nLargest pairs");
    }
    for (const auto& [bytes, name] : summary.largest().entries()) {
      output_.line("  " + counted(bytes, "byte") + ": " + quoted(name));
    }
  }

  Output& output_;
  bool isColoured_;
};

}  // namespace

std::unique_ptr<SummaryWriter> makeTextSummaryWriter(Output& output, bool isColoured) {
  return std::make_unique<TextSummaryWriter>(output, isColoured);
}

}  // namespace rvf::inspect
