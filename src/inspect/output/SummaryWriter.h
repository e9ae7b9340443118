#pragma once

#include <memory>
#include <string>

#include "inspect/model/ResultsSummary.h"
#include "inspect/output/Output.h"

namespace rvf::inspect {

/// Shows the results of many pairs: each as it is read, then their totals.
class SummaryWriter {
 public:
  virtual ~SummaryWriter() = default;
  virtual void begin(const std::string& folder) = 0;
  /// `inspection` is null for a pair that was not read again.
  virtual void pair(const PairResult& pair, const PairInspection* inspection) = 0;
  virtual void end(const ResultsSummary& summary) = 0;
};

[[nodiscard]] std::unique_ptr<SummaryWriter> makeTextSummaryWriter(Output& output, bool isColoured);
[[nodiscard]] std::unique_ptr<SummaryWriter> makeJsonSummaryWriter(Output& output);
[[nodiscard]] std::unique_ptr<SummaryWriter> makeJUnitSummaryWriter(Output& output);
/// An HTML page with links to the reports in the folders of pairs. `path` is where the page will
/// be: links are relative to it, or to the folder of results if it is empty.
[[nodiscard]] std::unique_ptr<SummaryWriter> makePageSummaryWriter(Output& output,
                                                                   const std::string& path);

}  // namespace rvf::inspect
