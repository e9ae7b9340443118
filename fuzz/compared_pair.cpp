// Two page-capture files (CapturePair), compared as a run does.

#include <cstddef>

#include "compare/DrawListMatch.h"
#include "compare/PageOverlay.h"
#include "support/DifferenceCheck.h"
#include "support/MatchCheck.h"
#include "support/PartInvariants.h"
#include "support/WalkedPair.h"

namespace rvf::fuzz {
namespace {

struct NoPen final : OverlayPen {
  void select(i32) override {}
};

void compareLists(const DrawList& a, const DrawList& b, bool areTheSame) {
  DrawList overlay;
  const DiffFlags bits = matchDrawLists(overlay, a, b, true, 3, 4);
  require((bits & kReservedBits) == 0, "no reserved bit is set");
  require(bits == 0 || !listsEqual(a, b), "equal lists do not differ");
  require(listsEqual(a, b) || !areTheSame || !equalsItsLike(a), "a list is equal to itself");
  static_cast<void>(matchDrawLists(overlay, b, a, true, -3, 4));
  examineParts(overlay);
  requireSamePairings(a, b);
  requireSamePairings(b, a);
}

void compare(FuzzInput input) {
  const CapturePair pair(input);
  WalkedPair plain(pair, false), shortened(pair, true);
  require(plain.status == shortened.status && plain.differences() == shortened.differences() &&
              plain.messageCount == shortened.messageCount,
          "the short cut of the walk changes nothing");
  if (!plain.isWalked) {
    return;
  }
  checkDifferenceFile(plain.differenceFile, plain.status);
  const bool areTheSame = pair.first == pair.second && pair.flag(0) == pair.flag(1);
  constexpr DiffFlags kOutside = diff::kResolution | diff::kCustomers | diff::kPageCount;
  require(!areTheSame || (plain.status & kOutside) == 0, "a file has the pages of itself");
  compareLists(plain.firstContext.pageList, plain.secondContext.pageList, areTheSame);
  NoPen pen;
  static_cast<void>(buildPageOverlay(plain.firstContext, plain.secondContext, pen));
  examineParts(plain.firstContext.overlayFirst.list);
  examineParts(plain.firstContext.overlaySecond.list);
}

}  // namespace
}  // namespace rvf::fuzz

extern "C" int LLVMFuzzerTestOneInput(const rvf::u8* data, std::size_t size) {
  return rvf::fuzz::runOnce([=] { rvf::fuzz::compare({data, size}); });
}
