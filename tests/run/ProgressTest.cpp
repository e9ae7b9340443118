#include "run/Progress.h"

#include <gtest/gtest.h>

namespace rvf {
namespace {

using std::chrono_literals::operator""ms;
using std::chrono_literals::operator""s;

TEST(ProgressLine, TellsTheTimeLeftOnceItCanBeJudged) {
  struct Case {
    ProgressState state;
    const char* line;
  };
  const Case cases[] = {
      {{0, 3, 0, 10, 0, 5s}, "0 of 3 customers, 0 pages compared, 0 differ"},
      {{1, 3, 5, 10, 2, 1900ms}, "1 of 3 customers, 5 pages compared, 2 differ"},
      {{1, 3, 5, 10, 2, 7s}, "1 of 3 customers, 5 pages compared, 2 differ, 7 s left"},
      {{1, 3, 1, 10, 0, 10s}, "1 of 3 customers, 1 pages compared, 0 differ, 2 min left"},
      {{1, 3, 1, 1001, 0, 10s}, "1 of 3 customers, 1 pages compared, 0 differ, 2 h 47 min left"},
      // Some customers may have more pages in one file than in the other.
      {{2, 3, 12, 10, 0, 10s}, "2 of 3 customers, 12 pages compared, 0 differ, 0 s left"},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(progressLine(c.state), c.line);
  }
}

}  // namespace
}  // namespace rvf
