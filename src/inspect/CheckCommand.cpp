#include <algorithm>

#include "inspect/Commands.h"
#include "inspect/model/CaptureCheck.h"
#include "inspect/output/CheckWriter.h"

namespace rvf::inspect {

int runCheck(const CheckOptions& options) {
  Output output(options.output.path);
  const bool isJson = options.output.format == Format::kJsonLines;
  bool isDamaged = false;
  bool hasWarnings = false;
  for (const std::string& path : options.files) {
    CaptureFile file(path, options.oldText, Acceptance::kOptional);
    const std::unique_ptr<CheckWriter> writer =
        isJson ? makeJsonCheckWriter(output, file) : makeTextCheckWriter(output, file);
    checkCapture(file, *writer);
    writer->end();
    isDamaged = isDamaged || writer->damage() > 0;
    hasWarnings = hasWarnings || writer->warnings() > 0;
  }
  output.finish();
  if (isDamaged) {
    return status::kTrouble;
  }
  return hasWarnings ? status::kWarnings : status::kSame;
}

}  // namespace rvf::inspect
