// Two page-capture files, explained: the bits of all pages are those of a run, and files that
// differ always get an explanation.

#include "support/Explanation.h"
#include "support/MemoryFile.h"
#include "support/PairWalk.h"

namespace rvf::fuzz {
namespace {

bool haveSameBytes(inspect::CaptureFile& a, inspect::CaptureFile& b, i64 begin, i64 end) {
  return inspect::FileBytes(a).stretch(begin, end) == inspect::FileBytes(b).stretch(begin, end);
}

/// Whether two files have the same header, tables, index and page bodies.
bool saySame(inspect::CaptureFile& a, inspect::CaptureFile& b) {
  const RvfReader& index = a.reader();
  constexpr i64 kVersionOffset = 4;
  bool isSame = index.tablesEnd == b.reader().tablesEnd && index.indexEnd == b.reader().indexEnd &&
                index.indexPosition == b.reader().indexPosition &&
                haveSameBytes(a, b, kVersionOffset, index.tablesEnd) &&
                haveSameBytes(a, b, index.indexPosition, index.indexEnd);
  for (i32 c = 0; c < a.customerCount() && isSame; ++c) {
    for (i32 p = 0; p < static_cast<i32>(a.customer(c).pages.size()); ++p) {
      static_cast<void>(a.loadPage(c, p));
      static_cast<void>(b.loadPage(c, p));
      isSame = isSame && std::ranges::equal(a.context().bodyBytes(), b.context().bodyBytes());
    }
  }
  return isSame;
}

}  // namespace

void checkInput(FuzzInput input) {
  CapturePair pair(input);
  // A run reads both files alike and stops if the customer counts differ.
  pair.flags = pair.flag(0) ? 0b111 : 0b100;
  PairWalk run(pair, true);
  if (!run.isWalked) return;
  const auto oldText = pair.flag(0) ? inspect::OldText::kTwoBytes : inspect::OldText::kOneByte;
  const MemoryFile first(pair.first), second(pair.second);
  inspect::CaptureFile a(first.path(), oldText), b(second.path(), oldText);
  Explanation explanation;
  inspect::VerdictCheck check(
      judgedPages(run.differences), explanation, [](auto&, auto&) {}, [](i32, i32) {});
  inspectFiles(a, b, {.tolerances = pair.tolerances, .oldText = oldText}, check);
  if (!run.isGivenUp()) {
    require(check.mismatch().empty(), "the bits of all pages are those of a run");
    require(explanation.bits == run.status, "the bits of all pages come to those of a run");
  }
  require(explanation.told > 0 || saySame(a, b), "files that differ are not explained by nothing");
}

}  // namespace rvf::fuzz
