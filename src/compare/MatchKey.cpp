#include "compare/MatchKey.h"

namespace rvf {

namespace {

i64 cellOf(i32 coordinate, i64 cellSize) {
  const i64 quotient = coordinate / cellSize;
  return quotient - (coordinate % cellSize < 0 ? 1 : 0);
}

}  // namespace

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
