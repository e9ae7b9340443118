#pragma once

#include <optional>

#include "text/eString.h"

namespace rvf {

/// The pieces of an option line.
struct OptionLine {
  bool isIgnored = false;       // empty or a comment
  bool startsAsOption = false;  // with "-" or "/"
  eString name;                 // in upper case
  std::optional<eString> value;
};

/// Leading blanks and trailing blanks and tabs are ignored.
[[nodiscard]] OptionLine splitOptionLine(const eString& line);

[[nodiscard]] bool startsAsOption(const eString& text);

/// Why a line is not understood and how it should read, for the operator. For a mistyped name, the
/// nearest valid one is suggested.
[[nodiscard]] eString explainBadOption(const eString& line);

}  // namespace rvf
