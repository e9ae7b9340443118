#pragma once

#include <cstring>
#include <span>

#include "pagemodel/DrawPart.h"

namespace rvf {

/// Whether two arrays are the same byte for byte.
template <class T>
[[nodiscard]] bool sameBytes(std::span<const T> a, std::span<const T> b) {
  return a.size() == b.size() &&
         (a.empty() || std::memcmp(a.data(), b.data(), a.size_bytes()) == 0);
}

/// Compares raw words of the fields, for types that are compared with parts of any type.
/// `wordMask`: bit n stands for word n, which must hold no pointer in `right`. A word of `left`
/// that is a set pointer equals nothing.
[[nodiscard]] inline bool sameWords(const DrawPart& left, const DrawPart& right, u8 wordMask) {
  const PartWords leftWords = partWords(left);
  if ((leftWords.setPointers & wordMask) != 0) {
    return false;
  }
  const PartWords rightWords = partWords(right);
  for (std::size_t i = 0; i < kFieldWords; ++i) {
    if ((wordMask >> i & 1) != 0 && leftWords.words[i] != rightWords.words[i]) {
      return false;
    }
  }
  return true;
}

}  // namespace rvf
