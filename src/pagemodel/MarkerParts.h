#pragma once

#include <memory>
#include <string_view>
#include <utility>
#include <vector>

#include "pagemodel/DrawPart.h"
#include "pagemodel/FieldVisitor.h"
#include "pagemodel/NameValue.h"
#include "storage/Archive.h"
#include "storage/HyperlinkInfo.h"
#include "text/eString.h"

namespace rvf {

// The parts that mark a place or a stretch of a page: STARTEND, UDLIGNORESTARTEND,
// LAYERIGNORESTARTEND, INSERTERBARCODESTARTEND, MASKEDOBJECTSTARTEND, TAGGEDOBJECTSTARTEND,
// BOOKMARK, LOCSEARCHKEY and SUBSCRIBE.
//
// Payloads: a MarkerInfo; TaggedTexts and then the texts; the title of a BOOKMARK; KeyTexts and
// then both texts of a LOCSEARCHKEY; the SubscribeEntries. All texts are zero-terminated and stored
// one after another; null texts take no room. A zero character inside a text is part of it.

struct MarkerInfo {
  std::unique_ptr<HyperlinkInfo> hyperlink;
  u8 hasHyperlinkFlag = 0;
  u16 nameValueCount = 0;
  std::unique_ptr<NameValues> nameValues;
  std::vector<std::pair<i32, i32>> pairs;
};

struct SubscribeEntry {
  u32 entryValue = 0;
  eString entryName;
  u32 entryId = 0;
};
using SubscribeEntries = std::vector<SubscribeEntry>;

struct TaggedTexts {
  const char16_t* language;  // of the table of language tags
  i32 tagLength;             // characters; 0: no text
  i32 altLength;
  i32 actualLength;
};

struct KeyTexts {
  i32 keyLength;  // characters; 0: no text
  i32 secondLength;
};

/// The language tag of an index; indexes outside the table count as 0, "default".
[[nodiscard]] const char16_t* languageTag(i32 index);

/// The band into which the ids of tagged objects are folded: 0 below 10000, 1 from there to 39999,
/// 2 above. Always 0 in this system.
inline u8 tagBand = 0;
[[nodiscard]] u16 foldedTagId(u16 id, u8 band);

// Empty after releasePart.
[[nodiscard]] const MarkerInfo& markerInfo(const DrawPart& part);
[[nodiscard]] const SubscribeEntries& subscribeEntries(const DrawPart& part);

// Texts in their full length; empty if there is none.
[[nodiscard]] std::u16string_view tagText(const DrawPart& part);
[[nodiscard]] std::u16string_view altText(const DrawPart& part);
[[nodiscard]] std::u16string_view actualText(const DrawPart& part);
[[nodiscard]] std::u16string_view language(const DrawPart& part);
[[nodiscard]] std::u16string_view bookmarkTitle(const DrawPart& part);
[[nodiscard]] std::u16string_view keyText(const DrawPart& part);
[[nodiscard]] std::u16string_view keySecondText(const DrawPart& part);

void readStartEnd(DrawPart& part, eArchive& archive, i32 v);
void visitStartEnd(const DrawPart& part, FieldVisitor& visitor);
void copyStartEnd(DrawPart& target, const DrawPart& source);
void shiftStartEnd(DrawPart& part, i32 dx, i32 dy);
void releaseStartEnd(DrawPart& part);

void readUdlIgnore(DrawPart& part, eArchive& archive, i32 v);
void visitUdlIgnore(const DrawPart& part, FieldVisitor& visitor);
void readLayerIgnore(DrawPart& part, eArchive& archive, i32 v);
void visitLayerIgnore(const DrawPart& part, FieldVisitor& visitor);
void readInserterBarcode(DrawPart& part, eArchive& archive, i32 v);
void visitInserterBarcode(const DrawPart& part, FieldVisitor& visitor);
void readMaskedObject(DrawPart& part, eArchive& archive, i32 v);
void visitMaskedObject(const DrawPart& part, FieldVisitor& visitor);
void readTaggedObject(DrawPart& part, eArchive& archive, i32 v);
void visitTaggedObject(const DrawPart& part, FieldVisitor& visitor);
void readBookmark(DrawPart& part, eArchive& archive, i32 v);
void visitBookmark(const DrawPart& part, FieldVisitor& visitor);
void readLocSearchKey(DrawPart& part, eArchive& archive, i32 v);
void visitLocSearchKey(const DrawPart& part, FieldVisitor& visitor);

void readSubscribe(DrawPart& part, eArchive& archive, i32 v);
void visitSubscribe(const DrawPart& part, FieldVisitor& visitor);
void releaseSubscribe(DrawPart& part);

}  // namespace rvf
