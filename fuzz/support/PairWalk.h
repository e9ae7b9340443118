#pragma once

#include <string>

#include "compare/CustomerWalk.h"
#include "messages/MessageReporter.h"
#include "support/CapturePair.h"

namespace rvf::fuzz {

/// A file as a run loads it.
struct LoadedCapture {
  LoadedCapture(std::string_view bytes, bool isWide) : input(bytes), reader(context, isWide) {
    reader.load(input.file);
  }

  InputFile input;
  CompareContext context;
  RvfReader reader;
};

/// Two files as a run loads them and walks through them.
struct PairWalk {
  PairWalk(const CapturePair& pair, bool usesShortCut)
      : first(pair.first, pair.flag(0)), second(pair.second, pair.flag(1)) {
    // Pairs with more pages are skipped: the time to compare a page can grow with the square of its
    // length.
    constexpr i64 kMostPages = 32;
    isWalked = first.reader.valid() && second.reader.valid() &&
               i64{first.reader.pageCount} + second.reader.pageCount <= kMostPages;
    eMemFile file(64);
    if (isWalked) {
      status = walkCustomers(first.reader, second.reader,
                             pair.flag(2) ? CountMismatch::kEndsWalk : CountMismatch::kLimitsWalk,
                             pair.tolerances, {file, u"a", u"b", nullptr, usesShortCut});
    }
    messageCount += messageReporter.callCount();
    const auto length = static_cast<std::size_t>(file.GetLength());
    differences = std::string_view(reinterpret_cast<const char*>(file.data()), length);
  }
  [[nodiscard]] bool isGivenUp() const {
    return first.context.newerRecord() != nullptr || second.context.newerRecord() != nullptr;
  }

  i32 messageCount = -messageReporter.callCount();  // of this walk, once it is done
  LoadedCapture first, second;
  bool isWalked = false;
  DiffFlags status = 0;
  std::string differences;
};

}  // namespace rvf::fuzz
