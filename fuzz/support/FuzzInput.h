#pragma once

#include <cstddef>
#include <cstring>
#include <string_view>
#include <type_traits>
#include <vector>

#include "base/Integers.h"
#include "storage/MemFile.h"

namespace rvf::fuzz {

/// Takes values off the front of a fuzzed input. Behind its end come zeroes and empty stretches.
class FuzzInput {
 public:
  FuzzInput(const u8* data, std::size_t size) : left_(reinterpret_cast<const char*>(data), size) {}

  template <class T = u8>
  T take() {
    static_assert(std::is_arithmetic_v<T>);
    T value{};
    const std::string_view bytes = takeBytes(sizeof(T));
    if (!bytes.empty()) {
      std::memcpy(&value, bytes.data(), bytes.size());
    }
    return value;
  }

  std::string_view takeBytes(std::size_t count) {
    const std::string_view bytes = left_.substr(0, count);
    left_.remove_prefix(bytes.size());
    return bytes;
  }

  [[nodiscard]] std::string_view rest() const { return left_; }
  [[nodiscard]] bool isEmpty() const { return left_.empty(); }

 private:
  std::string_view left_;
};

/// A memory file on a block of exactly these bytes, so that a sanitizer sees every read behind
/// them.
class InputFile {
 public:
  explicit InputFile(std::string_view bytes) : block_(bytes.size()) {
    if (!bytes.empty()) {
      std::memcpy(block_.data(), bytes.data(), bytes.size());
    }
    file_.Attach(block_.data(), static_cast<i32>(block_.size()), 0);
  }

  [[nodiscard]] eMemFile& file() { return file_; }

 private:
  std::vector<std::byte> block_;
  eMemFile file_{0};
};

}  // namespace rvf::fuzz
