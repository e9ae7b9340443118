#pragma once

#include <string>
#include <string_view>

namespace rvf::inspect {

/// JSON that is safe in a script element, which a text could otherwise end. Only strings in JSON
/// can contain such a character.
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
