#pragma once

#include <array>
#include <optional>
#include <string_view>

#include "base/Integers.h"
#include "messages/MessageReporter.h"
#include "text/eString.h"

namespace rvf {

/// Ends MessageRecord::placeholderOrder and marks placeholders that name no argument.
constexpr i16 kNoPlaceholder = -1;
/// A placeholder is three characters, such as |1|.
constexpr int kPlaceholderLength = 3;

/// One message of the catalogue.
struct MessageRecord {
  i32 number = 0;
  char16_t severity = 0;
  eString text;         // as in the catalogue, placeholders and backslashes included
  i32 firstValue = 0;   // kept from the line, never used
  i32 limit = 0;        // how many occurrences are written; below 1: all of them
  i32 useCount = 0;     // occurrences so far in this run
  i32 exitValue = 0;    // the exit value of a severe message; 0 from the catalogue
  bool hidden = false;  // never written
  /// For each argument, the index in `text` of its last placeholder.
  std::array<i16, kArgumentSlots> placeholderPosition{};
  /// The arguments of the placeholders, in text order.
  std::array<i16, kArgumentSlots> placeholderOrder{};
};

/// Reads a record text: severity letter, separator, number, separator, number, separator, message.
/// Its placeholders are |1| to |8|; higher numbers are taken as 8, and none begins after a
/// backslash. Returns nothing if one of the three separators is missing. A text must have fewer
/// than 32768 characters.
[[nodiscard]] std::optional<MessageRecord> parseMessageRecord(i32 number, std::u16string_view text,
                                                              char16_t separator);

/// The decimal number at the start of `text`, after blanks and a sign; 0 if there is none. A number
/// too large for 32 bits gives the nearest value.
[[nodiscard]] i32 leadingDecimal(std::u16string_view text);

/// The fields of a catalogue line are separated by blanks and tabs.
constexpr std::u16string_view kFieldBlanks = u" \t";

/// `text` without the blanks and tabs at its start.
[[nodiscard]] std::u16string_view skipFieldBlanks(std::u16string_view text);

}  // namespace rvf
