#include "inspect/CommandLine.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <functional>
#include <numeric>
#include <string>
#include <utility>
#include <vector>

#include "inspect/Commands.h"
#include "inspect/model/BitNames.h"
#include "inspect/model/Trouble.h"
#include "inspect/output/ShownText.h"

namespace rvf::inspect {

namespace {

constexpr const char* kVersionLine = "rvfinspect 16.2.0";

/// The values of an option that takes one of a few words.
template <class Value>
using Choices = std::vector<std::pair<std::string, Value>>;

const Choices<Format> kReportFormats = {
    {"text", Format::kText}, {"jsonl", Format::kJsonLines}, {"junit", Format::kJUnit}};
const Choices<Format> kSummaryFormats = {{"text", Format::kText},
                                         {"jsonl", Format::kJsonLines},
                                         {"junit", Format::kJUnit},
                                         {"html", Format::kHtml}};
const Choices<Format> kDataFormats = {{"text", Format::kText}, {"jsonl", Format::kJsonLines}};
const Choices<ColourReading> kColourReadings = {
    {"rgb", ColourReading::kRgb}, {"bgr", ColourReading::kBgr}, {"cmyk", ColourReading::kCmyk}};
const Choices<When> kWhens = {
    {"auto", When::kAuto}, {"always", When::kAlways}, {"never", When::kNever}};

template <class Value>
CLI::Option* addChoice(CLI::App* command, const std::string& name, Value& target,
                       const Choices<Value>& choices, const std::string& purpose) {
  std::string names;
  for (const auto& choice : choices) {
    names += (names.empty() ? "" : ", ") + choice.first;
  }
  const auto choose = [&target, choices, name, names](const std::string& word) {
    for (const auto& [choiceName, value] : choices) {
      if (choiceName == word) {
        target = value;
        return;
      }
    }
    throw CLI::ValidationError(name, word + " is not one of " + names);
  };
  return command->add_option_function<std::string>(name, choose, purpose + ": " + names);
}

const CLI::Validator kFromOne(
    [](const std::string& word) {
      const bool isNumber = !word.empty() && word.size() < 10 &&
                            word.find_first_not_of("0123456789") == std::string::npos;
      return isNumber && std::stoi(word) > 0 ? "" : word + " is no number from 1";
    },
    "");

/// A command and what runs it once its options are known.
using Action = std::function<int()>;

int editDistance(std::string_view a, std::string_view b) {
  std::vector<int> row(b.size() + 1);
  std::iota(row.begin(), row.end(), 0);
  for (const char character : a) {
    int diagonal = row[0]++;
    for (std::size_t j = 0; j < b.size(); ++j) {
      const int replaced = diagonal + (character == b[j] ? 0 : 1);
      diagonal = row[j + 1];
      row[j + 1] = std::min({replaced, row[j] + 1, diagonal + 1});
    }
  }
  return row.back();
}

/// ", did you mean NAME?" for the name most similar to a word; empty if none is.
std::string suggestion(std::string_view word, const std::vector<std::string>& names) {
  int least = std::max(2, static_cast<int>(word.size()) / 3) + 1;
  std::string nearest;
  for (const std::string& name : names) {
    const int distance = editDistance(word, name);
    if (distance < least) {
      least = distance;
      nearest = name;
    }
  }
  return nearest.empty() ? "" : "; did you mean " + nearest + "?";
}

/// The declarations of all commands on one CLI::App.
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
    addChanges();
    addReport();
    addList();
    addPage();
    addDump();
    addCheck();
    addSummary();
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
    const std::vector<std::string> words(argv + 1, argv + argc);
    const CLI::App* command = commandOf(words);
    std::string line = std::string("rvfinspect") +
                       (command == &app_ ? "" : " " + command->get_name()) + ": " + error.what();
    const std::string unknown = unknownWord(*command, words);
    if (words.empty()) {
      line = "rvfinspect: a command is missing: " + joined(commandNames());
    } else if (command == &app_) {
      line = "rvfinspect: unknown command " + words.front() +
             suggestion(words.front(), commandNames());
    } else if (!unknown.empty()) {
      line = "rvfinspect " + command->get_name() + ": unknown option " + unknown +
             suggestion(unknown, optionNames(*command));
    }
    std::replace(line.begin(), line.end(), '\n', ' ');
    std::fprintf(stderr, "%s (see rvfinspect %s--help)\n",
                 shownText(std::string_view(line)).c_str(),
                 command == &app_ ? "" : (command->get_name() + " ").c_str());
    return status::kTrouble;
  }

 private:
  CLI::App* addCommand(const std::string& name, const std::string& purpose,
                       const std::string& example, Action action) {
    CLI::App* command = app_.add_subcommand(name, purpose);
    command->footer("Example:\n  " + example);
    command->set_help_flag("--help", "Show this help");
    command->callback([this, action = std::move(action)] { action_ = action; });
    return command;
  }

