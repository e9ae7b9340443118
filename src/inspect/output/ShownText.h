#pragma once

#include <string>
#include <string_view>

#include "base/Integers.h"

namespace rvf::inspect {

/// A text from a file as it is shown: characters that could control a terminal (control characters,
/// direction marks) and half surrogate pairs appear by their number, as in \u001B. The result is
/// valid UTF-8 and allowed in XML.
[[nodiscard]] std::string shownText(std::u16string_view text);
void appendShown(std::string& target, std::u16string_view text);

/// The same for the system's bytes, such as a path.
[[nodiscard]] std::string shownText(std::string_view native);

/// Appends one code point as UTF-8.
void appendUtf8(std::string& target, u32 codePoint);

/// Whether a code point must be shown by its number.
[[nodiscard]] bool isUnsafe(u32 codePoint);

/// Removes and returns the first code point of a text that is not empty. Half a surrogate pair is
/// returned as it is.
[[nodiscard]] u32 takeCodePoint(std::u16string_view& text);

/// Every letter becomes an x and every digit a 9, so that a text keeps only its shape.
[[nodiscard]] std::u16string redacted(std::u16string_view text);

/// Whether all texts in all output are redacted. Set once, by the command line.
inline bool redactsTexts = false;

/// "1 page", "2 pages".
[[nodiscard]] std::string counted(i64 number, std::string_view noun);

}  // namespace rvf::inspect
