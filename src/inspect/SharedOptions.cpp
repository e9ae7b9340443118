#include "inspect/SharedOptions.h"

#include "inspect/output/ShownText.h"

namespace rvf::inspect {

namespace {

const Choices<When> kWhens = {
    {"auto", When::kAuto}, {"always", When::kAlways}, {"never", When::kNever}};

const CLI::Validator kFromOne(
    [](const std::string& word) {
      const bool isNumber = !word.empty() && word.size() < 10 &&
                            word.find_first_not_of("0123456789") == std::string::npos;
      return isNumber && std::stoi(word) > 0 ? "" : word + " is no number from 1";
    },
    "");

}  // namespace

void addOutput(CLI::App& command, OutputOptions& output, const Choices<Format>& formats) {
  addChoice(command, "--format", output.format, formats, "Output format")->type_name("FORMAT");
  command.add_option("--output", output.path, "Write to FILE instead of standard output")
      ->type_name("FILE");
  addChoice(command, "--color", output.color, kWhens, "When to use colours")->type_name("WHEN");
  addRedaction(command);
}

void addProgress(CLI::App& command, When& progress) {
  addChoice(command, "--progress", progress, kWhens, "When to show progress on standard error")
      ->type_name("WHEN");
}

void addRedaction(CLI::App& command) {
  command.add_flag("--redact", redactsTexts,
                   "Show every letter as x and every digit as 9 in texts, names and paths, and "
                   "leave digests out");
}

void addSelection(CLI::App& command, Selection& selection) {
  command
      .add_option("--customer", selection.customer,
                  "Only this customer: its id, or # and its number from 1")
      ->type_name("ID|#N");
  command.add_option("--page", selection.page, "Only this page of each customer, from 1")
      ->check(kFromOne)
      ->type_name("N");
}

void addTolerances(CLI::App& command, Tolerances& tolerances, OldText& oldText) {
  command
      .add_option("--position-tolerance", tolerances.positionTolerance,
                  "Positions that differ by up to N units count as the same")
      ->type_name("N");
  command
      .add_option("--line-tolerance", tolerances.lineTolerance,
                  "Line widths that differ by up to N units count as the same")
      ->type_name("N");
  addOldText(command, oldText);
}

void addOldText(CLI::App& command, OldText& oldText) {
  command.add_flag_callback(
      "--two-byte-text", [&oldText] { oldText = OldText::kTwoBytes; },
      "Text in files of versions 1 and 2 has two bytes per character");
}

}  // namespace rvf::inspect
