#include "text/Format.h"

#include <algorithm>
#include <cstdio>
#include <string>

#include "text/eString.h"

namespace rvf {

FormatArgument::FormatArgument(const char16_t* text)
    : value_(text == nullptr ? std::u16string_view() : std::u16string_view(text)) {}

FormatArgument::FormatArgument(const eString& text) : value_(text.text()) {}

i64 FormatArgument::integer() const {
  const i64* value = std::get_if<i64>(&value_);
  return value == nullptr ? 0 : *value;
}

f64 FormatArgument::floating() const {
  const f64* value = std::get_if<f64>(&value_);
  return value == nullptr ? static_cast<f64>(integer()) : *value;
}

std::u16string_view FormatArgument::text() const {
  const auto* value = std::get_if<std::u16string_view>(&value_);
  return value == nullptr ? std::u16string_view() : *value;
}

namespace {

/// Hands out the arguments in order, then zeroes and empty texts, so that a format with too many
/// conversions is harmless.
class ArgumentCursor {
 public:
  explicit ArgumentCursor(std::span<const FormatArgument> arguments) : left_(arguments) {}

  FormatArgument next() {
    if (left_.empty()) {
      return FormatArgument(0);
    }
    const FormatArgument argument = left_.front();
    left_ = left_.subspan(1);
    return argument;
  }

