#pragma once

#include <algorithm>
#include <concepts>
#include <ranges>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "text/eString.h"

namespace rvf::test {

inline bool isPlain(char16_t unit) { return unit == 0 || (unit >= u' ' && unit <= u'~'); }

/// "|" stands for a zero; a non-ASCII character is shown as its number.
inline std::string quoted(std::u16string_view text) {
  std::string quoted = "\"";
  for (const char16_t unit : text) {
    const std::string plain(1, unit == 0 ? '|' : static_cast<char>(unit));
    quoted += isPlain(unit) ? plain : "<" + std::to_string(unit) + ">";
  }
  return quoted + '"';
}

/// An object as lines, each of which starts with its name.
using Rows = std::vector<std::string>;

/// Values as text. Numbers of more than 16 bits, which are usually packed, are hexadecimal.
struct Shown {
  template <class... Values>
  static std::string row(std::string name, const Values&... values) {
    return ((name += " " + of(values)), ..., name);
  }
  template <std::integral T>
  static std::string of(T value) {
    const auto number = static_cast<i64>(value);
    if (number > -0x10000 && number < 0x10000) return std::to_string(number);
    std::ostringstream text;
    text << "0x" << std::hex << static_cast<u32>(number);
    return text.str();
  }
  static std::string of(f64 value) { return std::to_string(value); }
  static std::string of(const eString& text) { return quoted(text.view()); }
  template <std::ranges::range T>
  static std::string of(const T& values) {
    std::string text = "(";
    for (const auto& value : values) text += " " + of(value);
    return text + " )";
  }
};

}  // namespace rvf::test
