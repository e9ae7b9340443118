#pragma once

#include <memory>
#include <string>

#include "inspect/model/CaptureFile.h"
#include "inspect/model/VerdictCheck.h"

namespace rvf::inspect {

/// Two files that a command compares, and what a difference file says about them.
struct ComparedFiles {
  JudgedPages judged{};  // empty without a difference file
  std::unique_ptr<CaptureFile> first{};
  std::unique_ptr<CaptureFile> second{};
};

/// Opens two files, or those named by the difference file `from` unless that is empty. Throws
/// Trouble.
[[nodiscard]] ComparedFiles openFiles(const std::string& first, const std::string& second,
                                      const std::string& from, OldText oldText);

}  // namespace rvf::inspect
