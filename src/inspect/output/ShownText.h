#pragma once

#include <string>
#include <string_view>

#include "base/Integers.h"

namespace rvf::inspect {

/// How texts of a file are shown to people: what could steer a terminal (control characters, marks
/// of writing direction), and half a surrogate pair, appears by its number, as in \u001B. What
/// comes out is valid UTF-8 and can stand in XML.
[[nodiscard]] std::string shownText(std::u16string_view text);
void appendShown(std::string& target, std::u16string_view text);

/// The same for bytes of the system, such as a path.
[[nodiscard]] std::string shownText(std::string_view native);

/// Appends one code point as UTF-8.
void appendUtf8(std::string& target, u32 codePoint);

/// Whether a code point has to be shown by its number.
[[nodiscard]] bool isUnsafe(u32 codePoint);

/// Takes the next code point off the front of a text that is not empty. Half a surrogate pair is
/// delivered as it is.
[[nodiscard]] u32 takeCodePoint(std::u16string_view& text);

/// Every letter becomes an x and every digit a 9, so that a text keeps its shape alone.
[[nodiscard]] std::u16string redacted(std::u16string_view text);

/// Whether all texts of all output are redacted: set once, by the command line.
inline bool redactsTexts = false;

/// "1 page", "2 pages".
[[nodiscard]] std::string counted(i64 number, std::string_view noun);

}  // namespace rvf::inspect
