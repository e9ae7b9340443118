#pragma once

#include <charconv>
#include <concepts>
#include <string>
#include <string_view>

#include "base/Integers.h"

namespace rvf::inspect {

/// Writes JSON text value by value, without building a tree in memory: a dump has as many values as
/// the file has fields. The caller must open and close objects and lists in pairs.
class JsonLine {
 public:
  JsonLine& open() { return bracket('{'); }
  JsonLine& close() { return endBracket('}'); }
  JsonLine& openList() { return bracket('['); }
  JsonLine& closeList() { return endBracket(']'); }
  /// The name of the next value in an object.
  JsonLine& name(std::string_view fieldName);

  JsonLine& value(std::integral auto number) {
    char digits[24];
    return plain({digits, std::to_chars(digits, digits + sizeof digits, number).ptr});
  }
  /// With six decimal places.
  JsonLine& value(f64 number) { return plain(std::to_string(number)); }
  JsonLine& value(bool truth) { return plain(truth ? "true" : "false"); }
  /// Valid UTF-8 that comes from this program.
  JsonLine& value(std::string_view text);
  JsonLine& value(const char* text) { return value(std::string_view(text)); }
  /// A text from a file, redacted if requested. Half a surrogate pair becomes U+FFFD.
  JsonLine& value(std::u16string_view text);
  JsonLine& null() { return plain("null"); }

  JsonLine& field(std::string_view fieldName, const auto& fieldValue) {
    return name(fieldName).value(fieldValue);
  }

  [[nodiscard]] const std::string& text() const { return text_; }
  void clear() { text_.clear(); }
  /// Removes and returns the text except for its last character, which decides how it goes on.
  [[nodiscard]] std::string takeBeginning();

 private:
  JsonLine& bracket(char c);
  JsonLine& endBracket(char c);
  JsonLine& plain(std::string_view token);
  void separate();
  void appendEscaped(u32 codePoint);

  std::string text_;
};

}  // namespace rvf::inspect