  static void addOutput(CLI::App* command, OutputOptions& output, const Choices<Format>& formats) {
    addChoice(command, "--format", output.format, formats, "Output format")->type_name("FORMAT");
    command->add_option("--output", output.path, "Write to FILE instead of standard output")
        ->type_name("FILE");
    addChoice(command, "--color", output.color, kWhens, "When to use colours")->type_name("WHEN");
    addRedaction(command);
  }

  static void addRedaction(CLI::App* command) {
    command->add_flag("--redact", redactsTexts,
                      "Show every letter as x and every digit as 9 in texts, names and paths, and "
                      "leave digests out");
  }

  static void addSelection(CLI::App* command, Selection& selection) {
    command
        ->add_option("--customer", selection.customer,
                     "Only this customer: its id, or # and its number from 1")
        ->type_name("ID|#N");
    command->add_option("--page", selection.page, "Only this page of each customer, from 1")
        ->check(kFromOne)
        ->type_name("N");
  }

  void addChanges() {
    CLI::App* command =
        addCommand("changes", "List every change between two files, page by page or grouped",
                   "rvfinspect changes --position-tolerance 5 before.rvf after.rvf",
                   [this] { return runChanges(changes_); });
    CLI::Option* first = command->add_option("FIRST", changes_.first, "The first file");
    CLI::Option* second = command->add_option("SECOND", changes_.second, "The second file");
    first->needs(second);
    command
        ->add_option("--from", changes_.from, "Compare the two files named in this difference file")
        ->type_name("FILE")
        ->excludes(first);
    addTolerances(command, changes_);
    addSelection(command, changes_.selection);
    command->add_flag("--groups", changes_.groups,
                      "Show equal changes on many pages as one group, the largest first");
    command->add_flag("--all-pages", changes_.showsAllPages, "Show pages without changes too");
    command->add_option("--accepted", changes_.accepted, "Leave out the groups listed in this file")
        ->type_name("FILE");
    command
        ->add_option("--write-accepted", changes_.writeAccepted,
                     "Write the groups to a file for --accepted")
        ->type_name("FILE");
    addOutput(command, changes_.output, kReportFormats);
    addProgress(command, changes_.output);
    command->footer(
        "Pages are paired by content, or by position if a customer has over 1,000,000 changed "
        "parts.\n"
        "Example:\n  rvfinspect changes --position-tolerance 5 before.rvf after.rvf");
  }

  template <class Options>
  static void addTolerances(CLI::App* command, Options& options) {
    command
        ->add_option("--position-tolerance", options.tolerances.positionTolerance,
                     "Positions that differ by up to N units count as the same")
        ->type_name("N");
    command
        ->add_option("--line-tolerance", options.tolerances.lineTolerance,
                     "Line widths that differ by up to N units count as the same")
        ->type_name("N");
    addOldText(command, options.oldText);
  }

  static void addOldText(CLI::App* command, OldText& oldText) {
    command->add_flag_callback(
        "--two-byte-text", [&oldText] { oldText = OldText::kTwoBytes; },
        "Text in files of versions 1 and 2 has two bytes per character");
  }

  static void addProgress(CLI::App* command, OutputOptions& output) {
    addChoice(command, "--progress", output.progress, kWhens,
              "When to show progress on standard error")
        ->type_name("WHEN");
  }

  void addReport() {
    CLI::App* command = addCommand("report", "Write an HTML report of what changed into a folder",
                                   "rvfinspect report before.rvf after.rvf --out report",
                                   [this] { return runReport(report_); });
    CLI::Option* first = command->add_option("FIRST", report_.first, "The first file");
    CLI::Option* second = command->add_option("SECOND", report_.second, "The second file");
    first->needs(second);
    CLI::Option* from = command
                            ->add_option("--from", report_.from,
                                         "Compare the two files named in this difference file")
                            ->type_name("FILE")
                            ->excludes(first);
    command
        ->add_option(
            "--pair", report_.pair,
            "Compare the two files that rvfjobs compared in this folder, with their options")
        ->type_name("FOLDER")
        ->excludes(first)
        ->excludes(from);
    command
        ->add_option("--out", report_.out, "The folder to write to; an existing report is replaced")
        ->type_name("FOLDER")
        ->required();
    command
        ->add_option("--max-pages", report_.maxPages,
                     "Draw up to N pages: some of each group, then more of the largest")
        ->check(CLI::Range(0, 100000))
        ->capture_default_str()
        ->type_name("N");
    addTolerances(command, report_);
    addChoice(command, "--progress", report_.progress, kWhens,
              "When to show progress on standard error")
        ->type_name("WHEN");
    addRedaction(command);
  }

