#include <algorithm>

#include "compare/CompareFixture.h"
#include "messages/MessageNumbers.h"
#include "support/DifferenceBytes.h"
#include "support/FailingFile.h"

namespace rvf::test {
namespace {

// A comparison in which each operation on a file fails in turn. Only the readers and the writer can
// notice: a file that could not be loaded must be invalid, a failed read must be reported, and a
// failed write must leave an incomplete difference file.

struct Result {
  bool isSound = false;  // loaded, and no loss was reported
  DiffFlags bits = 0;
};

Result compare(FailingFile& first, FailingFile& second, FailingFile& difference) {
  HeldMessages messages;
  CompareContext firstContext, secondContext;
  RvfReader firstReader(firstContext, false), secondReader(secondContext, false);
  firstReader.load(first);
  secondReader.load(second);
  if (!firstReader.valid() || !secondReader.valid()) return {};
  const DiffFlags bits = walkCustomers(firstReader, secondReader, CountMismatch::kEndsWalk, {},
                                       {difference, u"a", u"b"});
  const bool isSound = std::ranges::none_of(messages.takeNumbers(), [](int number) {
    return meansDataLoss(static_cast<MessageNumber>(number));
  });
  return {isSound, bits};
}

/// More pages than fit into one window, with all kinds of parts and shared objects.
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

void sweep(Failing which, const std::string& first, const std::string& second, bool failsOn) {
  constexpr int kNever = FailingFile::kNever;
  FailingFile a(first, kNever, false), b(second, kNever, false), truth("", kNever, false);
  const Result expected = compare(a, b, truth);
  EXPECT_TRUE(expected.isSound);
  for (int at = 1;; ++at) {
    SCOPED_TRACE(at);
    FailingFile x(first, which == Failing::kDifference ? kNever : at, failsOn);
    FailingFile y(second, which == Failing::kBoth ? at : kNever, failsOn);
    FailingFile d("", which == Failing::kDifference ? at : kNever, failsOn);
    const Result result = compare(x, y, d);
    const bool isComplete = DifferenceBytes(d.bytes()).isComplete();
    if (result.isSound) {
      ASSERT_EQ(result.bits, expected.bits);
      ASSERT_TRUE(d.bytes() == truth.bytes() || (which == Failing::kDifference && !isComplete));
    }
    if (!x.hasFailed() && !y.hasFailed() && !d.hasFailed()) {
      EXPECT_TRUE(isComplete && at > 1);
      return;
    }
  }
}

TEST(FailingFiles, GiveTheTruthOrReportTheLoss) {
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
