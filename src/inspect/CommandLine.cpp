#include "inspect/CommandLine.h"

#include <cstdio>
#include <functional>
#include <string>
#include <utility>

#include "inspect/CommandOptions.h"
#include "inspect/Commands.h"
#include "inspect/UsageError.h"
#include "inspect/model/Trouble.h"
#include "inspect/output/ShownText.h"

namespace rvf::inspect {

namespace {

constexpr const char* kVersionLine = "rvfinspect 16.2.0";

/// All commands with their options, and what runs the one that is asked for.
class CommandLine {
 public:
  CommandLine() {
    app_.name("rvfinspect");
    app_.set_version_flag("--version", kVersionLine);
    app_.set_help_flag("--help", "Show this help");
    app_.require_subcommand(1);
    app_.footer(
        "Exit status: 0 no differences, or the file is sound; 1 differences; 2 trouble; 3 check "
        "found "
        "warnings only.\nrvfinspect COMMAND --help lists the options of a command.");
    runsAs(declareChanges(app_, changes_), [this] { return runChanges(changes_); });
    runsAs(declareReport(app_, report_), [this] { return runReport(report_); });
    runsAs(declareList(app_, list_), [this] { return runList(list_); });
    runsAs(declarePage(app_, page_), [this] { return runPage(page_); });
    runsAs(declareDump(app_, dump_), [this] { return runDump(dump_); });
    runsAs(declareCheck(app_, check_), [this] { return runCheck(check_); });
    runsAs(declareSummary(app_, summary_), [this] { return runSummary(summary_); });
  }

  int run(int argc, char** argv) {
    app_.parse(argc, argv);
    if (app_.got_subcommand("changes") && changes_.first.empty() && changes_.from.empty()) {
      throw Trouble("changes", "needs FIRST and SECOND, or --from FILE");
    }
    if (app_.got_subcommand("report") && report_.first.empty() && report_.from.empty() &&
        report_.pair.empty()) {
      throw Trouble("report", "needs FIRST and SECOND, --from FILE or --pair FOLDER");
    }
    return action_();
  }

  /// Prints one line about a command line that is not understood, or the help if it was requested.
  int explain(const CLI::ParseError& error, int argc, char** argv) {
    if (error.get_exit_code() == static_cast<int>(CLI::ExitCodes::Success)) {
      return app_.exit(error);
    }
    const std::string line = explainUsage(app_, error, {argv + 1, argv + argc});
    std::fprintf(stderr, "%s\n", line.c_str());
    return status::kTrouble;
  }

 private:
  using Action = std::function<int()>;

  void runsAs(CLI::App& command, Action action) {
    command.callback([this, action = std::move(action)] { action_ = action; });
  }

  CLI::App app_{
      "Shows what changed between two page-capture files, and what such a file contains."};
  Action action_;
  ChangesOptions changes_;
  ReportOptions report_;
  ListOptions list_;
  PageOptions page_;
  DumpOptions dump_;
  CheckOptions check_;
  SummaryOptions summary_;
};

}  // namespace

int runInspect(int argc, char** argv) {
  CommandLine commandLine;
  try {
    return commandLine.run(argc, argv);
  } catch (const CLI::ParseError& error) {
    return commandLine.explain(error, argc, argv);
  } catch (const Trouble& trouble) {
    const std::string subject =
        trouble.subject.empty() ? "" : shownText(std::string_view(trouble.subject)) + ": ";
    std::fprintf(stderr, "rvfinspect: %s%s\n", subject.c_str(), trouble.what());
    return status::kTrouble;
  }
}

}  // namespace rvf::inspect
