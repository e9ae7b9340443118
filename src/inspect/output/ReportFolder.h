#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace rvf::inspect {

/// The folder that a report is written to, under another name until it is complete: an existing
/// report is kept until then. An incomplete folder is removed.
class ReportFolder {
 public:
  /// Throws Trouble if something other than a report exists at `path`, or if its parent folder
  /// cannot be written to.
  explicit ReportFolder(const std::string& path);
  ~ReportFolder();
  ReportFolder(const ReportFolder&) = delete;
  ReportFolder& operator=(const ReportFolder&) = delete;

  /// Writes a file; `name` may include a folder.
  void write(const std::string& name, std::string_view content);
  /// Moves the folder to its place.
  void complete();

 private:
  std::filesystem::path target_;
  std::filesystem::path unfinished_;
};

/// The first line of a report, by which one is recognised.
constexpr std::string_view kReportMark = "<!doctype html><!-- rvfinspect report, format 1 -->";

}  // namespace rvf::inspect