  void addList() {
    CLI::App* command = addCommand("list", "Show difference files without their inputs",
                                   "rvfinspect list --differing Differenced.dat",
                                   [this] { return runList(list_); });
    command->add_option("FILE", list_.files, "Difference files")->required();
    addSelection(command, list_.selection);
    command->add_flag("--differing", list_.onlyDiffering, "Only pages that differ");
    command->add_option("--bit", list_.bitName, "Only pages with this bit: " + allBitNames())
        ->check([](const std::string& name) {
          return bitOfName(name) != 0 ? "" : name + " is not one of " + allBitNames();
        })
        ->type_name("NAME");
    addOutput(command, list_.output, kReportFormats);
  }

  void addPage() {
    CLI::App* command =
        addCommand("page", "Draw one page as SVG",
                   "rvfinspect page before.rvf --customer '#3' --page 2 --out page.svg",
                   [this] { return runPage(page_); });
    command->add_option("FILE", page_.file, "A capture file")->required();
    addSelection(command, page_.selection);
    command->add_option("--out", page_.out, "Write to FILE instead of standard output")
        ->type_name("FILE");
    command
        ->add_option("--fonts", page_.fonts,
                     R"(Fonts by number, as JSON: {"3": {"family": "Serif", "size": 42}})")
        ->type_name("FILE");
    addChoice(command, "--colours", page_.colours, kColourReadings,
              "How to interpret the four bytes of a colour, which only the engine knows")
        ->type_name("ORDER");
    addRedaction(command);
    addOldText(command, page_.oldText);
  }

  void addDump() {
    CLI::App* command = addCommand("dump", "Print everything that a capture file contains",
                                   "rvfinspect dump --customer '#3' --page 1 before.rvf",
                                   [this] { return runDump(dump_); });
    command->add_option("FILE", dump_.file, "A capture file")->required();
    addSelection(command, dump_.selection);
    CLI::Option* objects = command->add_flag("--objects", dump_.objects, "Only the shared objects");
    command->add_flag("--index", dump_.index, "Only the index")->excludes(objects);
    addOldText(command, dump_.oldText);
    addOutput(command, dump_.output, kDataFormats);
  }

  void addCheck() {
    CLI::App* command = addCommand("check", "Verify capture files and locate any damage",
                                   "rvfinspect check --format jsonl night/*.rvf",
                                   [this] { return runCheck(check_); });
    command->add_option("FILE", check_.files, "Capture files")->required();
    addOldText(command, check_.oldText);
    addOutput(command, check_.output, kDataFormats);
  }

  void addSummary() {
    CLI::App* command =
        addCommand("summary", "Sum up the results of many pairs compared by rvfjobs",
                   "rvfinspect summary --groups results", [this] { return runSummary(summary_); });
    command->add_option("RESULTS", summary_.results, "The folder of results")->required();
    command->add_flag("--groups", summary_.groups,
                      "Read the files of differing pairs again and group their changes");
    command
        ->add_option("--accepted", summary_.accepted,
                     "Like --groups, but leave out the groups listed in this file")
        ->type_name("FILE");
    addTolerances(command, summary_);
    addOutput(command, summary_.output, kSummaryFormats);
    addProgress(command, summary_.output);
    command->footer(
        "Tolerances and --two-byte-text apply to pairs whose own options specify none.\n"
        "Examples:\n  rvfinspect summary --groups results\n"
        "  rvfinspect summary --groups --format html --output results/index.html results");
  }

  [[nodiscard]] const CLI::App* commandOf(const std::vector<std::string>& words) const {
    for (const CLI::App* command : app_.get_subcommands({})) {
      if (!words.empty() && command->get_name() == words.front()) {
        return command;
      }
    }
    return &app_;
  }

  [[nodiscard]] std::vector<std::string> commandNames() const {
    std::vector<std::string> names;
    for (const CLI::App* command : app_.get_subcommands({})) {
      names.push_back(command->get_name());
    }
    return names;
  }

  static std::vector<std::string> optionNames(const CLI::App& command) {
    std::vector<std::string> names;
    for (const CLI::Option* option : command.get_options()) {
      if (!option->get_lnames().empty()) {
        names.push_back("--" + option->get_lnames().front());
      }
    }
    return names;
  }

  // The first word that looks like an option but is not one.
  static std::string unknownWord(const CLI::App& command, const std::vector<std::string>& words) {
    const std::vector<std::string> names = optionNames(command);
    for (const std::string& word : words) {
      std::string name = word.substr(0, word.find('='));
      if (name.size() > 1 && name.front() == '-' && std::ranges::count(names, name) == 0) {
        return name;
      }
    }
    return "";
  }

  static std::string joined(const std::vector<std::string>& names) {
    std::string text;
    for (const std::string& name : names) {
      text += (text.empty() ? "" : ", ") + name;
    }
    return text;
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
