#include <algorithm>

#include "run/Surroundings.h"
#include "support/FaultRun.h"

namespace rvf::test {
namespace {

// What a run does on a system that is slow and short, and that loses what it was given.

class FaultySurroundings : public Surroundings {
 protected:
  ProgramResult runUnder(const Faults& faults, std::vector<std::string> arguments = {}) const {
    arguments.insert(arguments.begin(), builtPath("rvfcompare"));
    return runWithFaults(faults, arguments, path());
  }
};

TEST_F(FaultySurroundings, ShortAndInterruptedCallsGoOn) {
  const Faults rows[] = {
      {{"PIECE", "1"}},
      {{"PIECE", "7"}},
      {{"BREAK", "2"}},
      {{"BREAK", "3"}},
      {{"PIECE", "5"}, {"BREAK", "2"}},
  };
  for (const Faults& faults : rows) expectTrueResult(runUnder(faults));
  EXPECT_EQ(runUnder({{"CALL", "read"}, {"AT", "3"}, {"FOR", "on"}, {"ERROR", "4"}}).status, 255);
}

// What a network drive keeps back comes out when the file is closed.
TEST_F(FaultySurroundings, BytesLostAtTheCloseFailTheRun) {
  EXPECT_EQ(runUnder({{"CALL", "close"}, {"AT", "1"}, {"FOR", "on"}}).status, 255);
  EXPECT_NE(report().find("QZ001848S (2) Closing Differenced.dat: "), std::string::npos);
}

// Every byte of these files counts, so a run that misses one has no result. Two files that have
// lost the same are not identical.
TEST_F(FaultySurroundings, InputThatShrinksIsDamage) {
  const auto size = static_cast<int>(read("RVF1.rvf").size());
  ASSERT_EQ(read("RVF2.rvf").size(), read("RVF1.rvf").size());
  for (int length = 0; length <= size;
       length += length < size - 1 ? std::min(211, size - 1 - length) : 1) {
    for (const std::string file : {"RVF1.rvf", "RVF2.rvf", ".rvf"}) {
      SCOPED_TRACE(file + " " + std::to_string(length));
      const Faults faults = {{"SHRINK", std::to_string(length)}, {"FILE", file}};
      EXPECT_EQ(runUnder(faults).status, length < size ? 255 : kTrueStatus);
      EXPECT_EQ(runUnder(faults, {"-COMPARE=RVF1.rvf,RVF1.rvf"}).status,
                length < size && file != "RVF2.rvf" ? 255 : 0);
    }
  }
}

}  // namespace
}  // namespace rvf::test
