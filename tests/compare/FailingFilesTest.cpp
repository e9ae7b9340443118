#include <algorithm>

#include "compare/CompareFixture.h"
#include "messages/MessageNumbers.h"
#include "support/DifferenceBytes.h"
#include "support/FailingFile.h"

namespace rvf::test {
namespace {

// A comparison over files of which each operation fails in its turn. Nobody but the readers and the
// writer notices, so they have to: what is not loaded is not valid, what is not read is reported,
// and what is not written leaves a difference file that is not complete.

struct Result {
  bool isSound = false;  // loaded, and without a word of loss
  DiffFlags bits = 0;
  std::string difference;
};

Result compare(FailingFile& first, FailingFile& second, FailingFile& difference) {
  HeldMessages messages;
  CompareContext firstContext, secondContext;
  RvfReader firstReader(firstContext, false), secondReader(secondContext, false);
  firstReader.load(first);
  secondReader.load(second);
  Result result;
  if (firstReader.valid() && secondReader.valid()) {
    result.bits = walkCustomers(firstReader, secondReader, true, {difference, u"a", u"b"});
    result.isSound = std::ranges::none_of(messages.takeNumbers(), [](int number) {
      return tellsOfLoss(static_cast<MessageNumber>(number));
    });
  }
  result.difference = difference.bytes();
  return result;
}

/// Pages that are too many for one window, with all kinds of part and shared objects.
std::string captureWith(std::u16string word) {
  std::vector<PageFields> pages(40, page(allParts()));
  for (PageFields& field : pages) field.body->placed.resize(2);
  pages[20] = page({text({.text = std::move(word)})});
  CaptureFields fields = captureOf(pages);
  fields.magic = kTrailerMagic;
  fields.statics21.resize(3);
  return writeCapture(fields).bytes;
}

enum class Failing { kFirst, kBoth, kDifference };

/// Runs once for each operation that can fail.
void sweep(Failing which, const std::string& first, const std::string& second, bool failsOn) {
  Result truth;
  for (int at = 0;; ++at) {
    SCOPED_TRACE(at);
    const auto failsAt = [at](bool isIt) { return isIt && at > 0 ? at : FailingFile::kNever; };
    FailingFile a(first, failsAt(which != Failing::kDifference), failsOn);
    FailingFile b(second, failsAt(which == Failing::kBoth), failsOn);
    FailingFile d("", failsAt(which == Failing::kDifference), failsOn);
    const Result result = compare(a, b, d);
    const bool isComplete = DifferenceBytes(result.difference).isComplete();
    if (at == 0) truth = result;
    const bool isWritten = which != Failing::kDifference || isComplete;
    if (result.isSound) {
      ASSERT_EQ(result.bits, truth.bits);
      ASSERT_TRUE(result.difference == truth.difference || !isWritten);
    }
    if (at > 0 && !a.hasFailed() && !b.hasFailed() && !d.hasFailed()) {
      EXPECT_TRUE(isComplete && truth.isSound && at > 1);
      return;
    }
  }
}

TEST(FailingFiles, GiveTheTruthOrTellOfTheLoss) {
  const std::string one = captureWith(u"one"), two = captureWith(u"two");
  for (const Failing which : {Failing::kFirst, Failing::kBoth, Failing::kDifference}) {
    for (const bool failsOn : {false, true}) {
      sweep(which, one, two, failsOn);
      sweep(which, one, one, failsOn);
    }
  }
}

}  // namespace
}  // namespace rvf::test
