#pragma once

#include <string>

#include "inspect/model/CaptureFile.h"

namespace rvf::inspect {

enum class Severity { kWarning, kDamage };

/// Something wrong with a file.
struct Finding {
  Severity severity = Severity::kWarning;
  std::string what;  // in a few words, the same for all findings of a kind
  i64 offset = -1;   // in the file; -1 if there is no single place
  i32 customer = -1;
  i32 page = -1;
  std::string expected;
  std::string found;
};

class FindingListener {
 public:
  virtual ~FindingListener() = default;
  virtual void finding(const Finding& finding) = 0;
};

/// Reads everything in a file. What a run would reject or report is damage; what it accepts
/// although it looks wrong is a warning.
void checkCapture(CaptureFile& file, FindingListener& listener);

}  // namespace rvf::inspect
