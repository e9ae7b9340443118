#include "compare/CompareTextParts.h"

#include "base/Wrapping.h"
#include "compare/PartBytes.h"
#include "pagemodel/TextParts.h"

namespace rvf {

// TEXT

namespace {

// A quick test that finds most equal texts. False means unknown, since some of the bytes are
// irrelevant.
bool sameInAllBytes(const DrawPart& left, const DrawPart& right) {
  const PayloadBlock& a = left.payload;
  const PayloadBlock& b = right.payload;
  return sameBytes(std::as_bytes(std::span(&left.fields, 1)),
                   std::as_bytes(std::span(&right.fields, 1))) &&
         sameBytes(std::span(a.data(), a.size()), std::span(b.data(), b.size()));
}

bool sameCharacters(const DrawPart& left, const DrawPart& right) {
  return sameBytes(textCharacters(left), textCharacters(right));
}

bool sameRuns(const DrawPart& left, const DrawPart& right) {
  return sameBytes(textRuns(left), textRuns(right));
}

// Runs that differ in anything but their position are within every tolerance.
bool anyRunMoved(std::span<const TextRun> left, std::span<const TextRun> right, i32 tolerance) {
  for (std::size_t i = 0; i < left.size(); ++i) {
    if (std::memcmp(&left[i], &right[i], sizeof(TextRun)) == 0) {
      continue;
    }
    if (exceeds(left[i].x, right[i].x, tolerance) || exceeds(left[i].y, right[i].y, tolerance)) {
      return true;
    }
  }
  return false;
}

}  // namespace

bool equalTexts(const DrawPart& left, const DrawPart& right) {
  if (sameInAllBytes(left, right)) {
    return true;
  }
  const TextFields& a = left.fields.text;
  const TextFields& b = right.fields.text;
  return a.fontId == b.fontId && a.rotation == b.rotation && a.textFlags == b.textFlags &&
         a.colour == b.colour && a.tint == b.tint && a.fontExtra == b.fontExtra &&
         a.fontVariant == b.fontVariant && a.runCount == b.runCount &&
         a.textLength == b.textLength && sameRuns(left, right) && sameCharacters(left, right);
}

DiffFlags classifyTexts(const DrawPart& left, const DrawPart& right, const Tolerances& tolerances) {
  const TextFields& a = left.fields.text;
  const TextFields& b = right.fields.text;
  DiffFlags bits = 0;
  if (a.fontId != b.fontId || a.fontExtra != b.fontExtra) {
    bits |= diff::kFonts;
  }
  if (a.rotation != b.rotation || a.fontVariant != b.fontVariant) {
    bits |= diff::kRotation;
  }
  if (a.colour != b.colour || a.tint != b.tint) {
    bits |= diff::kColor;
  }
  if (a.textLength != b.textLength || !sameCharacters(left, right) || a.runCount != b.runCount) {
    return bits | diff::kText | diff::kContent;
  }
  if (anyRunMoved(textRuns(left), textRuns(right), tolerances.positionTolerance)) {
    return bits | diff::kText | diff::kPosition;
  }
  return bits;
}

void addTextToKey(MatchKey& key, const DrawPart& part, const Tolerances& tolerances) {
  const TextFields& fields = part.fields.text;
  const std::span<const char16_t> characters = textCharacters(part);
  const std::span<const TextRun> runs = textRuns(part);
  key.addAll(fields.fontId, fields.fontExtra, fields.rotation, fields.fontVariant, fields.colour,
             fields.tint, fields.runCount, fields.textLength);
  key.addBytes(characters.data(), characters.size_bytes());
  if (tolerances.positionTolerance < 0) {
    // Nothing is within tolerance, but equal runs match.
    key.addBytes(runs.data(), runs.size_bytes());
    return;
  }
  for (const TextRun& run : runs) {
    key.addPlace(run.x, run.y, tolerances);
  }
}

// TEXTPROP

namespace {

// propKind, propValue, propExtra, lengthA, lengthB, lengthC with lengthD, propTag.
constexpr u8 kTextPropWords = 0b0111'1111;
constexpr i32 kKindWithLengthC = 1;

// The bytes at the place where a TEXTPROP has its characters. Of the other types, only TEXT can
// have any here: the rest have a set pointer among the compared words.
std::span<const std::byte> payloadBytes(const DrawPart& part) {
  if (part.type != PartType::kTextProp && part.type != PartType::kText) {
    return {};
  }
  return {part.payload.data(), part.payload.size()};
}

// Quirk that stays: the lengths count characters of two bytes, but only that many bytes are
// compared. Existing results depend on this.
i32 comparedLength(const TextPropFields& fields) {
  const i32 lengthC = fields.propKind == kKindWithLengthC ? fields.lengthC : 0;
  return wrappingSum(wrappingSum(fields.lengthA, fields.lengthB), lengthC);
}

}  // namespace

bool equalTextProps(const DrawPart& left, const DrawPart& right) {
  if (!sameWords(left, right, kTextPropWords)) {
    return false;
  }
  const i32 length = comparedLength(right.fields.textProp);
  if (length <= 0) {
    return true;
  }
  const auto size = static_cast<std::size_t>(length);
  const std::span<const std::byte> a = payloadBytes(left);
  const std::span<const std::byte> b = payloadBytes(right);
  return a.size() >= size && b.size() >= size && sameBytes(a.first(size), b.first(size));
}

// Quirk that stays: the type test is the reverse of all others. Two TEXTPROP parts that differ give
// only Content; a part of another type that is read as one gives Text. Existing results depend on
// this.
DiffFlags classifyTextProps(const DrawPart& left, const DrawPart&, const Tolerances&) {
  return left.type == PartType::kTextProp ? diff::kContent : diff::kText;
}

void addTextPropWordsToKey(MatchKey& key, const DrawPart& part) {
  const PartWords words = partWords(part);
  if ((words.setPointers & kTextPropWords) != 0) {
    key.exclude();
    return;
  }
  for (std::size_t i = 0; i < kFieldWords; ++i) {
    if ((kTextPropWords >> i & 1) != 0) {
      key.add(words.words[i]);
    }
  }
  TextPropFields fields{};
  static_assert(sizeof(fields) <= sizeof(words.words));
  std::memcpy(&fields, words.words.data(), sizeof(fields));
  const i32 length = comparedLength(fields);
  const std::span<const std::byte> bytes = payloadBytes(part);
  if (length > 0 && bytes.size() < static_cast<std::size_t>(length)) {
    key.exclude();
  } else if (length > 0) {
    key.addBytes(bytes.data(), static_cast<std::size_t>(length));
  }
}

}  // namespace rvf
