#include "pagemodel/MarkerParts.h"

#include <array>
#include <new>

#include "messages/MessageReporter.h"
#include "pagemodel/PartVersions.h"
#include "pagemodel/PayloadText.h"
#include "pagemodel/Shift.h"
#include "storage/RecordFrame.h"

namespace rvf {

// STARTEND

const MarkerInfo& markerInfo(const DrawPart& part) {
  static const MarkerInfo kNone;
  return part.fields.startEnd.info == kSetPointer ? *part.payload.at<MarkerInfo>(0) : kNone;
}

namespace {

MarkerInfo& makeMarkerInfo(DrawPart& part) {
  part.payload.resize(sizeof(MarkerInfo));
  auto* info = new (part.payload.data()) MarkerInfo();
  part.fields.startEnd.info = kSetPointer;
  return *info;
}

std::unique_ptr<HyperlinkInfo> readLink(eArchive& archive, i32 v) {
  auto link = std::make_unique<HyperlinkInfo>();
  if (v < part_version::kTaggedLinks) {
    link->readOldForm(archive, v);
  } else {
    link->read(archive);
  }
  return link;
}

// The count has 32 bits on disk and 16 in the part: surplus entries are skipped. Quirk that stays:
// the warning gives a fixed number of ignored entries, as existing reports show it.
void readMarkerNameValues(MarkerInfo& info, eArchive& archive) {
  constexpr i32 kMostEntries = 65535;
  constexpr i32 kIgnoredEntries = 0x7FFF0000;
  const i32 stored = archive.checkedCount(archive.ReadI32(), kSmallestNameValue);
  if (stored > kMostEntries) {
    eString warning;
    warning.Format(u"You have more than %d metadata objects saved. The last %d will be ignored",
                   kMostEntries, kIgnoredEntries);
    Report(MessageNumber::kTooManyNameValues, warning);
  }
  info.nameValueCount = static_cast<u16>(stored);
  info.nameValues = readNameValues(archive, stored, info.nameValueCount, NameValueForm::kPlain);
}

u8 readHyperlinkFlag(eArchive& archive, i32 v) {
  using namespace part_version;
  if (v < kHyperlinkFlag) {
    return 0;
  }
  return v < kByteHyperlinkFlag ? u8{archive.ReadI32() != 0} : archive.ReadU8();
}

void readPairs(MarkerInfo& info, eArchive& archive) {
  constexpr i32 kPairSize = 2 * sizeof(i32);
  const i32 count = archive.checkedCount(archive.ReadI32(), kPairSize);
  for (i32 i = 0; i < count && !archive.failed(); ++i) {
    const i32 first = archive.ReadI32();
    const i32 second = archive.ReadI32();
    info.pairs.emplace_back(first, second);
  }
}

}  // namespace

void readStartEnd(DrawPart& part, eArchive& archive, i32 v) {
  using namespace part_version;
  StartEndFields& fields = part.fields.startEnd;
  MarkerInfo& info = makeMarkerInfo(part);
  fields.markerKind = v < kMarkerLink ? readLow8(archive) : archive.ReadU8();
  fields.markerId = v < kMarkerLink ? readLow16(archive) : archive.ReadU16();
  fields.left = archive.ReadI32();
  fields.top = archive.ReadI32();
  fields.right = archive.ReadI32();
  fields.bottom = archive.ReadI32();
  if (v >= kMarkerLink && archive.ReadI32() != 0) {
    info.hyperlink = readLink(archive, v);
  }
  if (v >= kNameValues) {
    readMarkerNameValues(info, archive);
  }
  info.hasHyperlinkFlag = readHyperlinkFlag(archive, v);
  if (v >= kMarkerPairs) {
    readPairs(info, archive);
  }
}

void copyStartEnd(DrawPart& target, const DrawPart& source) {
  if (source.fields.startEnd.info != kSetPointer) {
    target.fields = source.fields;
    return;
  }
  MarkerInfo& info = makeMarkerInfo(target);
  target.fields = source.fields;
  const MarkerInfo& from = markerInfo(source);
  if (from.hyperlink != nullptr) {
    info.hyperlink = std::make_unique<HyperlinkInfo>(*from.hyperlink);
  }
  info.hasHyperlinkFlag = from.hasHyperlinkFlag;
  info.nameValueCount = from.nameValueCount;
  info.nameValues = copyOf(from.nameValues);
  info.pairs = from.pairs;
}

void shiftStartEnd(DrawPart& part, i32 dx, i32 dy) { shiftBox(part.fields.startEnd, dx, dy); }

void releaseStartEnd(DrawPart& part) {
  if (part.fields.startEnd.info == kSetPointer) {
    part.payload.at<MarkerInfo>(0)->~MarkerInfo();
    part.fields.startEnd.info = kNullPointer;
  }
}

// The plain markers

void readUdlIgnore(DrawPart& part, eArchive& archive, i32 v) {
  readLayerIgnore(part, archive, v);
  part.fields.ignoreMarker.markerFlag = v >= part_version::kMarkerFlag ? archive.ReadU8() : u8{0};
}

void readLayerIgnore(DrawPart& part, eArchive& archive, i32) {
  IgnoreMarkerFields& fields = part.fields.ignoreMarker;
  fields.markerValue = archive.ReadI32();
  fields.markerKind = archive.ReadI32();
}

void readInserterBarcode(DrawPart& part, eArchive& archive, i32 v) {
  readMaskedObject(part, archive, v);
  part.fields.stateMarker.markerFlag = archive.ReadU8();
}

void readMaskedObject(DrawPart& part, eArchive& archive, i32) {
  StateMarkerFields& fields = part.fields.stateMarker;
  fields.markerValue = archive.ReadI32();
  fields.markerState = archive.ReadU8();
}

// TAGGEDOBJECTSTARTEND

const char16_t* languageTag(i32 index) {
  // Frozen: files store the index.
  static constexpr std::array kTags = {
      u"default", u"ca",    u"zh-CN", u"zh-TW", u"zh-HK", u"cs", u"da",  u"nl", u"en-US",
      u"en-AU",   u"en-GB", u"fi",    u"fr",    u"fr-CA", u"de", u"hu",  u"it", u"nb",
      u"nn",      u"pl",    u"pt",    u"pt-BR", u"ru",    u"es", u"sv",  u"ja", u"ar",
      u"hy",      u"zh-SG", u"fa",    u"hmn",   u"km",    u"ko", u"nv",  u"pa", u"tl",
      u"vi",      u"am",    u"bn",    u"ceb",   u"cpf",   u"gu", u"haw", u"hi", u"ig",
      u"ilo",     u"kro",   u"lo",    u"mh",    u"ne",    u"om", u"pon", u"ro", u"sm",
      u"th",      u"to",    u"tr",    u"uk",    u"ur",    u"yo", u"no"};
  static_assert(kTags.size() == 61);
  const bool isKnown = index >= 0 && index < static_cast<i32>(kTags.size());
  return kTags[isKnown ? static_cast<std::size_t>(index) : 0];
}

u16 foldedTagId(u16 id, u8 band) {
  constexpr u16 kMiddleStart = 10000;
  constexpr u16 kTopStart = 40000;
  constexpr u16 kStarts[] = {0, kMiddleStart, kTopStart};
  constexpr u8 kBands = 3;
  if (band >= kBands) {
    return id;
  }
  u16 start = kStarts[0];
  if (id >= kTopStart) {
    start = kTopStart;
  } else if (id >= kMiddleStart) {
    start = kMiddleStart;
  }
  return static_cast<u16>(id - start + kStarts[band]);
}

namespace {

/// A text of `length` characters after the first `before` bytes of a payload.
std::u16string_view textAt(const DrawPart& part, std::size_t before, i32 length) {
  if (length == 0) {
    return {};
  }
  return {part.payload.at<char16_t>(before), static_cast<std::size_t>(length)};
}

/// The head that precedes the texts; an empty one if the part has no payload.
TaggedTexts taggedTexts(const DrawPart& part) {
  const bool isThere = part.fields.taggedObject.language == kSetPointer;
  return isThere ? *part.payload.at<TaggedTexts>(0) : TaggedTexts{u"", 0, 0, 0};
}

KeyTexts keyTexts(const DrawPart& part) {
  return part.payload.size() == 0 ? KeyTexts{} : *part.payload.at<KeyTexts>(0);
}

/// The size in bytes of a text and its terminator.
std::size_t textSize(i32 length) {
  return length == 0 ? 0 : (static_cast<std::size_t>(length) + 1) * sizeof(char16_t);
}

}  // namespace

std::u16string_view language(const DrawPart& part) { return taggedTexts(part).language; }

std::u16string_view tagText(const DrawPart& part) {
  return textAt(part, sizeof(TaggedTexts), taggedTexts(part).tagLength);
}

std::u16string_view altText(const DrawPart& part) {
  const TaggedTexts texts = taggedTexts(part);
  return textAt(part, sizeof(TaggedTexts) + textSize(texts.tagLength), texts.altLength);
}

std::u16string_view actualText(const DrawPart& part) {
  const TaggedTexts texts = taggedTexts(part);
  const std::size_t before = textSize(texts.tagLength) + textSize(texts.altLength);
  return textAt(part, sizeof(TaggedTexts) + before, texts.actualLength);
}

void readTaggedObject(DrawPart& part, eArchive& archive, i32 v) {
  using namespace part_version;
  TaggedObjectFields& fields = part.fields.taggedObject;
  part.payload.resize(sizeof(TaggedTexts));
  TaggedTexts texts{};
  fields.markerState = archive.ReadU8();
  fields.tagKind = readLow8(archive);
  fields.tagId = foldedTagId(archive.ReadU16(), tagBand);
  texts.tagLength = appendPartText(archive, archive.ReadI32(), part.payload);
  texts.altLength = appendPartText(archive, archive.ReadI32(), part.payload);
  texts.language = languageTag(v >= kLanguage ? archive.ReadI32() : 0);
  if (v >= kActualText) {
    texts.actualLength = appendPartText(archive, archive.ReadI32(), part.payload);
  }
  *part.payload.at<TaggedTexts>(0) = texts;
  fields.tagText = pointerWord(texts.tagLength > 0);
  fields.altText = pointerWord(texts.altLength > 0);
  fields.actualText = pointerWord(texts.actualLength > 0);
  fields.language = kSetPointer;
}

// BOOKMARK and LOCSEARCHKEY

std::u16string_view bookmarkTitle(const DrawPart& part) {
  const bool hasTitle = part.fields.bookmark.title == kSetPointer;
  const auto length = static_cast<i32>(part.payload.size() / sizeof(char16_t)) - 1;
  return textAt(part, 0, hasTitle ? length : 0);
}

std::u16string_view keyText(const DrawPart& part) {
  return textAt(part, sizeof(KeyTexts), keyTexts(part).keyLength);
}

std::u16string_view keySecondText(const DrawPart& part) {
  const KeyTexts texts = keyTexts(part);
  return textAt(part, sizeof(KeyTexts) + textSize(texts.keyLength), texts.secondLength);
}

void readBookmark(DrawPart& part, eArchive& archive, i32) {
  BookmarkFields& fields = part.fields.bookmark;
  part.payload.clear();
  fields.bookmarkId = archive.ReadI32();
  fields.bookmarkLevel = archive.ReadI32();
  fields.title = pointerWord(appendPartText(archive, archive.ReadI32(), part.payload) > 0);
}

void readLocSearchKey(DrawPart& part, eArchive& archive, i32 v) {
  LocSearchKeyFields& fields = part.fields.locSearchKey;
  part.payload.resize(sizeof(KeyTexts));
  KeyTexts texts{};
  fields.keyValue = archive.ReadI32();
  texts.keyLength = appendWideText(archive, archive.ReadI32(), part.payload);
  fields.keyFlagA = archive.ReadU8();
  if (v >= part_version::kSecondKeyText) {
    texts.secondLength = appendWideText(archive, archive.ReadI32(), part.payload);
    fields.keyFlagB = archive.ReadU8();
  }
  *part.payload.at<KeyTexts>(0) = texts;
  fields.keyText = pointerWord(texts.keyLength > 0);
  fields.keySecondText = pointerWord(texts.secondLength > 0);
}

// SUBSCRIBE

const SubscribeEntries& subscribeEntries(const DrawPart& part) {
  static const SubscribeEntries kNone;
  const bool areThere = part.fields.subscribe.entries == kSetPointer;
  return areThere ? *part.payload.at<SubscribeEntries>(0) : kNone;
}

namespace {

constexpr i32 kEntryBaseTag = 100;
constexpr i32 kSmallestEntry = 9;  // id, value, empty name

// The old form of an entry starts with its id, which is below any version number, and has no end
// mark.
SubscribeEntry readSubscribeEntry(eArchive& archive) {
  eRecordFrame frame(kEntryBaseTag);
  frame.BeginRecord();
  frame.fileTag = kEntryBaseTag;
  SubscribeEntry entry;
  const i32 first = archive.ReadI32();
  if (first <= kEntryBaseTag) {
    entry.entryId = static_cast<u32>(first);
  } else {
    frame.fileTag = first;
    entry.entryId = archive.ReadU32();
  }
  entry.entryValue = archive.ReadU32();
  archive.ReadString(entry.entryName);
  frame.EndRecord(archive);
  return entry;
}

}  // namespace

void readSubscribe(DrawPart& part, eArchive& archive, i32) {
  SubscribeFields& fields = part.fields.subscribe;
  fields.subscriberId = archive.ReadI32();
  const i32 count = archive.checkedCount(archive.ReadI32(), kSmallestEntry);
  if (count == 0) {
    return;
  }
  part.payload.resize(sizeof(SubscribeEntries));
  auto* entries = new (part.payload.data()) SubscribeEntries();
  fields.entries = kSetPointer;
  for (i32 i = 0; i < count && !archive.failed(); ++i) {
    entries->push_back(readSubscribeEntry(archive));
  }
}

void releaseSubscribe(DrawPart& part) {
  if (part.fields.subscribe.entries == kSetPointer) {
    part.payload.at<SubscribeEntries>(0)->~SubscribeEntries();
    part.fields.subscribe.entries = kNullPointer;
  }
}

}  // namespace rvf
