#include "run/ExitStatus.h"

#include <gtest/gtest.h>

#include "compare/DiffFlags.h"

namespace rvf {
namespace {

TEST(FormExitStatus, IsTheStatusItselfWithoutSimpleReturn) {
  for (const i32 status : {-1, 0, 1, 129, 524288, 2097152}) {
    EXPECT_EQ(formExitStatus(status, false), status);
  }
}

TEST(FormExitStatus, WithSimpleReturnPassesOverOrderAndContentOnly) {
  EXPECT_EQ(formExitStatus(-1, true), exit_status::kFailed);
  for (const i32 status : {0, 1, 128, 129}) {
    EXPECT_EQ(formExitStatus(status, true), exit_status::kIdentical) << status;
  }
  for (i32 bit = 1; bit <= 2097152; bit *= 2) {
    if ((bit & 129) == 0) {
      EXPECT_EQ(formExitStatus(bit, true), exit_status::kDifferent) << bit;
      EXPECT_EQ(formExitStatus(bit | 129, true), exit_status::kDifferent) << bit;
    }
  }
}

TEST(FoldToProcessStatus, KeepsEveryStatusApartFromIdenticalAndFailed) {
  struct Case {
    i32 status;
    int folded;
  };
  constexpr Case kCases[] = {
      {-1, 255},
      {0, 0},
      {1, 1},
      {32, 32},
      {64, 64},
      {128, 128},
      {129, 129},
      {160, 160},
      {128 | 256, 128},
      {128 | 512, 128},
      {128 | 1024, 128},
      {128 | 2048, 128},
      {128 | 4096, 128},
      {128 | 8192, 128},
      {128 | 16384, 128},
      {128 | 32768, 128},
      {524288, 4},
      {1048576, 8},
      {2097152, 16},
      {524288 | 129, 133},
      {1048576 | 524288, 12},
      {56481, 161},
      // All that a run can set together.
      {1048576 | 524288 | (65535 - 30), 237},
  };
  for (const Case& c : kCases) {
    EXPECT_EQ(foldToProcessStatus(c.status), c.folded) << c.status;
  }
}

}  // namespace
}  // namespace rvf
