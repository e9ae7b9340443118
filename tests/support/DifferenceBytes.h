#pragma once

#include <algorithm>
#include <cstdint>
#include <string_view>

namespace rvf::test {

/// A difference file, read independently of the program by its documented layout.
class DifferenceBytes {
 public:
  explicit DifferenceBytes(std::string_view bytes) : rest_(bytes) {}

  /// Whether it is the result of a complete comparison: all announced customers, and the totals as
  /// its last bytes.
  bool isComplete() {
    text();
    text();
    for (std::int64_t customers = number(4); customers > 0 && !isShort_; --customers) {
      number(4);
      text();
      const std::int64_t first = number(4), second = number(4);
      skip(4 * std::max<std::int64_t>(std::min(first, second), 0) + 4);
    }
    skip(12);
    return !isShort_ && rest_.empty();
  }

 private:
  void skip(std::int64_t size) {
    isShort_ = isShort_ || size > static_cast<std::int64_t>(rest_.size());
    rest_.remove_prefix(isShort_ ? rest_.size() : static_cast<std::size_t>(size));
  }
  std::int64_t number(int width) {
    std::uint32_t value = 0;
    for (int i = 0; i < std::min(width, static_cast<int>(rest_.size())); ++i) {
      value |= std::uint32_t{static_cast<unsigned char>(rest_[static_cast<std::size_t>(i)])}
               << 8 * i;
    }
    skip(width);
    return static_cast<std::int32_t>(value);
  }
  void text() {
    skip(3);
    std::int64_t length = number(1);
    if (length == 0xFF) length = number(2);
    if (length == 0xFFFF) length = number(4);
    skip(2 * length);
  }

  std::string_view rest_;
  bool isShort_ = false;
};

}  // namespace rvf::test
