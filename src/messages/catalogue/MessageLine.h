#pragma once

#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

#include "base/Integers.h"
#include "messages/MessageReporter.h"
#include "messages/catalogue/MessageRecord.h"

namespace rvf {

/// The record's text with its first `argumentCount` placeholders, in text order, replaced by the
/// entry's arguments; the remaining ones stay visible.
[[nodiscard]] std::u16string substituteArguments(const MessageRecord& record,
                                                 const MessageEntry& entry, int argumentCount);

/// A finished line without its number prefix: the text after the first ")" and one blank.
[[nodiscard]] std::u16string_view withoutLinePrefix(std::u16string_view line);

/// A message that has no text, shown as its number and arguments: QZ001903: "a.rvf", "Invalid RVF"
[[nodiscard]] std::u16string numberAndArguments(const MessageEntry& entry);

/// A piece of a message that becomes a line of the report. The text is borrowed.
struct LinePiece {
  std::u16string_view text;
  i32 indent = 0;
};

/// Cuts a message line to the width of the report: 130 characters, and 116 after an indent of 14 on
/// all lines but the first. Lines are cut after the last blank that fits, or at the full width.
[[nodiscard]] std::vector<LinePiece> cutLine(std::u16string_view text);

/// Prints a text as UTF-8 on a standard stream. Write failures are ignored.
void printNative(std::FILE* stream, std::u16string_view text);

}  // namespace rvf
