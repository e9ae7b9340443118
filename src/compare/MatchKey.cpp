#include "compare/MatchKey.h"

#include <bit>

namespace rvf {

namespace {

i64 cellOf(i32 coordinate, i64 cellSize) {
  const i64 quotient = coordinate / cellSize;
  return quotient - (coordinate % cellSize < 0 ? 1 : 0);
}

}  // namespace

// Two rounds of multiplication and rotation spread every bit over the whole word.
void MatchKey::mix(u64 bits) {
  constexpr u64 kFirstFactor = 0xBF58476D1CE4E5B9ULL;
  constexpr u64 kSecondFactor = 0x94D049BB133111EBULL;
  hash_ = (hash_ ^ bits) * kFirstFactor;
  hash_ = std::rotl(hash_, 29) * kSecondFactor;
  hash_ ^= hash_ >> 32;
}

void MatchKey::addBytes(const void* bytes, std::size_t size) {
  const auto* p = static_cast<const std::byte*>(bytes);
  for (; size >= sizeof(u64); size -= sizeof(u64), p += sizeof(u64)) {
    u64 word = 0;
    std::memcpy(&word, p, sizeof(u64));
    mix(word);
  }
  u64 rest = 0;
  if (size > 0) {
    std::memcpy(&rest, p, size);
  }
  mix(rest ^ size);
}

u64 MatchKey::inCell(i64 cellSize, i32 moveX, i32 moveY) const {
  if (!hasPlace_) {
    return hash_;
  }
  MatchKey cell = *this;
  cell.add(cellOf(placeX_, cellSize) + moveX);
  cell.add(cellOf(placeY_, cellSize) + moveY);
  return cell.hash_;
}

}  // namespace rvf
