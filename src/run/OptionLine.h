#pragma once

#include <optional>

#include "text/eString.h"

namespace rvf {

/// An option line in its pieces.
struct OptionLine {
  bool isIgnored = false;       // empty or a comment
  bool startsAsOption = false;  // with "-" or "/"
  eString name;                 // in upper case
  std::optional<eString> value;
};

/// Blanks in front of the line and blanks and tabs behind it do not count.
[[nodiscard]] OptionLine splitOptionLine(const eString& line);

[[nodiscard]] bool startsAsOption(const eString& text);

/// Why a line is not understood and how it should read, for people. A mistyped name is answered
/// with the nearest valid one.
[[nodiscard]] eString explainBadOption(const eString& line);

}  // namespace rvf
