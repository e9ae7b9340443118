#pragma once

#include <chrono>
#include <memory>
#include <string>

#include "base/Integers.h"
#include "compare/CustomerWalk.h"

namespace rvf {

/// How far the comparison has got.
struct ProgressState {
  i32 customersDone = 0;
  i32 customerCount = 0;
  i64 pagesCompared = 0;
  i64 pageTotal = 0;  // pages to compare, at most
  i32 differingPages = 0;
  std::chrono::duration<f64> elapsed{};
};

/// The progress line: ASCII, without a line end. The time left is shown once enough pages have been
/// compared for an estimate.
[[nodiscard]] std::string progressLine(const ProgressState& state);

/// Updates one line on standard error a few times a second while the comparison runs, and erases it
/// at the end.
class Progress final : public WalkObserver {
 public:
  explicit Progress(i64 pageTotal) { last_.pageTotal = pageTotal; }
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;
  ~Progress() override;

  void pagesCompared(i32 customersDone, i32 customerCount, i64 pagesCompared,
                     i32 differingPages) override;

  /// The last state reported.
  [[nodiscard]] const ProgressState& last() const { return last_; }

 private:
  using Clock = std::chrono::steady_clock;

  ProgressState last_;
  Clock::time_point start_ = Clock::now();
  Clock::time_point lastDrawn_ = start_;
};

/// A progress display if standard error is a terminal, otherwise null.
[[nodiscard]] std::unique_ptr<Progress> makeProgress(i64 pageTotal);

/// Erases the line if one is shown. Must be called before anything else is printed on standard
/// error.
void eraseProgressLine();
/// The same for a signal handler.
void eraseProgressLineFromHandler();

}  // namespace rvf
