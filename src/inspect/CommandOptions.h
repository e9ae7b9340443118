#pragma once

#include <CLI/CLI.hpp>

#include "inspect/Options.h"

namespace rvf::inspect {

// One function per command: declares it, with its help, on `app`. Parsing fills `options`, which is
// the caller's and must outlive the command.

CLI::App& declareChanges(CLI::App& app, ChangesOptions& options);
CLI::App& declareReport(CLI::App& app, ReportOptions& options);
CLI::App& declareList(CLI::App& app, ListOptions& options);
CLI::App& declarePage(CLI::App& app, PageOptions& options);
CLI::App& declareDump(CLI::App& app, DumpOptions& options);
CLI::App& declareCheck(CLI::App& app, CheckOptions& options);
CLI::App& declareSummary(CLI::App& app, SummaryOptions& options);

}  // namespace rvf::inspect
