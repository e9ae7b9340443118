#pragma once

#include <string>
#include <string_view>

#include "base/Integers.h"
#include "run/RunOptions.h"

namespace rvf {

class FailureLog;

// What the operator is told beside the numbered messages: on standard error, but for the answers to
// --help and --version. Nothing here fails: a stream that cannot be written is ignored.

/// What a finished comparison has found.
struct ComparisonCounts {
  i32 status = 0;  // the DiffFlags of the files
  i32 customersDone = 0;
  i64 pagesCompared = 0;
  i64 differingPages = 0;
  i64 unpairedPages = 0;  // of both files, including those that the walk did not reach
};

/// One line without an end: "3 of 120 pages differ, 2 pages have no partner".
[[nodiscard]] std::string resultLine(const ComparisonCounts& counts);

/// Text as UTF-8 that a terminal can show: control characters appear as \x1B.
[[nodiscard]] std::string printable(const eString& text);

/// The answer to `--help` or `--version`, if that is the only argument; otherwise empty.
[[nodiscard]] std::string answerToQuestion(std::span<const eString> arguments);

/// The options that are accepted but not taken as they are written.
void printWarnings(const RunOptions& options);

/// Each option that was not understood and why, then the usage text. Nothing when all were in
/// order.
void printBadOptions(const RunOptions& options);

void printFailures(const FailureLog& failures);
void printResult(const ComparisonCounts& counts);

/// Reports a failure that no message stands for.
void reportFatalError(const char* reason);

}  // namespace rvf
