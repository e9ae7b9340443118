#pragma once

#include <string_view>

namespace rvf::inspect {

/// The page of the report in front of its data and behind them, with style and scripts. The build
/// makes them of the files in src/inspect/report.
extern const std::string_view kReportHead;
extern const std::string_view kReportTail;
/// The same of the page that sums up many pairs.
extern const std::string_view kSummaryHead;
extern const std::string_view kSummaryTail;

}  // namespace rvf::inspect
