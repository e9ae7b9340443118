// Two page-capture files, compared as a run does, in two ways that have to come to the same.

#include <algorithm>
#include <string>
#include <vector>

#include "compare/CustomerWalk.h"
#include "compare/DiffFlags.h"
#include "compare/DrawListMatch.h"
#include "compare/MatchCandidates.h"
#include "compare/PageOverlay.h"
#include "compare/Tolerances.h"
#include "messages/MessageReporter.h"
#include "support/CapturePair.h"
#include "support/DifferenceBytes.h"
#include "support/PartChecks.h"

namespace rvf::fuzz {
namespace {

/// Two files as a run loads them and walks through them.
struct Walk {
  Walk(const CapturePair& pair, bool usesShortCut)
      : firstFile(pair.first),
        secondFile(pair.second),
        first(firstContext, pair.flag(0)),
        second(secondContext, pair.flag(1)) {
    // Pairs of more pages are left alone: comparing a page can take the square of its length.
    constexpr i32 kMostPages = 32;
    first.load(firstFile.file);
    second.load(secondFile.file);
    eMemFile file(64);
    isWalked =
        first.valid() && second.valid() && i64{first.pageCount} + second.pageCount <= kMostPages;
    if (isWalked) {
      status = walkCustomers(first, second, pair.flag(2), pair.tolerances,
                             {file, u"a", u"b", nullptr, usesShortCut});
    }
    messageCount = messageReporter.callCount() - callsBefore;
    const auto length = static_cast<std::size_t>(file.GetLength());
    if (length > 0) differences.assign(reinterpret_cast<const char*>(file.data()), length);
  }

  i32 callsBefore = messageReporter.callCount();
  InputFile firstFile, secondFile;
  CompareContext firstContext, secondContext;
  RvfReader first, second;
  bool isWalked = false;
  DiffFlags status = 0;
  i32 messageCount = 0;
  std::string differences;
};

constexpr DiffFlags kReservedBits = diff::kReserved2 | diff::kReserved4 | diff::kReserved8 |
                                    diff::kReserved16 | diff::kReserved19 | diff::kReserved20 |
                                    diff::kReserved21;

/// A difference file is complete in itself and tells the same as the status of its walk.
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

i32 firstFreeByLooking(const DrawPart& part, const DrawList& list,
                       const std::pmr::vector<bool>& isTaken, const Tolerances& tolerances) {
  for (i32 j = 0; j < list.count; ++j) {
    if (!isTaken[static_cast<std::size_t>(j)] && classifyParts(part, list[j], tolerances) == 0)
      return j;
  }
  return MatchCandidates::kNotFound;
}

/// The index of a list finds for every part what a search through the list finds.
void requireSamePairings(const DrawList& parts, const DrawList& list,
                         const Tolerances& tolerances) {
  std::pmr::vector<bool> isTaken(static_cast<std::size_t>(list.count), false);
  ChildListResults childLists(tolerances);
  MatchCandidates candidates(list, isTaken, childLists);
  for (const DrawPart& part : parts.parts()) {
    const i32 found = candidates.firstFree(part);
    require(found == firstFreeByLooking(part, list, isTaken, tolerances),
            "an index finds what a search finds");
    if (found != MatchCandidates::kNotFound) isTaken[static_cast<std::size_t>(found)] = true;
  }
}

void compareLists(const DrawList& a, const DrawList& b, bool areTheSame,
                  const Tolerances& tolerances) {
  DrawList overlay;
  const DiffFlags bits = matchDrawLists(overlay, a, b, true, 3, 4, tolerances);
  require((bits & kReservedBits) == 0, "no reserved bit is set");
  require(bits == 0 || !listsEqual(a, b), "equal lists do not differ");
  require(listsEqual(a, b) || !areTheSame || !equalsItsLike(a), "a list is equal to itself");
  static_cast<void>(matchDrawLists(overlay, b, a, true, -3, 4, tolerances));
  examineParts(overlay, tolerances);
  requireSamePairings(a, b, tolerances);
  requireSamePairings(b, a, tolerances);
}

struct NoPen final : OverlayPen {
  void select(i32) override {}
};

}  // namespace

void checkInput(FuzzInput input) {
  const CapturePair pair(input);
  Walk plain(pair, false), shortened(pair, true);
  require(plain.status == shortened.status && plain.differences == shortened.differences &&
              plain.messageCount == shortened.messageCount,
          "the short cut of the walk changes nothing");
  if (!plain.isWalked) return;
  if (plain.firstContext.newerRecord() != nullptr || plain.secondContext.newerRecord() != nullptr) {
    return require(plain.differences.empty(), "a walk that is given up writes nothing more");
  }
  checkDifferenceFile(plain.differences, plain.status);
  const bool areTheSame = pair.first == pair.second && pair.flag(0) == pair.flag(1);
  constexpr DiffFlags kOutside = diff::kResolution | diff::kCustomers | diff::kPageCount;
  require(!areTheSame || (plain.status & kOutside) == 0, "a file has the pages of itself");
  compareLists(plain.firstContext.pageList, plain.secondContext.pageList, areTheSame,
               pair.tolerances);
  NoPen pen;
  PageOverlay overlay;
  static_cast<void>(
      buildPageOverlay(overlay, plain.firstContext, plain.secondContext, pair.tolerances, pen));
  examineParts(overlay.first.list, pair.tolerances);
  examineParts(overlay.second.list, pair.tolerances);
}

}  // namespace rvf::fuzz
