#include "run/OperatorNotes.h"

#include <cstdio>

#include "compare/DiffFlags.h"
#include "run/FailureLog.h"
#include "run/OptionTable.h"
#include "run/Progress.h"
#include "run/RunReport.h"
#include "text/NativeText.h"

namespace rvf {

namespace {

// The column of the explanations in the usage text.
constexpr std::size_t kHelpColumn = 30;

std::string usageOf(const OptionRow& option) {
  std::string text = "  -";
  text += toNative(option.name);
  if (option.takesValue()) {
    text += '=';
    text += toNative(option.valueForm);
  }
  text.append(text.size() < kHelpColumn ? kHelpColumn - text.size() : 1, ' ');
  for (const char c : toNative(option.help)) {
    text += c;
    if (c == '\n') {
      text.append(kHelpColumn, ' ');
    }
  }
  return text + "\n";
}

std::string usageText() {
  std::string text =
      "usage: rvfcompare [OPTION]...\n"
      "Compares two page-capture files. Options, in any case, with - or / in front:\n";
  for (const OptionRow& option : optionTable()) {
    text += usageOf(option);
  }
  return text +
         "or one of --help and --version alone.\n"
         "Exit status: 0 identical, 255 failed, otherwise the bits of what differs\n"
         "(with -SIMPLERETURN 1).\n"
         "Example: rvfcompare -COMPARE=before.rvf,after.rvf -POS_TOLERANCE=5\n";
}

void print(const std::string& text) {
  eraseProgressLine();
  std::fwrite(text.data(), 1, text.size(), stderr);
}

std::string lineOf(const RunOptions::Note& note, const char* kind) {
  std::string line = "rvfcompare: ";
  if (!note.place.isEmpty()) {
    line += printable(note.place) + ": ";
  }
  return line + kind + printable(note.option) + ": " + printable(note.text) + "\n";
}

std::string counted(i64 count, const char* one, const char* several) {
  return std::to_string(count) + (count == 1 ? one : several);
}

}  // namespace

std::string printable(const eString& text) {
  const auto isControl = [](char16_t c) { return c < u' ' || (c >= 0x7F && c < 0xA0); };
  std::string shown;
  for (std::u16string_view left = text.view(); !left.empty();) {
    if (isControl(left.front())) {
      char digits[sizeof "\\xFF"];
      std::snprintf(digits, sizeof digits, "\\x%02X", left.front() & 0xFFU);
      shown += digits;
      left.remove_prefix(1);
      continue;
    }
    std::size_t length = 0;
    while (length < left.size() && !isControl(left[length])) {
      length += 1;
    }
    shown += toNative(left.substr(0, length));
    left.remove_prefix(length);
  }
  return shown;
}

std::string answerToQuestion(std::span<const eString> arguments) {
  if (arguments.size() == 2 && arguments[1] == u"--help") {
    return usageText();
  }
  if (arguments.size() == 2 && arguments[1] == u"--version") {
    return "rvfcompare " + toNative(kProgramVersion) + "\n";
  }
  return {};
}

std::string resultLine(const ComparisonCounts& counts) {
  const auto status = static_cast<DiffFlags>(counts.status);
  if ((status & diff::kResolution) != 0) {
    return "the files have different resolutions; nothing was compared";
  }
  const bool hasOtherCustomers = (status & diff::kCustomers) != 0;
  if (hasOtherCustomers && counts.pagesCompared == 0 && counts.customersDone == 0) {
    return "the files have different customers; nothing was compared";
  }
  std::string line = std::to_string(counts.differingPages) + " of " +
                     counted(counts.pagesCompared, " page", " pages") +
                     (counts.differingPages == 1 ? " differs" : " differ");
  if (hasOtherCustomers) {
    return line + "; stopped behind " + counted(counts.customersDone, " customer", " customers") +
           ": the next ids are not the same";
  }
  if (counts.unpairedPages > 0) {
    line += ", " + counted(counts.unpairedPages, " page has no partner", " pages have no partner");
  }
  return line;
}

void printWarnings(const RunOptions& options) {
  std::string text;
  for (const RunOptions::Note& note : options.warnings) {
    text += lineOf(note, "warning: ");
  }
  print(text);
}

void printBadOptions(const RunOptions& options) {
  std::string text;
  for (const RunOptions::Note& note : options.badOptions) {
    text += lineOf(note, "");
  }
  if (!text.empty()) {
    text += usageText();
  }
  print(text);
}

void printFailures(const FailureLog& failures) { print(failures.text()); }

void printResult(const ComparisonCounts& counts) {
  print("rvfcompare: " + resultLine(counts) + "\n");
}

// Must not allocate: there may be no memory.
void reportFatalError(const char* reason) {
  eraseProgressLine();
  std::fprintf(stderr, "rvfcompare: %s\n", reason);
}

}  // namespace rvf
