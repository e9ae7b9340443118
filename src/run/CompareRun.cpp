#include "run/CompareRun.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "capture/CompareContext.h"
#include "capture/RvfReader.h"
#include "compare/CustomerWalk.h"
#include "messages/MessageReporter.h"
#include "messages/ProcessEnd.h"
#include "run/ExitStatus.h"
#include "run/Explanations.h"
#include "run/FailureLog.h"
#include "run/OutputGuard.h"
#include "run/Progress.h"
#include "run/RunReport.h"
#include "text/NativeText.h"

namespace rvf {

namespace {

constexpr const char16_t* kMessageFileLabel = u"Message File";
constexpr const char16_t* kMessageFileRole = u"message file";

// An empty name would end the substitution of arguments in the message.
void reportUnusable(const eString& path, const eString& reason) {
  Report(MessageNumber::kFileUnusable, path.isEmpty() ? u"(no name)" : path, reason);
}

/// Whatever follows such a record cannot be located, so reading on would compare garbage.
[[noreturn]] void endOnNewerRecord(const NewerRecord& record) {
  Report(MessageNumber::kRecordTooNew, record.label, record.version, record.highest);
  endProcess();
}

/// Opens a file of the comparison. A failure is reported and gives null.
std::unique_ptr<eDiskFile> openFile(const eString& path, i32 flags, FailureLog& failures) {
  auto file = std::make_unique<eDiskFile>();
  if (file->Open(path, flags | open_flags::kUnbuffered, FileContent::kBinary)) {
    return file;
  }
  if (file->refusedLength() != 0) {
    failures.add(path, explainTooLarge(file->refusedLength()));
  }
  reportUnusable(path, file->failure());
  return nullptr;
}

void closeFile(std::unique_ptr<eDiskFile>& file) {
  if (file != nullptr) {
    file->Close();
    file.reset();
  }
}

}  // namespace

CompareRun::CompareRun(FailureLog& failures) : failures_(failures) {}

CompareRun::~CompareRun() {
  try {
    closeRun(exit_status::kFailed);
  } catch (...) {
    // Out of memory: the closing report is lost, and main reports what ended the run.
  }
}

bool CompareRun::parseArguments(std::span<const eString> arguments) {
  return options_.parseCommandLine(arguments, ControlFiles::kRead) || options_.badControlLine;
}

bool CompareRun::openRun() {
  const OutputObjections objections = checkOutputs(options_);
  if (!openReport(objections.messageFile)) {
    return false;
  }
  writeBanner(reportSink_.get(), kMessageFileLabel);
  writeOptionsSummary(*reportSink_, options_.tolerances);
  if (options_.badControlLine) {
    return false;
  }
  firstFile_ = openFile(options_.firstFile, open_flags::kRead, failures_);
  if (firstFile_ == nullptr) {
    return false;
  }
  secondFile_ = openFile(options_.secondFile, open_flags::kRead, failures_);
  if (secondFile_ == nullptr) {
    return false;
  }
  if (!objections.differenceFile.isEmpty()) {
    reportUnusable(options_.differenceFile, objections.differenceFile);
    return false;
  }
  differenceFile_ =
      openFile(options_.differenceFile, open_flags::kWrite | open_flags::kCreate, failures_);
  return differenceFile_ != nullptr;
}

// The message file itself is the problem, so the line goes to the console.
bool CompareRun::openReport(const eString& objection) {
  const eString& path = options_.messageFile;
  eString line;
  messageFile_ = std::make_unique<eDiskFile>();
  auto sink = std::make_unique<FileSink>(*messageFile_, path);
  if (!objection.isEmpty() || !sink->openFile(options_.msgEncoding, ByteOrderMark::kWritten)) {
    failures_.add(path, objection.isEmpty() ? sink->openFailure() : objection, kMessageFileRole);
    line.Format(u" ****** There was an error opening the %ls named %ls *****", kMessageFileLabel,
                path);
  } else if (!sink->connect()) {
    failures_.add(path, u"There is no converter for its encoding", kMessageFileRole);
    line.Format(u" ****** There was an error connecting the %ls named %ls to an output sink *****",
                kMessageFileLabel, path);
  } else {
    reportSink_ = std::move(sink);
    messageReporter.AttachReportSink(reportSink_.get());
    return true;
  }
  sink.reset();
  messageFile_.reset();
  consoleSink_.WriteLine(line.c_str(), LineEnd::kWritten);
  return false;
}

void CompareRun::greet() {
  eString line;
  line.Format(
      u"-*-*- Plenarix Batch Compare Utility Version %ls 32-bit (DBCS)  -*-*- Batch Regression "
      u"Utility.",
      kProgramVersion);
  consoleSink_.WriteLine(line.c_str(), LineEnd::kWritten);
  consoleSink_.Flush();
}

void CompareRun::closeRun(i32 status) {
  closeFile(differenceFile_);
  closeFile(firstFile_);
  closeFile(secondFile_);
  closeReport(status);
}

// The sink stays attached until its last byte is written, so that messages about it are still
// counted.
void CompareRun::closeReport(i32 status) {
  if (reportSink_ == nullptr) {
    return;
  }
  writeClosingReport(*reportSink_, status);
  reportSink_->Flush();
  reportSink_->Close();
  messageReporter.detachReportSink();
  reportSink_.reset();
  messageFile_.reset();
}

bool CompareRun::loadCapture(RvfReader& reader, eDiskFile& file) {
  reader.load(file);
  if (reader.valid()) {
    return true;
  }
  failures_.add(file.name(), explainRejection(reader, file.GetLength()));
  if (const std::optional<NewerRecord>& newer = reader.loadResult().newer) {
    endOnNewerRecord(*newer);
  }
  Report(MessageNumber::kFileUnusable, file.name(), u"Invalid RVF");
  return false;
}

i32 CompareRun::compareFiles() {
  CompareContext firstContext;
  CompareContext secondContext;
  RvfReader first(firstContext, options_.dbcsMode);
  RvfReader second(secondContext, options_.dbcsMode);
  if (!loadCapture(first, *firstFile_) || !loadCapture(second, *secondFile_)) {
    return exit_status::kFailed;
  }
  const auto progress = makeProgress(std::min(first.pageCount, second.pageCount));
  const WalkOutput output{*differenceFile_, options_.firstFile, options_.secondFile,
                          progress.get()};
  const auto status = static_cast<i32>(
      walkCustomers(first, second, CountMismatch::kEndsWalk, options_.tolerances, output));
  notePages(first, options_.firstFile);
  notePages(second, options_.secondFile);
  if (progress != nullptr) {
    const ProgressState& last = progress->last();
    counts_ = {.status = status,
               .customersDone = last.customersDone,
               .pagesCompared = last.pagesCompared,
               .differingPages = last.differingPages,
               .unpairedPages = i64{first.pageCount} + second.pageCount - 2 * last.pagesCompared};
  }
  return status;
}

void CompareRun::notePages(RvfReader& reader, const eString& path) {
  const DamageRecord& damage = reader.damage();
  for (const DamagedPage& place : damage.places) {
    failures_.addDamage(path, describePage(reader, place));
  }
  failures_.countDamage(damage.count);
  if (const NewerRecord* newer = reader.context().newerRecord(); newer != nullptr) {
    const DamagedPage place = {reader.currentCustomer, reader.currentPage,
                               reader.context().pageFailure()->offset};
    eString reason = explainNewerRecord(*newer);
    reason.Append(u", at ");
    reason.Append(describePage(reader, place));
    failures_.add(path, reason);
    endOnNewerRecord(*newer);
  }
}

}  // namespace rvf