 private:
  std::span<const FormatArgument> left_;
};

constexpr int kNotGiven = -1;

enum class SizePrefix { kNone, kShort, kLong, kInteger64 };

/// One conversion of a format text, parsed.
struct Conversion {
  std::string flags;
  int width = 0;
  int precision = kNotGiven;
  SizePrefix prefix = SizePrefix::kNone;
  char16_t type = 0;
};

bool isDigit(char16_t c) { return c >= u'0' && c <= u'9'; }

/// A width or a precision. Formats may come from a catalogue file, so the number is limited to a
/// value that no line needs.
int readNumber(const char16_t*& p) {
  constexpr int kLargestNumber = 4096;
  int number = 0;
  for (; isDigit(*p); ++p) {
    number = std::min(number * 10 + (*p - u'0'), kLargestNumber);
  }
  return number;
}

/// Parses the conversion after the "%" and leaves `p` after it.
Conversion readConversion(const char16_t*& p, ArgumentCursor& arguments) {
  Conversion conversion;
  bool widthIsArgument = false;
  for (;; ++p) {
    if (*p == u'*') {
      conversion.width = static_cast<int>(arguments.next().integer());
      widthIsArgument = true;
    } else if (*p == u'#' || *p == u'-' || *p == u'+' || *p == u'0' || *p == u' ') {
      conversion.flags += static_cast<char>(*p);
    } else {
      break;
    }
  }
  if (!widthIsArgument) {
    conversion.width = readNumber(p);
  }
  if (*p == u'.') {
    ++p;
    if (*p == u'*') {
      ++p;
      conversion.precision = static_cast<int>(arguments.next().integer());
    } else {
      conversion.precision = readNumber(p);
    }
  }
  if (std::u16string_view(p).starts_with(u"I64")) {
    conversion.prefix = SizePrefix::kInteger64;
    p += 3;
  } else if (*p == u'h' || *p == u'l') {
    conversion.prefix = *p == u'h' ? SizePrefix::kShort : SizePrefix::kLong;
    ++p;
  } else if (*p == u'F' || *p == u'L' || *p == u'N') {
    ++p;
  }
  conversion.type = *p;
  if (*p != 0) {
    ++p;
  }
  return conversion;
}

bool isOneOf(char16_t c, std::u16string_view set) {
  return set.find(c) != std::u16string_view::npos;
}

i64 narrowedToPrefix(i64 value, SizePrefix prefix, bool isSigned) {
  switch (prefix) {
    case SizePrefix::kShort:
      return isSigned ? i64{static_cast<i16>(value)} : i64{static_cast<u16>(value)};
    case SizePrefix::kNone:
    case SizePrefix::kLong:
      return isSigned ? i64{static_cast<i32>(value)} : i64{static_cast<u32>(value)};
    case SizePrefix::kInteger64:
      break;
  }
  return value;
}

/// One number, printed by the C library.
template <class Number>
std::string printNumber(const Conversion& conversion, const char* length, char type, Number value) {
  const std::string format = "%" + conversion.flags + "*.*" + length + type;
  const auto print = [&](char* out, std::size_t size) {
    return std::snprintf(out, size, format.c_str(), conversion.width, conversion.precision, value);
  };
  std::string text(static_cast<std::size_t>(std::max(print(nullptr, 0), 0)), '\0');
  print(text.data(), text.size() + 1);
  return text;
}

std::u16string widened(std::string_view ascii) { return {ascii.begin(), ascii.end()}; }

std::u16string padded(const Conversion& conversion, std::u16string_view text) {
  const auto width = static_cast<std::size_t>(std::abs(conversion.width));
  const bool leftAligned = conversion.width < 0 || conversion.flags.find('-') != std::string::npos;
  const std::u16string blanks(std::max(width, text.size()) - text.size(), u' ');
  return leftAligned ? std::u16string(text) + blanks : blanks + std::u16string(text);
}

std::u16string printConversion(const Conversion& conversion, ArgumentCursor& arguments) {
  if (isOneOf(conversion.type, u"sS")) {
    const FormatArgument argument = arguments.next();
    std::u16string_view text = argument.text();
    if (conversion.precision >= 0) {
      text = text.substr(0, static_cast<std::size_t>(conversion.precision));
    }
    return padded(conversion, text);
  }
  if (isOneOf(conversion.type, u"cC")) {
    const auto character = static_cast<char16_t>(arguments.next().integer());
    return padded(conversion, {&character, 1});
  }
  if (isOneOf(conversion.type, u"diuoxXp")) {
    const bool isSigned = isOneOf(conversion.type, u"di");
    const SizePrefix prefix = conversion.type == u'p' ? SizePrefix::kInteger64 : conversion.prefix;
    const i64 value = narrowedToPrefix(arguments.next().integer(), prefix, isSigned);
    const char type = conversion.type == u'p' ? 'X' : static_cast<char>(conversion.type);
    return widened(printNumber(conversion, "ll", type, static_cast<long long>(value)));
  }
  if (isOneOf(conversion.type, u"fegG")) {
    const char type = static_cast<char>(conversion.type);
    return widened(printNumber(conversion, "", type, arguments.next().floating()));
  }
  return conversion.type == 0 ? std::u16string() : std::u16string(1, conversion.type);
}

i32 estimateOf(const Conversion& conversion) {
  const bool isText = isOneOf(conversion.type, u"sS");
  if (isText || isOneOf(conversion.type, u"cC")) {
    return std::max({isText ? 1024 : 2, conversion.precision, conversion.width});
  }
  if (isOneOf(conversion.type, u"Xdiopux")) {
    return 32;
  }
  if (conversion.type == u'f') {
    return 64;
  }
  return isOneOf(conversion.type, u"Geg") ? 128 : 0;
}

}  // namespace

i32 estimateFormattedLength(const char16_t* format, std::span<const FormatArgument> arguments) {
  ArgumentCursor cursor(arguments);
  i32 estimate = 0;
  for (const char16_t* p = format; *p != 0;) {
    if (*p != u'%' || p[1] == u'%') {
      p += *p == u'%' ? 2 : 1;
      estimate += 1;
      continue;
    }
    const Conversion conversion = readConversion(++p, cursor);
    estimate += static_cast<i32>(2 * std::ranges::count(conversion.flags, '#'));
    const i32 size = estimateOf(conversion);
    estimate += size;
    if (size > 0) {
      cursor.next();
    }
  }
  return estimate;
}

i32 printBounded(std::span<char16_t> out, const char16_t* format,
                 std::span<const FormatArgument> arguments) {
  ArgumentCursor cursor(arguments);
  std::u16string text;
  // Once the room is full, the rest would be lost anyway.
  for (const char16_t* p = format; *p != 0 && text.size() < out.size();) {
    if (*p != u'%' || p[1] == u'%') {
      text += *p;
      p += *p == u'%' ? 2 : 1;
      continue;
    }
    const Conversion conversion = readConversion(++p, cursor);
    text += printConversion(conversion, cursor);
  }
  const std::size_t stored = std::min(text.size(), out.size() - 1);
  std::copy_n(text.begin(), stored, out.begin());
  out[stored] = 0;
  return stored == text.size() ? static_cast<i32>(stored) : -1;
}

}  // namespace rvf
