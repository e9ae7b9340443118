#pragma once

#include <chrono>

#include "base/Integers.h"

namespace rvf::inspect {

/// One line on standard error that shows the progress, updated a few times a second and erased at
/// the end.
class ProgressLine {
 public:
  explicit ProgressLine(bool isShown) : isShown_(isShown) {}

  void show(i32 done, i32 all);
  void erase();

 private:
  using Clock = std::chrono::steady_clock;

  bool isShown_;
  bool isVisible_ = false;
  Clock::time_point last_ = Clock::now();
};

}  // namespace rvf::inspect
