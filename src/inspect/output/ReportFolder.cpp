#include "inspect/output/ReportFolder.h"

#include <unistd.h>

#include <fstream>
#include <system_error>

#include "inspect/model/Trouble.h"
#include "inspect/output/Output.h"

namespace rvf::inspect {

namespace {

namespace fs = std::filesystem;

void check(const fs::path& path, const std::error_code& error) {
  if (error) {
    throw Trouble(path.native(), error.message());
  }
}

bool isReport(const fs::path& folder) {
  std::ifstream file(folder / "index.html", std::ios::binary);
  std::string start(kReportMark.size(), '\0');
  file.read(start.data(), static_cast<std::streamsize>(start.size()));
  return file.good() && start == kReportMark;
}

bool isEmptyFolder(const fs::path& path) {
  std::error_code error;
  return fs::is_directory(path, error) && fs::is_empty(path, error);
}

}  // namespace

ReportFolder::ReportFolder(const std::string& path) : target_(path) {
  if (!target_.has_filename()) {
    target_ = target_.parent_path();  // the path ends with a slash
  }
  if (target_.empty() || target_.filename() == "." || target_.filename() == "..") {
    throw Trouble(path, "name a separate folder for the report");
  }
  std::error_code error;
  const fs::file_status status = fs::symlink_status(target_, error);
  if (fs::exists(status) &&
      (!fs::is_directory(status) || !(isReport(target_) || isEmptyFolder(target_)))) {
    throw Trouble(path, "exists and is not a report; it is left unchanged");
  }
  unfinished_ = target_;
  unfinished_ += ".unfinished-" + std::to_string(::getpid());
  fs::create_directories(target_.has_parent_path() ? target_.parent_path() : fs::path("."), error);
  check(target_, error);
  // The name must be new: an existing folder belongs to someone else.
  if (!fs::create_directory(unfinished_, error)) {
    throw Trouble(unfinished_.native(), error ? error.message() : "exists");
  }
}

ReportFolder::~ReportFolder() {
  std::error_code ignored;
  if (!unfinished_.empty()) {
    fs::remove_all(unfinished_, ignored);
  }
}

void ReportFolder::write(const std::string& name, std::string_view content) {
  const fs::path path = unfinished_ / name;
  std::error_code error;
  fs::create_directories(path.parent_path(), error);
  check(path.parent_path(), error);
  Output output(path.native());
  output.write(content);
  output.finish();
}

void ReportFolder::complete() {
  std::error_code error;
  fs::path old = target_;
  old += ".old-" + std::to_string(::getpid());
  const bool replaces = fs::exists(target_, error);
  if (replaces) {
    fs::rename(target_, old, error);
    check(target_, error);
  }
  fs::rename(unfinished_, target_, error);
  if (error && replaces) {
    std::error_code ignored;
    fs::rename(old, target_, ignored);
  }
  check(target_, error);
  unfinished_.clear();
  if (replaces) {
    fs::remove_all(old, error);
    check(old, error);
  }
}

}  // namespace rvf::inspect
