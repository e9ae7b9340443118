#pragma once

#include <algorithm>
#include <cstdint>
#include <string_view>

namespace rvf::test {

/// A difference file as a stranger reads it, who knows nothing but its layout.
class DifferenceBytes {
 public:
  explicit DifferenceBytes(std::string_view bytes) : rest_(bytes) {}

  /// Whether it is the result of a comparison that came to its end: all customers that it promises,
  /// and the totals as its last bytes.
  bool isComplete() {
    text();
    text();
    const std::int64_t customers = number(4);
    for (std::int64_t i = 0; i < customers && !isShort_; ++i) customer();
    take(12);
    return !isShort_ && rest_.empty();
  }

 private:
  std::string_view take(std::int64_t size) {
    isShort_ = isShort_ || size > static_cast<std::int64_t>(rest_.size());
    if (isShort_) return {};
    const std::string_view taken = rest_.substr(0, static_cast<std::size_t>(size));
    rest_.remove_prefix(taken.size());
    return taken;
  }
  std::int64_t number(int width) {
    std::uint32_t value = 0;
    int shift = 0;
    for (const char c : take(width)) {
      value |= static_cast<std::uint32_t>(static_cast<unsigned char>(c)) << shift;
      shift += 8;
    }
    return width == 4 ? static_cast<std::int32_t>(value) : std::int64_t{value};
  }
  void text() {
    take(3);
    std::int64_t length = number(1);
    if (length == 0xFF) length = number(2);
    if (length == 0xFFFF) length = number(4);
    take(2 * length);
  }
  void customer() {
    take(4);
    text();
    const std::int64_t first = number(4);
    const std::int64_t second = number(4);
    take(4 * std::max<std::int64_t>(std::min(first, second), 0) + 4);
  }

  std::string_view rest_;
  bool isShort_ = false;
};

}  // namespace rvf::test
