#include "inspect/model/Digest.h"

#include <random>

namespace rvf::inspect {

namespace {

u64 randomWord(std::random_device& device) { return u64{device()} << 32 | device(); }

}  // namespace

const Digest::Keys Digest::kKeysOfProcess = [] {
  std::random_device device;
  return Keys{randomWord(device), randomWord(device) | 1};
}();

const Digest::Keys Digest::kLastingKeys = {0x9E3779B97F4A7C15, 0xBF58476D1CE4E5B9};

}  // namespace rvf::inspect
