#include "messages/catalogue/MessageRecord.h"

#include <algorithm>
#include <limits>

namespace rvf {

namespace {

/// Removes everything up to the next separator from `text`; false if there is none.
bool skipBehind(std::u16string_view& text, char16_t separator) {
  const std::size_t found = text.find(separator);
  if (found == std::u16string_view::npos) {
    return false;
  }
  text.remove_prefix(found + 1);
  return true;
}

void notePlaceholder(MessageRecord& record, std::size_t position, std::size_t placeholderCount,
                     i32 argumentNumber) {
  // Numbers below 1 name no argument.
  const auto index = static_cast<i16>(std::clamp(argumentNumber, 0, kArgumentSlots) - 1);
  if (index >= 0) {
    record.placeholderPosition[static_cast<std::size_t>(index)] = static_cast<i16>(position);
  }
  if (placeholderCount < record.placeholderOrder.size()) {
    record.placeholderOrder[placeholderCount] = index;
  }
}

void findPlaceholders(MessageRecord& record) {
  const std::u16string_view text = record.text.view();
  std::size_t placeholderCount = 0;
  bool escaped = false;
  for (std::size_t i = 0; i < text.size();) {
    if (text[i] == u'\\') {
      // Quirk that stays: the flag also covers the character after the skipped one, so neither of
      // the two characters after a backslash opens a placeholder: in "\|1|" the second bar does.
      // Existing texts rely on this.
      escaped = true;
      i += 2;
      continue;
    }
    if (text[i] == u'|' && !escaped) {
      notePlaceholder(record, i, placeholderCount, leadingDecimal(text.substr(i + 1)));
      placeholderCount += 1;
      i += kPlaceholderLength;
    } else {
      i += 1;
    }
    escaped = false;
  }
}

}  // namespace

i32 leadingDecimal(std::u16string_view text) {
  constexpr i64 kBeyond = i64{std::numeric_limits<i32>::max()} + 1;
  constexpr std::u16string_view kSpaces = u" \t\n\v\f\r";
  text.remove_prefix(std::min(text.find_first_not_of(kSpaces), text.size()));
  const bool negative = text.starts_with(u'-');
  if (negative || text.starts_with(u'+')) {
    text.remove_prefix(1);
  }
  i64 number = 0;
  for (; !text.empty() && text.front() >= u'0' && text.front() <= u'9'; text.remove_prefix(1)) {
    number = std::min(number * 10 + (text.front() - u'0'), kBeyond);
  }
  return static_cast<i32>(negative ? -number : std::min(number, kBeyond - 1));
}

std::u16string_view skipFieldBlanks(std::u16string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(kFieldBlanks), text.size()));
  return text;
}

std::optional<MessageRecord> parseMessageRecord(i32 number, std::u16string_view text,
                                                char16_t separator) {
  MessageRecord record;
  record.number = number;
  record.severity = text.empty() ? u'\0' : text.front();
  if (!skipBehind(text, separator)) {
    return std::nullopt;
  }
  record.firstValue = leadingDecimal(text);
  if (!skipBehind(text, separator)) {
    return std::nullopt;
  }
  record.limit = leadingDecimal(text);
  if (!skipBehind(text, separator)) {
    return std::nullopt;
  }
  record.text = eString(skipFieldBlanks(text));
  record.text.TrimRight();
  record.placeholderOrder.fill(kNoPlaceholder);
  findPlaceholders(record);
  return record;
}

}  // namespace rvf
