#pragma once

#include <gtest/gtest.h>

#include <concepts>
#include <memory>
#include <span>
#include <utility>

#include "pagemodel/AreaParts.h"
#include "pagemodel/DrawListReader.h"
#include "pagemodel/ImageParts.h"
#include "pagemodel/MarkerParts.h"
#include "pagemodel/PartOperations.h"
#include "pagemodel/VectorParts.h"
#include "support/FrozenText.h"
#include "support/LoadedBytes.h"
#include "support/Parts.h"

namespace rvf::test {

inline std::string bytesOf(auto write, const auto&... fields) {
  ByteWriter w;
  write(w, fields...);
  return w.bytes;
}
inline std::string recordOf(const Part& part, int v = kNewestPart, bool wide = true) {
  ByteWriter w(wide);
  writePart(w, part, v);
  return w.bytes;
}

/// Reads a record over what there is; it has to be taken up to its last byte.
template <class Record>
void readWhole(Record& record, void (*read)(Record&, eArchive&), const std::string& bytes,
               bool wide = false) {
  LoadedBytes file(bytes, wide);
  read(record, file.archive);
  EXPECT_FALSE(file.archive.failed());
  EXPECT_EQ(file.archive.GetPosition(), static_cast<i32>(bytes.size()));
}
inline DrawPart readFresh(const Part& part) {
  DrawPart slot;
  readWhole(slot, readDrawPart, recordOf(part), true);
  return slot;
}

/// Values as text. Numbers of more than 16 bits, which mostly are packed, are hexadecimal.
struct Shown {
  template <class... Values>
  static std::string row(std::string name, const Values&... values) {
    return ((name += " " + of(values)), ..., name);
  }
  template <std::integral T>
  static std::string of(T value) {
    const auto number = static_cast<i64>(value);
    if (number > -0x10000 && number < 0x10000) return std::to_string(number);
    std::ostringstream text;
    text << "0x" << std::hex << static_cast<u32>(number);
    return text.str();
  }
  static std::string of(f64 value) { return std::to_string(value); }
  static std::string of(const eString& text) { return of(text.view()); }
  static std::string of(std::u16string_view text) { return quoted(text); }
  template <class T>
  static std::string of(const std::unique_ptr<T>& owned) {
    return owned == nullptr ? "none" : of(*owned);
  }
  template <std::ranges::range T>
  static std::string of(const T& values) {
    std::string text = "(";
    for (const auto& value : values) text += " " + of(value);
    return text + " )";
  }
  static std::string of(const std::pair<i32, i32>& p) { return row(of(p.first), p.second); }
  static std::string of(const ColourValue& c) { return row(of(c.kind), c.value); }
  static std::string of(const NameValue& v) {
    return row(of(v.name), v.value, v.number, v.hasValue);
  }
  static std::string of(const SubscribeEntry& e) {
    return row(of(e.entryName), e.entryId, e.entryValue);
  }
  static std::string of(const HyperlinkInfo& h) {
    return row(of(std::u16string_view(h.text.get(), h.textLength)), h.textCapacity, h.linkValue1,
               h.linkValue2, h.linkValue3, h.firstLabel, h.secondLabel);
  }
  static std::string of(const rvf::Gradient& g) {
    return row(of(g.gradientKind), g.gradientCode, g.originX, g.originY, g.stopTints, g.stopColours,
               g.stopPositions);
  }
  /// What lies in a payload from an offset on: a text, or words and the bytes behind the last one.
  static std::string payload(const DrawPart& part, std::size_t offset = 0) {
    const PayloadBlock& block = part.payload;
    const std::size_t size = block.size() - offset;
    const std::u16string_view units(block.at<char16_t>(offset), size / 2);
    if (size % 2 == 0 && std::ranges::all_of(units, isPlain)) return row("payload", units);
    const std::span words(block.at<u32>(offset), size / 4);
    return row("payload", words, std::span(block.at<u8>(offset + 4 * words.size()), size % 4));
  }
};

inline Rows imageRows(const DrawPart& part) {
  const ImageInfo& i = imageInfo(part);
  return {Shown::row("area", i.left, i.top, i.right, i.bottom),
          Shown::row("flags", i.flagA, i.flagB, i.flagC, i.flagD, i.byteE, i.imageFlag),
          Shown::row("values", i.kindValue, i.valueA, i.valueB, i.valueC, i.valueD, i.valueE,
                     i.valueF, i.valueG, i.reservedA, i.reservedB),
          Shown::row("colours", i.colourA, i.colourB, i.colourC, i.colourD, i.colourE),
          Shown::row("owned", i.wideName != nullptr, i.wideNameLength, i.narrowName != nullptr,
                     i.narrowNameLength, i.nameValueCount, i.nameValues, i.hyperlink),
          Shown::payload(part, sizeof(ImageInfo))};
}

inline Rows payloadRows(const DrawPart& part) {
  // Bytes that a POLY without points left behind are nobody's.
  if (part.type == PartType::kUnknown) return {"payload \"\""};
  if (part.type == PartType::kImage) return imageRows(part);
  if (part.type == PartType::kPoly) {
    const PolyStyle& s = polyStyle(part);
    return {Shown::row("codes", s.shapeCodeA, s.shapeCodeB, s.shapeCodeC, s.shapeCodeD),
            Shown::row("colours", s.noFill, s.fillColour, s.fillTint, s.noOutline, s.lineColour,
                       s.lineTint, s.hasGradient, s.gradient),
            Shown::payload(part, sizeof(PolyStyle))};
  }
  if (part.type == PartType::kStartEnd) {
    const MarkerInfo& i = markerInfo(part);
    return {Shown::row("info", i.hasHyperlinkFlag, i.pairs, i.nameValueCount, i.nameValues),
            Shown::row("link", i.hyperlink)};
  }
  if (part.type == PartType::kSignatureField) {
    const SignatureInfo* i = signatureInfo(part);
    if (i == nullptr) return {"info none"};
    return {Shown::row("info", i->left, i->top, i->right, i->bottom, i->fieldName, i->fieldValue,
                       i->attributes)};
  }
  if (part.type == PartType::kSubscribe && part.fields.subscribe.entries == kSetPointer) {
    return {Shown::row("entries", subscribeEntries(part))};
  }
  if (part.type == PartType::kTaggedObjectStartEnd) {
    return {Shown::row("language", std::u16string_view(taggedTexts(part).language)),
            Shown::row("texts", tagText(part), altText(part), actualText(part))};
  }
  if (part.type == PartType::kLocSearchKey) {
    return {Shown::row("texts", keyText(part), keySecondText(part))};
  }
  return {Shown::payload(part)};
}

/// All that a part holds. Words that are set pointers are a "*".
inline Rows rowsOf(const DrawPart& part) {
  const PartWords words = partWords(part);
  std::string line = "words";
  for (std::size_t i = 0; i < kFieldWords; ++i) {
    line += " " + (words.isSetPointer(i) ? "*" : Shown::of(words.words[i]));
  }
  Rows rows = payloadRows(part);
  const int type = static_cast<int>(part.type);
  rows.push_back(
      Shown::row("type, pool, extra, owner", type, part.poolKind, part.extraId, part.ownerTag));
  rows.push_back(line);
  return rows;
}

}  // namespace rvf::test
