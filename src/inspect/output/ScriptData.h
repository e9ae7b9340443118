#pragma once

#include <string>
#include <string_view>

namespace rvf::inspect {

/// JSON as it can stand in a script element, which ends where a text says so. Nothing outside of
/// the strings of JSON has such a character.
[[nodiscard]] inline std::string inScriptElement(std::string_view json) {
  std::string text;
  text.reserve(json.size() + json.size() / 64);
  for (const char c : json) {
    if (c == '<') {
      text += "\\u003c";
    } else {
      text += c;
    }
  }
  return text;
}

}  // namespace rvf::inspect
