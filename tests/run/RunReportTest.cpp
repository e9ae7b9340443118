#include "run/RunReport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "compare/Tolerances.h"
#include "text/TextSink.h"

namespace rvf {
namespace {

const std::string kRule =
    " *******************************************************************************\r\n";
const std::string kHeading =
    " ************ Differences of the following types encountered! ************\r\n";

/// What follows the fixed part of the closing report for `status`, whose field is 7 wide.
std::string wordsFor(i32 status, const std::string& field) {
  MemorySink sink;
  writeClosingReport(sink, status);
  const std::string fixed =
      kRule + " ***                   --- Diff Completed ---                        ***\r\n" +
      " ***                  --- Return Code " + field + " ---                      ***\r\n" +
      kRule;
  EXPECT_EQ(sink.bytes().substr(0, fixed.size()), fixed);
  return sink.bytes().substr(std::min(fixed.size(), sink.bytes().size()));
}

std::string line(const std::string& words) { return "\t           --- " + words + " ---\r\n"; }

TEST(ClosingReport, TellsTheStatusInWords) {
  const std::string halted =
      line("The output files are different resolutions and cannot be compared") +
      line("Processing was halted due to errors");
  struct Case {
    i32 status;
    const char* field;
    std::string words;
  };
  const Case cases[] = {
      {-1, "     -1", ""},
      {0, "      0", line("The files are identical")},
      {129, "    129", kHeading + line("Content") + line("Draw Order")},
      {1048576 + 160, "1048736",
       kHeading + line("Customers") + line("Content") + line("Position (out of tolerance)")},
      {2097152, "2097152", halted},
      {2097152 + 129, "2097281", halted},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(wordsFor(c.status, c.field), c.words);
  }
}

// Scripts look for these lines, the ones of bits that no run sets included.
TEST(ClosingReport, HasALineForEachBit) {
  EXPECT_EQ(wordsFor(2097151, "2097151"),
            kHeading + line("Customers") + line("Page count") + line("QZ_CMP_RESERVED21") +
                line("QZ_CMP_RESERVED20") + line("QZ_CMP_RESERVED19") + line("Shapes") +
                line("Lines") + line("Fonts") + line("Images") + line("Text") +
                line("Border lines (object outlines)") + line("Angle of rotation") + line("Color") +
                line("Content") + line("Line Width (out of tolerance)") +
                line("Position (out of tolerance)") + line("QZ_CMP_RESERVED16") +
                line("QZ_CMP_RESERVED8") + line("QZ_CMP_RESERVED4") + line("QZ_CMP_RESERVED2") +
                line("Draw Order"));
}

}  // namespace
}  // namespace rvf
