#pragma once

#include <bit>
#include <cstring>
#include <span>
#include <string_view>

#include "base/Integers.h"

namespace rvf::inspect {

/// A 64-bit digest of a sequence of values. Equal digests are taken as equal values: that two
/// different pages or parts have the same digest by chance is less likely than a memory fault.
class Digest {
 public:
  void add(u64 value) {
    state_ = std::rotl((state_ ^ value) * kFactor, 31);
    state_ ^= state_ >> 29;
  }
  void addBytes(std::span<const std::byte> bytes) {
    add(bytes.size());
    // Four chains in parallel, since each step has to wait for the previous one.
    constexpr std::size_t kLanes = 4;
    if (bytes.size() >= 2 * kLanes * sizeof(u64)) {
      u64 lanes[kLanes] = {state_, ~state_, state_ * kFactor, ~(state_ * kFactor)};
      while (bytes.size() >= sizeof lanes) {
        u64 words[kLanes];
        std::memcpy(words, bytes.data(), sizeof words);
        for (std::size_t lane = 0; lane < kLanes; ++lane) {
          lanes[lane] = std::rotl((lanes[lane] ^ words[lane]) * kFactor, 31);
        }
        bytes = bytes.subspan(sizeof words);
      }
      for (const u64 lane : lanes) {
        add(lane);
      }
    }
    while (bytes.size() >= sizeof(u64)) {
      u64 word = 0;
      std::memcpy(&word, bytes.data(), sizeof word);
      state_ = std::rotl((state_ ^ word) * kFactor, 31);
      bytes = bytes.subspan(sizeof word);
    }
    u64 rest = 0;
    if (!bytes.empty()) {
      std::memcpy(&rest, bytes.data(), bytes.size());
    }
    add(rest);
  }
  void addText(std::u16string_view text) { addBytes(std::as_bytes(std::span(text))); }
  void addText(std::string_view text) { addBytes(std::as_bytes(std::span(text))); }

  [[nodiscard]] u64 value() const {
    u64 mixed = (state_ ^ state_ >> 32) * kFactor;
    return mixed ^ mixed >> 29;
  }

 private:
  static constexpr u64 kFactor = 0xBF58476D1CE4E5B9ULL;
  u64 state_ = 0x9E3779B97F4A7C15ULL;
};

}  // namespace rvf::inspect
