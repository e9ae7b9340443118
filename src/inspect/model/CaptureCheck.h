#pragma once

#include <string>

#include "inspect/model/CaptureFile.h"

namespace rvf::inspect {

enum class Severity { kWarning, kDamage };

/// Something about a file that is not as it should be.
struct Finding {
  Severity severity = Severity::kWarning;
  std::string what;  // in a few words, the same for all findings of a kind
  i64 offset = -1;   // in the file; -1 if there is no one place
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

/// Reads everything that a file contains. What a run would refuse or report is damage; what it
/// takes as it is, and still looks wrong, is a warning.
void checkCapture(CaptureFile& file, FindingListener& listener);

}  // namespace rvf::inspect
