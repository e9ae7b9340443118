#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace rvf::inspect {

/// The folder that a report is written to, under another name until it is complete: a report that
/// was there before stays until then. What is not completed is removed.
class ReportFolder {
 public:
  /// Throws Trouble if something stands at `path` that is no report, or nothing can be written
  /// beside it.
  explicit ReportFolder(const std::string& path);
  ~ReportFolder();
  ReportFolder(const ReportFolder&) = delete;
  ReportFolder& operator=(const ReportFolder&) = delete;

  /// Writes a file; `name` may have a folder in front.
  void write(const std::string& name, std::string_view content);
  /// Puts the folder to its place.
  void complete();

 private:
  std::filesystem::path target_;
  std::filesystem::path unfinished_;
};

/// What the first line of a report says, by which one is known.
constexpr std::string_view kReportMark = "<!doctype html><!-- rvfinspect report, format 1 -->";

}  // namespace rvf::inspect
