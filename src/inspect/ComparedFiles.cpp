#include "inspect/ComparedFiles.h"

#include "inspect/model/Trouble.h"
#include "text/NativeText.h"

namespace rvf::inspect {

namespace {

JudgedPages readJudgedPages(const std::string& path) {
  JudgedPages pages;
  if (path.empty()) {
    return pages;
  }
  eDiskFile file;
  if (!file.Open(fromNative(path), open_flags::kRead | open_flags::kUnbuffered,
                 FileContent::kBinary)) {
    throw Trouble(path, toNative(file.failure().view()));
  }
  const std::string lack = readDifferenceFile(file, pages);
  if (pages.header_.firstPath.isEmpty()) {
    throw Trouble(path, lack.empty() ? "it names no files" : lack);
  }
  return pages;
}

}  // namespace

ComparedFiles openFiles(const std::string& first, const std::string& second,
                        const std::string& from, OldText oldText) {
  ComparedFiles files;
  files.judged = readJudgedPages(from);
  const DifferenceHeader& header = files.judged.header_;
  files.first = std::make_unique<CaptureFile>(
      from.empty() ? first : toNative(header.firstPath.view()), oldText);
  files.second = std::make_unique<CaptureFile>(
      from.empty() ? second : toNative(header.secondPath.view()), oldText);
  return files;
}

}  // namespace rvf::inspect
