#pragma once

#include <concepts>
#include <span>
#include <string_view>
#include <variant>

#include "base/Integers.h"

namespace rvf {

class eString;

/// One argument of a wide `printf`-style print: an integer, a floating number or a text. Texts are
/// borrowed and must outlive the call.
class FormatArgument {
 public:
  template <std::integral Integer>
  explicit FormatArgument(Integer value) : value_(static_cast<i64>(value)) {}
  explicit FormatArgument(f64 value) : value_(value) {}
  explicit FormatArgument(const char16_t* text);
  explicit FormatArgument(std::u16string_view text) : value_(text) {}
  explicit FormatArgument(const eString& text);

  /// The value in the type that a conversion needs; an argument of another kind gives 0 or "".
  [[nodiscard]] i64 integer() const;
  [[nodiscard]] f64 floating() const;
  [[nodiscard]] std::u16string_view text() const;

 private:
  std::variant<i64, f64, std::u16string_view> value_;
};

/// Estimates the length of the result without measuring text arguments. The first attempt to print
/// uses this size.
[[nodiscard]] i32 estimateFormattedLength(const char16_t* format,
                                          std::span<const FormatArgument> arguments);

/// Prints into `out`, whose size includes the terminator, and returns the length of the text. If
/// the text does not fit, it is cut and the result is -1.
///
/// The conversions are those of the C library for wide text: `%ls` and `%s` (16-bit text), `%c`,
/// `%d %i %u %x %X %o`, `%f %e %g`, with flags, width, precision, `*`, and the size prefixes h, l
/// and I64. `l` means 32 bits, because the formats are written that way.
[[nodiscard]] i32 printBounded(std::span<char16_t> out, const char16_t* format,
                               std::span<const FormatArgument> arguments);

}  // namespace rvf
