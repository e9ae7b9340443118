#pragma once

#include <memory>
#include <optional>
#include <span>

#include "base/Integers.h"
#include "run/OperatorNotes.h"
#include "run/RunOptions.h"
#include "storage/DiskFile.h"
#include "text/eString.h"
#include "text/encoding/TextSink.h"

namespace rvf {

class FailureLog;
class RvfReader;

/// The steps of one run and everything that it owns: the settings, the two sinks and the three
/// files. Each step is called once, in the order of declaration; a step that fails reports why, and
/// only closeRun may follow it.
class CompareRun {
 public:
  /// Opens nothing and reports nothing. `failures` is not owned; it receives details that no
  /// message can express.
  explicit CompareRun(FailureLog& failures);
  CompareRun(const CompareRun&) = delete;
  CompareRun& operator=(const CompareRun&) = delete;
  /// Closes what is still open, as a failed run.
  ~CompareRun();

  /// `arguments` starts with the program's name. A bad line in a control file ends the run only in
  /// openRun, so that its message file exists.
  [[nodiscard]] bool parseArguments(std::span<const eString> arguments);

  /// Opens the message file and writes banner and summary to it, then opens both inputs and empties
  /// the difference file. This precedes the first page, so that a difference file that cannot be
  /// written stops the run early. A file that cannot or must not be opened (OutputGuard.h) is
  /// reported as kFileUnusable and ends the step; for the message file, a line is printed on the
  /// console and the reason is added to the failures.
  [[nodiscard]] bool openRun();

  /// Announces the comparison on the console.
  void greet();

  /// Compares the files. Returns their DiffFlags, or kFailed if one of them is not a valid capture
  /// file (kFileUnusable).
  [[nodiscard]] i32 compareFiles();

  /// Closes the files and ends the message file with the closing report for `status`. Does nothing
  /// if nothing is open.
  void closeRun(i32 status);

  [[nodiscard]] const RunOptions& options() const { return options_; }
  /// The counts of a finished comparison. Empty unless standard error is a terminal.
  [[nodiscard]] const std::optional<ComparisonCounts>& counts() const { return counts_; }

 private:
  [[nodiscard]] bool openReport(const eString& objection);
  [[nodiscard]] bool loadCapture(RvfReader& reader, eDiskFile& file);
  void notePages(RvfReader& reader, const eString& path);
  void closeReport(i32 status);

  FailureLog& failures_;
  RunOptions options_;
  std::optional<ComparisonCounts> counts_;
  ConsoleSink consoleSink_;
  std::unique_ptr<eDiskFile> messageFile_;
  std::unique_ptr<FileSink> reportSink_;  // writes to messageFile_
  std::unique_ptr<eDiskFile> differenceFile_;
  std::unique_ptr<eDiskFile> firstFile_;
  std::unique_ptr<eDiskFile> secondFile_;
};

}  // namespace rvf
