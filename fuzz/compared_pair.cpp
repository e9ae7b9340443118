// Two page-capture files, compared as in a run, in two ways that must give the same result.

#include "support/DifferenceBytes.h"
#include "support/ListChecks.h"
#include "support/PairWalk.h"

namespace rvf::fuzz {
namespace {

/// A difference file is complete and agrees with the status of its walk.
void checkDifferenceFile(const std::string& bytes, DiffFlags status) {
  require((status & kReservedBits) == 0, "no reserved bit is set");
  const bool isComplete = test::DifferenceBytes(bytes).isComplete();
  require(isComplete || (status & diff::kCustomers) != 0 ||
              (bytes.empty() && status == diff::kResolution),
          "a file without its end has a cause");
  constexpr std::size_t kTrailerSize = 12;
  if (isComplete) {
    FuzzInput trailer(std::string_view(bytes).substr(bytes.size() - kTrailerSize));
    require(trailer.take<DiffFlags>() == status, "the trailer has the status");
  }
}

struct NoPen final : OverlayPen {
  void select(i32) override {}
};

}  // namespace

void checkInput(FuzzInput input) {
  const CapturePair pair(input);
  const PairWalk plain(pair, false), shortened(pair, true);
  require(plain.status == shortened.status && plain.differences == shortened.differences &&
              plain.messageCount == shortened.messageCount,
          "the short cut of the walk changes nothing");
  if (!plain.isWalked) return;
  if (plain.isGivenUp()) {
    return require(plain.differences.empty(), "a walk that is given up writes nothing more");
  }
  checkDifferenceFile(plain.differences, plain.status);
  const bool areTheSame = pair.first == pair.second && pair.flag(0) == pair.flag(1);
  constexpr DiffFlags kOutside = diff::kResolution | diff::kCustomers | diff::kPageCount;
  require(!areTheSame || (plain.status & kOutside) == 0, "a file has the pages of itself");
  const CompareContext &first = plain.first.context, &second = plain.second.context;
  compareLists(first.pageList, second.pageList, areTheSame, pair.tolerances);
  NoPen pen;
  PageOverlay overlay;
  static_cast<void>(buildPageOverlay(overlay, first, second, pair.tolerances, pen));
  examineParts(overlay.first.list, pair.tolerances);
  examineParts(overlay.second.list, pair.tolerances);
}

}  // namespace rvf::fuzz
