#include "inspect/output/ImageData.h"

#include <cstring>
#include <string_view>

#include "base/Integers.h"

namespace rvf::inspect {

std::string embeddableType(std::span<const std::byte> data) {
  struct Signature {
    std::string_view bytes;
    const char* type;
  };
  constexpr Signature kSignatures[] = {{"\x89PNG\r\n\x1a\n", "image/png"},
                                       {"\xFF\xD8\xFF", "image/jpeg"},
                                       {"GIF87a", "image/gif"},
                                       {"GIF89a", "image/gif"}};
  for (const Signature& signature : kSignatures) {
    if (data.size() > signature.bytes.size() &&
        std::memcmp(data.data(), signature.bytes.data(), signature.bytes.size()) == 0) {
      return signature.type;
    }
  }
  return "";
}

std::string base64(std::span<const std::byte> data) {
  constexpr std::string_view kDigits =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string text;
  text.reserve((data.size() + 2) / 3 * 4);
  for (std::size_t at = 0; at < data.size(); at += 3) {
    u32 bits = 0;
    for (std::size_t i = 0; i < 3; ++i) {
      bits = bits << 8 | (at + i < data.size() ? static_cast<u32>(data[at + i]) : 0);
    }
    for (std::size_t i = 0; i < 4; ++i) {
      const bool isPadding = at + i > data.size();
      text += isPadding ? '=' : kDigits[bits >> (18 - 6 * i) & 63];
    }
  }
  return text;
}

}  // namespace rvf::inspect
