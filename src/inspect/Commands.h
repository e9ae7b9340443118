#pragma once

#include "inspect/Options.h"

namespace rvf::inspect {

/// Exit statuses. Scripts test them; no command returns another.
namespace status {
constexpr int kSame = 0;  // no difference, or a sound file
constexpr int kDifferent = 1;
constexpr int kTrouble = 2;
constexpr int kWarnings = 3;  // only from check
}  // namespace status

// One function per command, in a source of the same name. Each returns an exit status; whatever
// prevents it from doing its work is thrown as Trouble.

[[nodiscard]] int runChanges(const ChangesOptions& options);
[[nodiscard]] int runList(const ListOptions& options);
[[nodiscard]] int runReport(const ReportOptions& options);
[[nodiscard]] int runPage(const PageOptions& options);
[[nodiscard]] int runDump(const DumpOptions& options);
[[nodiscard]] int runCheck(const CheckOptions& options);
[[nodiscard]] int runSummary(const SummaryOptions& options);

}  // namespace rvf::inspect
