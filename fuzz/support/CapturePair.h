#pragma once

#include <string>
#include <string_view>

#include "compare/Tolerances.h"
#include "support/Fuzz.h"

namespace rvf::fuzz {

/// Flags and tolerances are followed by some edits, the first file, a separator and the second
/// file. Without a separator, the second file is a copy of the first. The edits are made to the
/// second file, so that files can differ in a single byte.
struct CapturePair {
  explicit CapturePair(FuzzInput input) : flags(input.take()) {
    constexpr std::string_view kSeparator = "=PAIR=";
    tolerances.positionTolerance = input.take<i32>();
    tolerances.lineTolerance = input.take<i32>();
    const std::string edits(input.takeBytes(3 * std::size_t{input.take()} % 48));
    first = input.rest().substr(0, input.rest().find(kSeparator));
    const std::string_view behind = input.rest().substr(first.size());
    second = behind.empty() ? first : behind.substr(kSeparator.size());
    for (std::size_t i = 0; i + 2 < edits.size() && !second.empty(); i += 3) {
      const std::size_t offset = static_cast<u8>(edits[i]) + 256U * static_cast<u8>(edits[i + 1]);
      second[offset % second.size()] = edits[i + 2];
    }
  }
  [[nodiscard]] bool flag(int bit) const { return (flags >> bit & 1) != 0; }

  u8 flags;  // 0 and 1: text of old files is wide; 2: stop when the customer counts differ
  Tolerances tolerances;
  std::string first, second;
};

}  // namespace rvf::fuzz
