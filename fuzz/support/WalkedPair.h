#pragma once

#include <string>

#include "compare/CustomerWalk.h"
#include "storage/MemFile.h"
#include "support/CapturePair.h"

namespace rvf::fuzz {

/// Two files as a run loads them and walks through them.
class WalkedPair {
 public:
  /// Pairs of more pages are left alone: comparing a page can take the square of its length.
  static constexpr i32 kMostPages = 32;

  WalkedPair(const CapturePair& pair, bool usesShortCut)
      : firstFile_(pair.first),
        secondFile_(pair.second),
        first_(firstContext, pair.flag(0)),
        second_(secondContext, pair.flag(1)) {
    const i32 callsBefore = messageReporter.callCount();
    first_.load(firstFile_.file());
    second_.load(secondFile_.file());
    isWalked = first_.valid() && second_.valid() &&
               i64{first_.pageCount} + second_.pageCount <= kMostPages;
    if (isWalked) {
      status = walkCustomers(first_, second_, pair.flag(2),
                             {differenceFile, u"a", u"b", nullptr, usesShortCut});
    }
    messageCount = messageReporter.callCount() - callsBefore;
  }

  [[nodiscard]] std::string_view differences() {
    return {reinterpret_cast<const char*>(differenceFile.data()),
            static_cast<std::size_t>(differenceFile.GetLength())};
  }

 private:
  InputFile firstFile_, secondFile_;

 public:
  CompareContext firstContext, secondContext;
  eMemFile differenceFile{64};
  bool isWalked = false;
  DiffFlags status = 0;
  i32 messageCount = 0;

 private:
  RvfReader first_, second_;
};

}  // namespace rvf::fuzz
