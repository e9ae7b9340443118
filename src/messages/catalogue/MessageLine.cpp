#include "messages/catalogue/MessageLine.h"

#include <algorithm>

#include "text/NativeText.h"

namespace rvf {

namespace {

constexpr std::size_t kLineWidth = 130;
constexpr i32 kLaterIndent = 14;

}  // namespace

std::u16string substituteArguments(const MessageRecord& record, const MessageEntry& entry,
                                   int argumentCount) {
  const std::u16string_view text = record.text.view();
  std::u16string line;
  std::size_t copied = 0;
  for (int k = 0; k < std::min(argumentCount, kArgumentSlots); ++k) {
    const i16 argument = record.placeholderOrder[static_cast<std::size_t>(k)];
    if (argument < 0) {
      continue;
    }
    const auto index = static_cast<std::size_t>(argument);
    const auto position = static_cast<std::size_t>(record.placeholderPosition[index]);
    if (copied < position) {
      line += text.substr(copied, position - copied);
    }
    if (argument < kMostCallArguments) {
      line += entry.arguments[index].text();
    }
    copied = std::min(position + kPlaceholderLength, text.size());
  }
  line += text.substr(copied);
  return line;
}

std::u16string_view withoutLinePrefix(std::u16string_view line) {
  const std::size_t end = line.find(u')');
  if (end == std::u16string_view::npos) {
    return line;
  }
  line.remove_prefix(end + 1);
  if (line.starts_with(u' ')) {
    line.remove_prefix(1);
  }
  return line;
}

std::u16string numberAndArguments(const MessageEntry& entry) {
  eString number;
  number.Format(u"QZ%06ld", static_cast<i32>(entry.number));
  std::u16string line(number.view());
  auto end = entry.arguments.end();
  while (end != entry.arguments.begin() && (end - 1)->isEmpty()) {
    --end;
  }
  for (auto argument = entry.arguments.begin(); argument != end; ++argument) {
    line += argument == entry.arguments.begin() ? u": \"" : u", \"";
    line += argument->text();
    line += u'"';
  }
  return line;
}

std::vector<LinePiece> cutLine(std::u16string_view text) {
  std::vector<LinePiece> pieces;
  i32 indent = 0;
  while (!text.empty()) {
    const std::size_t width = kLineWidth - static_cast<std::size_t>(indent);
    std::size_t length = text.size();
    if (length >= width) {
      const std::size_t lastBlank = text.substr(0, width).rfind(u' ');
      length = lastBlank == std::u16string_view::npos ? width : lastBlank + 1;
    }
    pieces.push_back({text.substr(0, length), indent});
    text.remove_prefix(length);
    indent = kLaterIndent;
  }
  return pieces;
}

void printNative(std::FILE* stream, std::u16string_view text) {
  const std::string bytes = toNative(text);
  std::fwrite(bytes.data(), 1, bytes.size(), stream);
}

}  // namespace rvf
