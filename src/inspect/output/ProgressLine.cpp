#include "inspect/output/ProgressLine.h"

#include <cstdio>

namespace rvf::inspect {

void ProgressLine::show(i32 done, i32 all) {
  constexpr auto kInterval = std::chrono::milliseconds(200);
  if (!isShown_ || Clock::now() - last_ < kInterval) {
    return;
  }
  last_ = Clock::now();
  isVisible_ = true;
  std::fprintf(stderr, "\r%d of %d customers", done, all);
}

void ProgressLine::erase() {
  if (isVisible_) {
    std::fputs("\r\x1b[K", stderr);
    isVisible_ = false;
  }
}

}  // namespace rvf::inspect
