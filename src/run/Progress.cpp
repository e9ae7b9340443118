#include "run/Progress.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <csignal>
#include <cstdio>

namespace rvf {

namespace {

using std::chrono_literals::operator""ms;
using std::chrono_literals::operator""s;

constexpr auto kRedrawEvery = 250ms;
constexpr std::chrono::duration<f64> kTooEarlyToJudge = 2s;
constexpr std::size_t kUsualWidth = 80;

// There is one terminal with one progress line. Global, because endProcess and signal handlers must
// erase the line without access to the run.
volatile std::sig_atomic_t shownWidth = 0;

std::size_t terminalWidth() {
  winsize size{};
  const bool known = ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
  return known ? size.ws_col : kUsualWidth;
}

void draw(std::string line) {
  // The last column stays free: a character there makes some terminals go to the next line.
  line.resize(std::min(line.size(), terminalWidth() - 1));
  const std::size_t width = line.size();
  const auto shown = static_cast<std::size_t>(shownWidth);
  line.resize(std::max(width, shown), ' ');
  shownWidth = static_cast<std::sig_atomic_t>(line.size());
  std::fprintf(stderr, "\r%s", line.c_str());
  std::fflush(stderr);
  shownWidth = static_cast<std::sig_atomic_t>(width);
}

std::string duration(f64 seconds) {
  const auto total = static_cast<i64>(std::ceil(seconds));
  if (total < 60) {
    return std::to_string(total) + " s";
  }
  const i64 minutes = (total + 59) / 60;
  if (minutes < 60) {
    return std::to_string(minutes) + " min";
  }
  return std::to_string(minutes / 60) + " h " + std::to_string(minutes % 60) + " min";
}

}  // namespace

std::string progressLine(const ProgressState& state) {
  std::string line = std::to_string(state.customersDone) + " of " +
                     std::to_string(state.customerCount) + " customers, " +
                     std::to_string(state.pagesCompared) + " pages compared, " +
                     std::to_string(state.differingPages) + " differ";
  if (state.pagesCompared > 0 && state.elapsed >= kTooEarlyToJudge) {
    const i64 pagesLeft = std::max<i64>(state.pageTotal - state.pagesCompared, 0);
    const f64 secondsPerPage = state.elapsed.count() / static_cast<f64>(state.pagesCompared);
    line += ", " + duration(secondsPerPage * static_cast<f64>(pagesLeft)) + " left";
  }
  return line;
}

Progress::~Progress() { eraseProgressLine(); }

void Progress::pagesCompared(i32 customersDone, i32 customerCount, i64 pagesCompared,
                             i32 differingPages) {
  const Clock::time_point now = Clock::now();
  last_.customersDone = customersDone;
  last_.customerCount = customerCount;
  last_.pagesCompared = pagesCompared;
  last_.differingPages = differingPages;
  last_.elapsed = now - start_;
  if (now - lastDrawn_ >= kRedrawEvery) {
    lastDrawn_ = now;
    draw(progressLine(last_));
  }
}

std::unique_ptr<Progress> makeProgress(i64 pageTotal) {
  return isatty(STDERR_FILENO) != 0 ? std::make_unique<Progress>(pageTotal) : nullptr;
}

void eraseProgressLine() {
  if (shownWidth > 0) {
    std::fprintf(stderr, "\r%*s\r", shownWidth, "");
    std::fflush(stderr);
    shownWidth = 0;
  }
}

void eraseProgressLineFromHandler() {
  constexpr char kBlank = ' ';
  if (shownWidth > 0) {
    [[maybe_unused]] ssize_t written = write(STDERR_FILENO, "\r", 1);
    for (std::sig_atomic_t i = 0; i < shownWidth; ++i) {
      written = write(STDERR_FILENO, &kBlank, 1);
    }
    written = write(STDERR_FILENO, "\r", 1);
  }
}

}  // namespace rvf
