#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "capture/CompareContext.h"
#include "capture/RvfReader.h"
#include "compare/CustomerWalk.h"
#include "messages/MessageNumbers.h"
#include "support/Capture.h"
#include "support/DifferenceBytes.h"
#include "support/FailingFile.h"
#include "support/Reporting.h"

namespace rvf::test {
namespace {

// A comparison over files of which each operation fails in its turn. Nobody but the readers and the
// writer notices, so they have to: what is not loaded is not valid, what is not read is reported,
// and what is not written leaves a difference file that is not complete.

struct Result {
  bool isValid = false;
  DiffFlags bits = 0;
  bool tellsOfLoss = false;
  std::string difference;
};

Result compare(FailingFile& first, FailingFile& second, FailingFile& difference) {
  HeldMessages messages;
  CompareContext firstContext, secondContext;
  RvfReader firstReader(firstContext, false), secondReader(secondContext, false);
  firstReader.load(first);
  secondReader.load(second);
  Result result;
  result.isValid = firstReader.valid() && secondReader.valid();
  if (result.isValid) {
    result.bits = walkCustomers(firstReader, secondReader, true, {difference, u"a", u"b"});
  }
  for (const int number : messages.takeNumbers()) {
    result.tellsOfLoss = result.tellsOfLoss || tellsOfLoss(static_cast<MessageNumber>(number));
  }
  result.difference = difference.bytes();
  return result;
}

/// Pages that are too many for one window, with all kinds of part and shared objects.
std::string captureWith(std::u16string_view word) {
  std::vector<PageFields> pages(40, page(allParts()));
  for (PageFields& field : pages) field.body->placed.resize(2);
  pages[20] = page({text({.text = std::u16string(word)})});
  CaptureFields fields = captureOf(pages);
  fields.magic = kTrailerMagic;
  fields.statics21.resize(3);
  return writeCapture(fields).bytes;
}

enum class Failing { kFirst, kBoth, kDifference };

class FailingFiles : public testing::TestWithParam<Failing> {
 protected:
  /// Runs once for each operation that can fail.
  void sweep(const std::string& first, const std::string& second, bool failsOn) {
    const Failing which = GetParam();
    const auto file = [&](const std::string& bytes, bool isFailing, int failsAt) {
      return FailingFile(bytes, isFailing ? failsAt : FailingFile::kNever, failsOn);
    };
    FailingFile soundFirst(first, FailingFile::kNever, false);
    FailingFile soundSecond(second, FailingFile::kNever, false);
    FailingFile soundDifference("", FailingFile::kNever, false);
    const Result truth = compare(soundFirst, soundSecond, soundDifference);
    ASSERT_TRUE(truth.isValid && !truth.tellsOfLoss);
    for (int at = 1;; ++at) {
      SCOPED_TRACE(at);
      FailingFile a = file(first, which != Failing::kDifference, at);
      FailingFile b = file(second, which == Failing::kBoth, at);
      FailingFile d = file("", which == Failing::kDifference, at);
      const Result result = compare(a, b, d);
      const bool isComplete = DifferenceBytes(result.difference).isComplete();
      if (which == Failing::kDifference) {
        EXPECT_EQ(result.bits, truth.bits);
        EXPECT_TRUE(!isComplete || result.difference == truth.difference);
      } else if (result.isValid && !result.tellsOfLoss) {
        EXPECT_EQ(result.bits, truth.bits);
        EXPECT_TRUE(result.difference == truth.difference);
      }
      if (HasFailure()) return;
      if (!a.hasFailed() && !b.hasFailed() && !d.hasFailed()) {
        EXPECT_TRUE(isComplete);
        EXPECT_GT(at, 1);
        return;
      }
    }
  }
};

TEST_P(FailingFiles, GiveTheTruthOrTellOfTheLoss) {
  const std::string one = captureWith(u"one");
  const std::string two = captureWith(u"two");
  for (const bool failsOn : {false, true}) {
    sweep(one, two, failsOn);
    sweep(one, one, failsOn);
  }
}

INSTANTIATE_TEST_SUITE_P(Files, FailingFiles,
                         testing::Values(Failing::kFirst, Failing::kBoth, Failing::kDifference));

}  // namespace
}  // namespace rvf::test
