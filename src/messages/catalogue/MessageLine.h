#pragma once

#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

#include "base/Integers.h"
#include "messages/MessageReporter.h"
#include "messages/catalogue/MessageRecord.h"

namespace rvf {

/// The record's text with its first `argumentCount` placeholders, in the order of the text,
/// replaced by the entry's arguments; those behind them stay visible. A placeholder that stands
/// there twice is known by its last place only, which may lie in front of what was copied already.
[[nodiscard]] std::u16string substituteArguments(const MessageRecord& record,
                                                 const MessageEntry& entry, int argumentCount);

/// A finished line without its number prefix: what stands behind the first ")" and a blank.
[[nodiscard]] std::u16string_view withoutLinePrefix(std::u16string_view line);

/// A message for which there is no text, by its number and arguments: QZ001903: "a.rvf", "Invalid
/// RVF"
[[nodiscard]] std::u16string numberAndArguments(const MessageEntry& entry);

/// A part of a message line that goes into the report as a line of its own. The text is borrowed.
struct LinePiece {
  std::u16string_view text;
  i32 indent = 0;
};

/// Cuts a message line to the width of the report: 130 characters, and 116 behind an indent of 14
/// on all lines but the first. A cut falls behind the last blank that fits, or at the full width.
[[nodiscard]] std::vector<LinePiece> cutLine(std::u16string_view text);

/// Prints a text as UTF-8 on a standard stream. A stream that cannot be written is ignored.
void printNative(std::FILE* stream, std::u16string_view text);

}  // namespace rvf
