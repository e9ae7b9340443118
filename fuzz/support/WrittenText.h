#pragma once

#include <pugixml.hpp>
#include <string>

#include "inspect/output/ShownText.h"
#include "support/Fuzz.h"
#include "text/NativeText.h"

namespace rvf::fuzz {

/// Requires that the text is valid UTF-8 without control sequences for a terminal.
inline void requireHarmless(const std::string& text) {
  const eString decoded = fromNative(text);
  for (std::u16string_view left = decoded.view(); !left.empty();) {
    const u32 c = inspect::takeCodePoint(left);
    require(c == '\n' || !inspect::isUnsafe(c), "no control character is written");
    require(c >> 11 != 0x1B, "what is written is UTF-8");
  }
}

/// The text as an XML document; it must also be harmless.
inline pugi::xml_document parsedXml(const std::string& text) {
  requireHarmless(text);
  pugi::xml_document document;
  require(document.load_buffer(text.data(), text.size()), "what is written is XML");
  return document;
}

}  // namespace rvf::fuzz
