#pragma once

#include <string_view>

namespace rvf::inspect {

/// The report's page before and after its data, with style and scripts. The build makes them from
/// the files in src/inspect/report.
extern const std::string_view kReportHead;
extern const std::string_view kReportTail;
/// The same for the page that sums up many pairs.
extern const std::string_view kSummaryHead;
extern const std::string_view kSummaryTail;

}  // namespace rvf::inspect
