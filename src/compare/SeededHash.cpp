#include "compare/SeededHash.h"

#include <random>

namespace rvf {

const SeededHash::Seed SeededHash::kSeed = makeSeed();

SeededHash::Seed SeededHash::makeSeed() {
  std::random_device device;
  const auto word = [&device] { return u64{device()} << 32 | device(); };
  return {word(), word() | 1, word() | 1};
}

void SeededHash::addBytes(const void* bytes, std::size_t size) {
  const auto* p = static_cast<const std::byte*>(bytes);
  mix(size);
  for (; size >= sizeof(u64); size -= sizeof(u64), p += sizeof(u64)) {
    u64 word = 0;
    std::memcpy(&word, p, sizeof(u64));
    mix(word);
  }
  if (size > 0) {
    u64 rest = 0;
    std::memcpy(&rest, p, size);
    mix(rest);
  }
}

}  // namespace rvf
