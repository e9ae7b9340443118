#include "inspect/CommandOptions.h"

#include "inspect/SharedOptions.h"
#include "inspect/model/BitNames.h"

namespace rvf::inspect {

namespace {

const Choices<Format> kReportFormats = {
    {"text", Format::kText}, {"jsonl", Format::kJsonLines}, {"junit", Format::kJUnit}};
const Choices<Format> kSummaryFormats = {{"text", Format::kText},
                                         {"jsonl", Format::kJsonLines},
                                         {"junit", Format::kJUnit},
                                         {"html", Format::kHtml}};
const Choices<Format> kDataFormats = {{"text", Format::kText}, {"jsonl", Format::kJsonLines}};

const Choices<ColourReading> kColourReadings = {
    {"rgb", ColourReading::kRgb}, {"bgr", ColourReading::kBgr}, {"cmyk", ColourReading::kCmyk}};

CLI::App& newCommand(CLI::App& app, const std::string& name, const std::string& purpose,
                     const std::string& example) {
  CLI::App& command = *app.add_subcommand(name, purpose);
  command.footer("Example:\n  " + example);
  command.set_help_flag("--help", "Show this help");
  return command;
}

}  // namespace

CLI::App& declareChanges(CLI::App& app, ChangesOptions& options) {
  CLI::App& command =
      newCommand(app, "changes", "List every change between two files, page by page or grouped",
                 "rvfinspect changes --position-tolerance 5 before.rvf after.rvf");
  CLI::Option* first = command.add_option("FIRST", options.first, "The first file");
  CLI::Option* second = command.add_option("SECOND", options.second, "The second file");
  first->needs(second);
  command.add_option("--from", options.from, "Compare the two files named in this difference file")
      ->type_name("FILE")
      ->excludes(first);
  addTolerances(command, options.tolerances, options.oldText);
  addSelection(command, options.selection);
  command.add_flag("--groups", options.groups,
                   "Show equal changes on many pages as one group, the largest first");
  command.add_flag("--all-pages", options.showsAllPages, "Show pages without changes too");
  command.add_option("--accepted", options.accepted, "Leave out the groups listed in this file")
      ->type_name("FILE");
  command
      .add_option("--write-accepted", options.writeAccepted,
                  "Write the groups to a file for --accepted")
      ->type_name("FILE");
  addOutput(command, options.output, kReportFormats);
  addProgress(command, options.output.progress);
  command.footer(
      "Pages are paired by content, or by position if a customer has over 1,000,000 changed "
      "parts.\n"
      "Example:\n  rvfinspect changes --position-tolerance 5 before.rvf after.rvf");
  return command;
}

CLI::App& declareReport(CLI::App& app, ReportOptions& options) {
  CLI::App& command =
      newCommand(app, "report", "Write an HTML report of what changed into a folder",
                 "rvfinspect report before.rvf after.rvf --out report");
  CLI::Option* first = command.add_option("FIRST", options.first, "The first file");
  CLI::Option* second = command.add_option("SECOND", options.second, "The second file");
  first->needs(second);
  CLI::Option* from =
      command
          .add_option("--from", options.from, "Compare the two files named in this difference file")
          ->type_name("FILE")
          ->excludes(first);
  command
      .add_option("--pair", options.pair,
                  "Compare the two files that rvfjobs compared in this folder, with their options")
      ->type_name("FOLDER")
      ->excludes(first)
      ->excludes(from);
  command
      .add_option("--out", options.out, "The folder to write to; an existing report is replaced")
      ->type_name("FOLDER")
      ->required();
  command
      .add_option("--max-pages", options.maxPages,
                  "Draw up to N pages: some of each group, then more of the largest")
      ->check(CLI::Range(0, 100000))
      ->capture_default_str()
      ->type_name("N");
  addTolerances(command, options.tolerances, options.oldText);
  addProgress(command, options.progress);
  addRedaction(command);
  return command;
}

CLI::App& declareList(CLI::App& app, ListOptions& options) {
  CLI::App& command = newCommand(app, "list", "Show difference files without their inputs",
                                 "rvfinspect list --differing Differenced.dat");
  command.add_option("FILE", options.files, "Difference files")->required();
  addSelection(command, options.selection);
  command.add_flag("--differing", options.onlyDiffering, "Only pages that differ");
  command.add_option("--bit", options.bitName, "Only pages with this bit: " + allBitNames())
      ->check([](const std::string& name) {
        return bitOfName(name) != 0 ? "" : name + " is not one of " + allBitNames();
      })
      ->type_name("NAME");
  addOutput(command, options.output, kReportFormats);
  return command;
}

CLI::App& declarePage(CLI::App& app, PageOptions& options) {
  CLI::App& command =
      newCommand(app, "page", "Draw one page as SVG",
                 "rvfinspect page before.rvf --customer '#3' --page 2 --out page.svg");
  command.add_option("FILE", options.file, "A capture file")->required();
  addSelection(command, options.selection);
  command.add_option("--out", options.out, "Write to FILE instead of standard output")
      ->type_name("FILE");
  command
      .add_option("--fonts", options.fonts,
                  R"(Fonts by number, as JSON: {"3": {"family": "Serif", "size": 42}})")
      ->type_name("FILE");
  addChoice(command, "--colours", options.colours, kColourReadings,
            "How to interpret the four bytes of a colour, which only the engine knows")
      ->type_name("ORDER");
  addRedaction(command);
  addOldText(command, options.oldText);
  return command;
}

CLI::App& declareDump(CLI::App& app, DumpOptions& options) {
  CLI::App& command = newCommand(app, "dump", "Print everything that a capture file contains",
                                 "rvfinspect dump --customer '#3' --page 1 before.rvf");
  command.add_option("FILE", options.file, "A capture file")->required();
  addSelection(command, options.selection);
  CLI::Option* objects = command.add_flag("--objects", options.objects, "Only the shared objects");
  command.add_flag("--index", options.index, "Only the index")->excludes(objects);
  addOldText(command, options.oldText);
  addOutput(command, options.output, kDataFormats);
  return command;
}

CLI::App& declareCheck(CLI::App& app, CheckOptions& options) {
  CLI::App& command = newCommand(app, "check", "Verify capture files and locate any damage",
                                 "rvfinspect check --format jsonl night/*.rvf");
  command.add_option("FILE", options.files, "Capture files")->required();
  addOldText(command, options.oldText);
  addOutput(command, options.output, kDataFormats);
  return command;
}

CLI::App& declareSummary(CLI::App& app, SummaryOptions& options) {
  CLI::App& command =
      newCommand(app, "summary", "Sum up the results of many pairs compared by rvfjobs",
                 "rvfinspect summary --groups results");
  command.add_option("RESULTS", options.results, "The folder of results")->required();
  command.add_flag("--groups", options.groups,
                   "Read the files of differing pairs again and group their changes");
  command
      .add_option("--accepted", options.accepted,
                  "Like --groups, but leave out the groups listed in this file")
      ->type_name("FILE");
  addTolerances(command, options.tolerances, options.oldText);
  addOutput(command, options.output, kSummaryFormats);
  addProgress(command, options.output.progress);
  command.footer(
      "Tolerances and --two-byte-text apply to pairs whose own options specify none.\n"
      "Examples:\n  rvfinspect summary --groups results\n"
      "  rvfinspect summary --groups --format html --output results/index.html results");
  return command;
}

}  // namespace rvf::inspect
