#include "inspect/output/DrawingStyle.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <fstream>
#include <nlohmann/json.hpp>

#include "inspect/model/Trouble.h"
#include "pagemodel/TextParts.h"

namespace rvf::inspect {

namespace {

constexpr i64 kLargestSize = 10000;

/// The size implied by two consecutive runs; 0 if they imply none.
i64 sizeBetween(const TextRun& a, const TextRun& b) {
  const i64 dx = i64{b.x} - a.x;
  const i64 dy = i64{b.y} - a.y;
  if (dy > 0 && dy < kLargestSize) {
    return dy * 4 / 5;  // lines are a quarter higher than their letters
  }
  if (dy == 0 && dx > 0 && a.charCount > 0) {
    return std::min(dx * 2 / a.charCount, kLargestSize);  // letters are half as wide as high
  }
  return 0;
}

u32 byteOf(u32 packed, int index) { return packed >> (8 * index) & 0xFF; }

}  // namespace

std::map<i32, FontStyle> readFonts(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) {
    throw Trouble(path, "the file of fonts cannot be read");
  }
  std::map<i32, FontStyle> fonts;
  try {
    const nlohmann::json entries = nlohmann::json::parse(file);
    for (const auto& [number, entry] : entries.items()) {
      i32 fontId = 0;
      const char* end = number.data() + number.size();
      if (std::from_chars(number.data(), end, fontId).ptr != end) {
        throw Trouble(path, "a font number is not a number");
      }
      fonts[fontId] = {entry.value("family", FontStyle().family),
                       std::clamp(entry.value("size", i64{0}), i64{0}, kLargestSize)};
    }
  } catch (const nlohmann::json::exception&) {
    throw Trouble(path, R"(not a file of fonts such as {"3": {"family": "Serif", "size": 42}})");
  }
  return fonts;
}

std::string svgColour(u32 packed, u8 tint, ColourReading reading) {
  u32 channels[3] = {byteOf(packed, 0), byteOf(packed, 1), byteOf(packed, 2)};
  if (reading == ColourReading::kBgr) {
    std::swap(channels[0], channels[2]);
  } else if (reading == ColourReading::kCmyk) {
    const u32 light = 255 - byteOf(packed, 3);
    for (u32& channel : channels) {
      channel = (255 - channel) * light / 255;
    }
  }
  if (tint > 0 && tint < 100) {
    for (u32& channel : channels) {
      channel = 255 - (255 - channel) * tint / 100;
    }
  }
  char text[16];
  std::snprintf(text, sizeof text, "#%02x%02x%02x", channels[0], channels[1], channels[2]);
  return text;
}

void FontSizes::learn(const DrawList& list) {
  for (const DrawPart& part : list.parts()) {
    if (part.type != PartType::kText) {
      continue;
    }
    const TextRun* before = nullptr;
    for (const TextRun& run : textRuns(part)) {
      const i64 size = before == nullptr ? 0 : sizeBetween(*before, run);
      i64& known = sizes_[part.fields.text.fontId];
      if (size > 0 && (known == 0 || size < known)) {
        known = size;
      }
      before = &run;
    }
  }
}

i64 FontSizes::sizeOf(i32 fontId) const {
  const auto found = sizes_.find(fontId);
  return found == sizes_.end() || found->second == 0 ? kUsualSize : found->second;
}

}  // namespace rvf::inspect
