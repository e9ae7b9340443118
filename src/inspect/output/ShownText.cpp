#include "inspect/output/ShownText.h"

#include <unicode/uchar.h>

#include <algorithm>
#include <cstdio>

#include "text/NativeText.h"

namespace rvf::inspect {

namespace {

constexpr u32 kReplacement = 0xFFFD;

bool isSurrogate(u32 c) { return c >> 11 == 0x1B; }

bool isDirectionMark(u32 c) {
  return c == 0x061C || c == 0x200E || c == 0x200F || (c >= 0x2028 && c <= 0x202E) ||
         (c >= 0x2066 && c <= 0x2069);
}

void appendPlain(std::string& target, std::u16string_view text) {
  while (!text.empty()) {
    const auto isAscii = [](char16_t c) { return c >= 0x20 && c < 0x7F; };
    const auto end = std::ranges::find_if_not(text, isAscii);
    const std::size_t size = target.size();
    const auto plain = static_cast<std::size_t>(end - text.begin());
    target.resize(size + plain);
    std::transform(text.begin(), end, target.data() + size,
                   [](char16_t c) { return static_cast<char>(c); });
    text.remove_prefix(plain);
    if (text.empty()) {
      break;
    }
    const u32 c = takeCodePoint(text);
    if (isUnsafe(c) || isSurrogate(c)) {
      char number[16];
      std::snprintf(number, sizeof number, "\\u%04X", c);
      target += number;
    } else {
      appendUtf8(target, c);
    }
  }
}

}  // namespace

u32 takeCodePoint(std::u16string_view& text) {
  u32 c = text.front();
  text.remove_prefix(1);
  if (c >> 10 == 0x36 && !text.empty() && text.front() >> 10 == 0x37) {
    c = 0x10000 + ((c & 0x3FF) << 10) + (text.front() & 0x3FF);
    text.remove_prefix(1);
  }
  return c;
}

bool isUnsafe(u32 c) {
  return c < 0x20 || (c >= 0x7F && c < 0xA0) || isDirectionMark(c) || c == 0xFEFF ||
         (c & 0xFFFE) == 0xFFFE;
}

void appendUtf8(std::string& target, u32 c) {
  const auto put = [&target](u32 byte) { target += static_cast<char>(byte); };
  if (isSurrogate(c)) {
    c = kReplacement;
  }
  if (c < 0x80) {
    put(c);
  } else if (c < 0x800) {
    put(0xC0 | c >> 6);
    put(0x80 | (c & 0x3F));
  } else if (c < 0x10000) {
    put(0xE0 | c >> 12);
    put(0x80 | (c >> 6 & 0x3F));
    put(0x80 | (c & 0x3F));
  } else {
    put(0xF0 | c >> 18);
    put(0x80 | (c >> 12 & 0x3F));
    put(0x80 | (c >> 6 & 0x3F));
    put(0x80 | (c & 0x3F));
  }
}

std::u16string redacted(std::u16string_view text) {
  std::u16string result;
  result.reserve(text.size());
  while (!text.empty()) {
    const std::u16string_view before = text;
    const u32 c = takeCodePoint(text);
    const auto codePoint = static_cast<UChar32>(c);
    if (u_isalpha(codePoint) != 0) {
      result += u'x';
    } else if (u_isdigit(codePoint) != 0) {
      result += u'9';
    } else {
      result += before.substr(0, before.size() - text.size());
    }
  }
  return result;
}

void appendShown(std::string& target, std::u16string_view text) {
  if (redactsTexts) {
    appendPlain(target, redacted(text));
  } else {
    appendPlain(target, text);
  }
}

std::string shownText(std::u16string_view text) {
  std::string result;
  appendShown(result, text);
  return result;
}

std::string shownText(std::string_view native) { return shownText(fromNative(native).view()); }

std::string counted(i64 number, std::string_view noun) {
  std::string result = std::to_string(number) + " " + std::string(noun);
  if (number != 1) {
    result += 's';
  }
  return result;
}

}  // namespace rvf::inspect
