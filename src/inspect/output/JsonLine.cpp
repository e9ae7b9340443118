#include "inspect/output/JsonLine.h"

#include <algorithm>
#include <cstdio>
#include <utility>

#include "inspect/output/ShownText.h"

namespace rvf::inspect {

namespace {

/// Whether a character stands for itself; most texts consist of such characters.
bool isPlain(u32 c) { return c >= 0x20 && c < 0x7F && c != '"' && c != '\\'; }

}  // namespace

JsonLine& JsonLine::name(std::string_view fieldName) {
  value(fieldName);
  text_ += ':';
  return *this;
}

JsonLine& JsonLine::value(std::string_view text) {
  separate();
  text_ += '"';
  while (!text.empty()) {
    const auto end = std::ranges::find_if_not(text, [](char c) {
      return isPlain(static_cast<unsigned char>(c)) || static_cast<unsigned char>(c) >= 0x80;
    });
    text_.append(text.begin(), end);
    text.remove_prefix(static_cast<std::size_t>(end - text.begin()));
    if (!text.empty()) {
      appendEscaped(static_cast<unsigned char>(text.front()));
      text.remove_prefix(1);
    }
  }
  text_ += '"';
  return *this;
}

JsonLine& JsonLine::value(std::u16string_view text) {
  std::u16string hidden;
  if (redactsTexts) {
    hidden = redacted(text);
    text = hidden;
  }
  separate();
  text_ += '"';
  while (!text.empty()) {
    const auto end = std::ranges::find_if_not(text, isPlain);
    text_.append(text.begin(), end);
    text.remove_prefix(static_cast<std::size_t>(end - text.begin()));
    if (text.empty()) {
      break;
    }
    const u32 c = takeCodePoint(text);
    if (isUnsafe(c) || c == '"' || c == '\\') {
      appendEscaped(c);
    } else {
      appendUtf8(text_, c);
    }
  }
  text_ += '"';
  return *this;
}

std::string JsonLine::takeBeginning() {
  std::string rest = text_.empty() ? std::string() : text_.substr(text_.size() - 1);
  text_.resize(text_.size() - rest.size());
  return std::exchange(text_, std::move(rest));
}

JsonLine& JsonLine::bracket(char c) {
  separate();
  text_ += c;
  return *this;
}

JsonLine& JsonLine::endBracket(char c) {
  text_ += c;
  return *this;
}

JsonLine& JsonLine::plain(std::string_view token) {
  separate();
  text_ += token;
  return *this;
}

void JsonLine::separate() {
  if (text_.empty()) {
    return;
  }
  const char last = text_.back();
  if (last != '{' && last != '[' && last != ':') {
    text_ += ',';
  }
}

void JsonLine::appendEscaped(u32 c) {
  if (c == '"' || c == '\\') {
    text_ += '\\';
    text_ += static_cast<char>(c);
    return;
  }
  char number[24];
  if (c < 0x10000) {
    std::snprintf(number, sizeof number, "\\u%04x", c);
  } else {
    const u32 rest = c - 0x10000;
    std::snprintf(number, sizeof number, "\\u%04x\\u%04x", 0xD800 | rest >> 10,
                  0xDC00 | (rest & 0x3FF));
  }
  text_ += number;
}

}  // namespace rvf::inspect
