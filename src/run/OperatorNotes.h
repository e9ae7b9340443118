#pragma once

#include <string>
#include <string_view>

#include "base/Integers.h"
#include "run/RunOptions.h"

namespace rvf {

class FailureLog;

// Output for the operator other than the numbered messages, on standard error except for the
// answers to --help and --version. Nothing here can fail: write errors are ignored.

/// The counts of a finished comparison.
struct ComparisonCounts {
  i32 status = 0;  // the DiffFlags of the files
  i32 customersDone = 0;
  i64 pagesCompared = 0;
  i64 differingPages = 0;
  i64 unpairedPages = 0;  // in both files, including those that the walk did not reach
};

/// One line without a line end: "3 of 120 pages differ, 2 pages have no partner".
[[nodiscard]] std::string resultLine(const ComparisonCounts& counts);

/// Text as UTF-8 that a terminal can show: control characters appear as \x1B.
[[nodiscard]] std::string printable(const eString& text);

/// The answer to `--help` or `--version`, if that is the only argument; otherwise empty.
[[nodiscard]] std::string answerToQuestion(std::span<const eString> arguments);

/// Warns about options that are accepted but not taken as written.
void printWarnings(const RunOptions& options);

/// Prints each option that was not understood and why, then the usage text; nothing if there is
/// none.
void printBadOptions(const RunOptions& options);

void printFailures(const FailureLog& failures);
void printResult(const ComparisonCounts& counts);

/// Reports a failure that has no message number.
void reportFatalError(const char* reason);

}  // namespace rvf
