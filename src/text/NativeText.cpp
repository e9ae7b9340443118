#include "text/NativeText.h"

#include <unicode/utf16.h>
#include <unicode/utf8.h>

#include <cstring>

#include "base/Integers.h"

namespace rvf {

namespace {

// An undecodable byte, 0x80 to 0xFF, is represented by this value plus the byte.
constexpr char16_t kEscapedByteBase = 0xDC00;
constexpr char16_t kFirstEscapedByte = kEscapedByteBase + 0x80;
constexpr char16_t kLastEscapedByte = kEscapedByteBase + 0xFF;

void appendUtf8(std::string& bytes, UChar32 codePoint) {
  char encoded[U8_MAX_LENGTH];
  int length = 0;
  U8_APPEND_UNSAFE(encoded, length, codePoint);
  bytes.append(encoded, static_cast<std::size_t>(length));
}

}  // namespace

eString fromNative(std::string_view bytes) {
  eString text;
  const auto* data = reinterpret_cast<const u8*>(bytes.data());
  const auto size = static_cast<i32>(bytes.size());
  for (i32 i = 0; i < size;) {
    const i32 start = i;
    UChar32 codePoint = 0;
    U8_NEXT(data, i, size, codePoint);
    if (codePoint < 0) {
      i = start + 1;
      text.AppendChar(static_cast<char16_t>(kEscapedByteBase + data[start]));
    } else if (codePoint > 0xFFFF) {
      text.AppendChar(static_cast<char16_t>(U16_LEAD(codePoint)));
      text.AppendChar(static_cast<char16_t>(U16_TRAIL(codePoint)));
    } else {
      text.AppendChar(static_cast<char16_t>(codePoint));
    }
  }
  return text;
}

std::string toNative(std::u16string_view text) {
  std::string bytes;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char16_t c = text[i];
    if (U16_IS_LEAD(c) && i + 1 < text.size() && U16_IS_TRAIL(text[i + 1])) {
      appendUtf8(bytes, U16_GET_SUPPLEMENTARY(c, text[i + 1]));
      ++i;
    } else if (c >= kFirstEscapedByte && c <= kLastEscapedByte) {
      bytes += static_cast<char>(c - kEscapedByteBase);
    } else {
      appendUtf8(bytes, c);
    }
  }
  return bytes;
}

eString systemErrorText(int errorNumber) { return fromNative(std::strerror(errorNumber)); }

}  // namespace rvf
