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
#include "run/OperatorNotes.h"
#include "run/OutputGuard.h"
#include "run/Progress.h"
#include "run/RunReport.h"
#include "text/NativeText.h"

namespace rvf {

namespace {

constexpr const char16_t* kMessageFileLabel = u"Message File";

void tellUnusable(const eString& path, const eString& reason) {
  Report(MessageNumber::kFileUnusable, path, reason);
}

/// What stands behind such a record cannot be told, so reading on would compare garbage.
[[noreturn]] void endOnNewerRecord(const NewerRecord& record) {
  Report(MessageNumber::kRecordTooNew, record.label, record.version, record.highest);
  endProcess();
}

/// Opens a file of the comparison. Null, and a report, when that fails.
std::unique_ptr<eDiskFile> openFile(const eString& path, i32 flags) {
  auto file = std::make_unique<eDiskFile>();
  if (file->Open(path, flags | open_flags::kUnbuffered, false)) {
    return file;
  }
  if (file->refusedLength() != 0) {
    tellTooLarge(path, file->refusedLength());
  }
  tellUnusable(path, file->openFailure());
  return nullptr;
}

void closeFile(std::unique_ptr<eDiskFile>& file) {
  if (file != nullptr) {
    file->Close();
    file.reset();
  }
}

}  // namespace

CompareRun::CompareRun() = default;

CompareRun::~CompareRun() {
  try {
    closeRun(exit_status::kFailed);
  } catch (...) {
    // Without memory the report stays without its end; what ended the run is told by main.
  }
}

bool CompareRun::parseArguments(std::span<const eString> arguments) {
  return options_.parseCommandLine(arguments, true) || options_.badControlLine;
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
  firstFile_ = openFile(options_.firstFile, open_flags::kRead);
  if (firstFile_ == nullptr) {
    return false;
  }
  secondFile_ = openFile(options_.secondFile, open_flags::kRead);
  if (secondFile_ == nullptr) {
    return false;
  }
  if (!objections.differenceFile.isEmpty()) {
    tellUnusable(options_.differenceFile, objections.differenceFile);
    return false;
  }
  differenceFile_ = openFile(options_.differenceFile, open_flags::kWrite | open_flags::kCreate);
  return differenceFile_ != nullptr;
}

// Here the message file itself is the problem, so that the console is told.
bool CompareRun::openReport(const eString& objection) {
  const eString& path = options_.messageFile;
  eString line;
  messageFile_ = std::make_unique<eDiskFile>();
  auto sink = std::make_unique<FileSink>(*messageFile_, path);
  if (!objection.isEmpty() || !sink->openFile(options_.msgEncoding, ByteOrderMark::kWritten)) {
    tellMessageFileProblem(path, objection.isEmpty() ? sink->openFailure() : objection);
    line.Format(u" ****** There was an error opening the %ls named %ls *****", kMessageFileLabel,
                path);
  } else if (!sink->connect()) {
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
  consoleSink_.WriteLine(
      u"-*-*- Plenarix Batch Compare Utility Version 16.2.0 32-bit (DBCS)  -*-*- Batch Regression "
      u"Utility.",
      LineEnd::kWritten);
  consoleSink_.Flush();
}

void CompareRun::closeRun(i32 status) {
  closeFile(differenceFile_);
  closeFile(firstFile_);
  closeFile(secondFile_);
  closeReport(status);
}

// The sink stays attached until its last byte is written: a message about its own end still counts.
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

bool CompareRun::loadCapture(RvfReader& reader, eDiskFile& file) const {
  reader.load(file);
  if (const std::optional<NewerRecord>& newer = reader.loadResult().newer) {
    endOnNewerRecord(*newer);
  }
  if (!reader.valid()) {
    Report(MessageNumber::kFileUnusable, file.name(), u"Invalid RVF");
  }
  return reader.valid();
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
  const DiffFlags bits = walkCustomers(first, second, true, options_.tolerances, output);
  for (const CompareContext* context : {&firstContext, &secondContext}) {
    if (context->newerRecord() != nullptr) {
      endOnNewerRecord(*context->newerRecord());
    }
  }
  return static_cast<i32>(bits);
}

}  // namespace rvf
