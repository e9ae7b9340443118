#include "run/ExitStatus.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <utility>

#include "run/RunReport.h"
#include "text/encoding/TextSink.h"

namespace rvf {
namespace {

TEST(ExitStatus, WithSimpleReturnPassesOverOrderAndContentOnly) {
  EXPECT_EQ(formExitStatus(-1, true), exit_status::kFailed);
  for (const i32 status : {0, 1, 128, 129}) {
    EXPECT_EQ(formExitStatus(status, true), exit_status::kIdentical) << status;
    EXPECT_EQ(formExitStatus(status, false), status);
  }
  for (i32 bit = 2; bit <= 2097152; bit *= 2) {
    if (bit == 128) continue;
    EXPECT_EQ(formExitStatus(bit, true), exit_status::kDifferent) << bit;
    EXPECT_EQ(formExitStatus(bit | 129, true), exit_status::kDifferent) << bit;
  }
}

TEST(ExitStatus, FoldedItKeepsEveryStatusApartFromIdenticalAndFailed) {
  const std::pair<i32, int> cases[] = {
      {-1, 255},
      {0, 0},
      {1, 1},
      {160, 160},
      {128 | 256, 128},
      {128 | 32768, 128},
      {524288, 4},
      {1048576, 8},
      {2097152, 16},
      {524288 | 129, 133},
      {1048576 | 524288, 12},
      {1048576 | 524288 | (65535 - 30), 237}};  // all that a run can set together
  for (const auto& [status, folded] : cases) {
    EXPECT_EQ(foldToProcessStatus(status), folded) << status;
  }
}

/// The closing report for `status` ends with these words, each on its line.
void expectWords(i32 status, const std::string& words) {
  MemorySink sink;
  writeClosingReport(sink, status);
  std::string lines = "**\r\n";
  std::istringstream in(words);
  for (std::string word; std::getline(in, word, ';');) {
    lines += "\t           --- " + word + " ---\r\n";
  }
  EXPECT_TRUE(sink.bytes().ends_with(lines)) << sink.bytes();
}

TEST(ClosingReport, TellsTheStatusInWords) {
  expectWords(-1, "");
  expectWords(0, "The files are identical");
  expectWords(2097152 + 129,
              "The output files are different resolutions and cannot be compared;"
              "Processing was halted due to errors");
  // Scripts look for these lines, the ones of bits that no run sets included.
  expectWords(2097151,
              "Customers;Page count;QZ_CMP_RESERVED21;QZ_CMP_RESERVED20;QZ_CMP_RESERVED19;Shapes;"
              "Lines;Fonts;Images;Text;Border lines (object outlines);Angle of rotation;Color;"
              "Content;Line Width (out of tolerance);Position (out of tolerance);"
              "QZ_CMP_RESERVED16;QZ_CMP_RESERVED8;QZ_CMP_RESERVED4;QZ_CMP_RESERVED2;Draw Order");
}

}  // namespace
}  // namespace rvf
