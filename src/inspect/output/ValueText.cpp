#include "inspect/output/ValueText.h"

#include <unicode/uchar.h>

#include <algorithm>
#include <cstdio>
#include <vector>

#include "inspect/model/Digest.h"
#include "inspect/model/SequencePairing.h"
#include "inspect/output/ShownText.h"

namespace rvf::inspect {

namespace {

std::string digestText(u64 digest) {
  char text[24];
  std::snprintf(text, sizeof text, "%016llx", static_cast<unsigned long long>(digest));
  return text;
}

std::string floatingText(f64 value) {
  char text[40];
  std::snprintf(text, sizeof text, "%.17g", value);
  return text;
}

// Most texts are ASCII, for which the full tables are too slow.
bool isAsciiLetter(char16_t c) { return (c | 0x20) >= u'a' && (c | 0x20) <= u'z'; }

bool isLetter(char16_t c) { return c < 0x80 ? isAsciiLetter(c) : u_isalpha(c) != 0; }

bool isPunctuation(char16_t c) { return c != u' ' && !isAsciiLetter(c) && u_ispunct(c) != 0; }

/// Whether a word ends between two characters. Runs follow each other without a blank, so a full
/// stop before a letter also ends a word.
bool isBoundary(char16_t before, char16_t behind) {
  return (before == u' ') != (behind == u' ') || (isPunctuation(before) && isLetter(behind));
}

/// A text cut into words and what is between them.
std::vector<std::u16string_view> tokensOf(std::u16string_view text) {
  std::vector<std::u16string_view> tokens;
  while (!text.empty()) {
    std::size_t size = 1;
    while (size < text.size() && !isBoundary(text[size - 1], text[size])) {
      size += 1;
    }
    tokens.push_back(text.substr(0, size));
    text.remove_prefix(size);
  }
  return tokens;
}

std::vector<u64> digestsOf(const std::vector<std::u16string_view>& tokens) {
  std::vector<u64> digests;
  for (const std::u16string_view token : tokens) {
    Digest digest;
    digest.addText(token);
    digests.push_back(digest.value());
  }
  return digests;
}

/// How many characters two texts share at their start, up to the last common word boundary.
std::size_t sameAtStart(std::u16string_view a, std::u16string_view b) {
  const auto differing = std::ranges::mismatch(a, b).in1;
  auto size = static_cast<std::size_t>(differing - a.begin());
  size -= size > 0 ? 1 : 0;
  while (size > 0 && !isBoundary(a[size - 1], a[size])) {
    size -= 1;
  }
  return size;
}

/// The same at their end.
std::size_t sameAtEnd(std::u16string_view a, std::u16string_view b) {
  const std::size_t shorter = std::min(a.size(), b.size());
  std::size_t size = 0;
  while (size < shorter && a[a.size() - 1 - size] == b[b.size() - 1 - size]) {
    size += 1;
  }
  size -= size > 0 ? 1 : 0;
  while (size > 0 && !isBoundary(a[a.size() - size - 1], a[a.size() - size])) {
    size -= 1;
  }
  return size;
}

class MarkedText {
 public:
  MarkedText(bool isColoured, std::size_t expectedSize) : isColoured_(isColoured) {
    text_.reserve(expectedSize);
  }

  void same(std::u16string_view token) { appendShown(text_, token); }
  void removed(const std::vector<std::u16string_view>& tokens, i32 begin, i32 end) {
    mark(tokens, begin, end, "\x1b[31m", "[-", "-]");
  }
  void added(const std::vector<std::u16string_view>& tokens, i32 begin, i32 end) {
    mark(tokens, begin, end, "\x1b[32m", "{+", "+}");
  }
  [[nodiscard]] std::string take() { return std::move(text_); }

 private:
  void mark(const std::vector<std::u16string_view>& tokens, i32 begin, i32 end, const char* colour,
            const char* open, const char* close) {
    if (begin == end) {
      return;
    }
    text_ += isColoured_ ? colour : "";
    text_ += open;
    for (i32 t = begin; t < end; ++t) {
      appendShown(text_, tokens[static_cast<std::size_t>(t)]);
    }
    text_ += close;
    text_ += isColoured_ ? "\x1b[m" : "";
  }

  bool isColoured_;
  std::string text_;
};

}  // namespace

std::string colourDigits(u32 packed) {
  constexpr char kDigits[] = "0123456789abcdef";
  std::string text;
  for (int byte = 0; byte < 4; ++byte) {
    text += kDigits[packed >> (8 * byte + 4) & 15];
    text += kDigits[packed >> (8 * byte) & 15];
  }
  return text;
}

std::string valueText(const FieldValue& value) {
  if (const auto* number = std::get_if<i64>(&value)) {
    return std::to_string(*number);
  }
  if (const auto* floating = std::get_if<f64>(&value)) {
    return floatingText(*floating);
  }
  if (const auto* colour = std::get_if<Colour>(&value)) {
    const std::string digits = colourDigits(colour->packed);
    return "#" + (digits.ends_with("00") ? digits.substr(0, 6) : digits);
  }
  if (const auto* text = std::get_if<std::u16string>(&value)) {
    return "\"" + shownText(*text) + "\"";
  }
  if (const auto* bytes = std::get_if<ByteDigest>(&value)) {
    // A digest confirms a guess at what the bytes are.
    const std::string length = std::to_string(bytes->length) + " bytes";
    return redactsTexts ? length : length + " " + digestText(bytes->shown);
  }
  return "nothing";
}

std::string changeText(const FieldChange& change, bool isColoured) {
  const auto* fromText = std::get_if<std::u16string>(&change.from);
  const auto* toText = std::get_if<std::u16string>(&change.to);
  if (fromText != nullptr && toText != nullptr) {
    return "\"" + markedWords(*fromText, *toText, isColoured) + "\"";
  }
  std::string text = valueText(change.from) + " -> " + valueText(change.to);
  const auto* from = std::get_if<i64>(&change.from);
  const auto* to = std::get_if<i64>(&change.to);
  if (from != nullptr && to != nullptr) {
    text += (*to > *from ? " (+" : " (") + std::to_string(*to - *from) + ")";
  }
  return text;
}

void addValue(JsonLine& json, const FieldValue& value) {
  if (const auto* number = std::get_if<i64>(&value)) {
    json.value(*number);
  } else if (const auto* floating = std::get_if<f64>(&value)) {
    json.value(std::string_view(floatingText(*floating)));
  } else if (const auto* colour = std::get_if<Colour>(&value)) {
    json.value(std::string_view("#" + colourDigits(colour->packed)));
  } else if (const auto* text = std::get_if<std::u16string>(&value)) {
    json.value(std::u16string_view(*text));
  } else if (const auto* bytes = std::get_if<ByteDigest>(&value)) {
    json.open().field("length", bytes->length);
    if (!redactsTexts) {
      json.field("digest", std::string_view(digestText(bytes->shown)));
    }
    json.close();
  } else {
    json.null();
  }
}

std::string markedWords(std::u16string_view from, std::u16string_view to, bool isColoured) {
  // Most of a text usually stays the same.
  const std::size_t start = sameAtStart(from, to);
  const std::u16string_view front = from.substr(0, start);
  from.remove_prefix(start);
  to.remove_prefix(start);
  const std::size_t end = sameAtEnd(from, to);
  const std::u16string_view back = from.substr(from.size() - end);
  from.remove_suffix(end);
  to.remove_suffix(end);
  const std::vector<std::u16string_view> a = tokensOf(from);
  const std::vector<std::u16string_view> b = tokensOf(to);
  std::vector<IndexPair> same = pairInSequence(digestsOf(a), digestsOf(b));
  same.emplace_back(static_cast<i32>(a.size()), static_cast<i32>(b.size()));
  constexpr std::size_t kMarks = 32;
  MarkedText text(isColoured, front.size() + from.size() + to.size() + back.size() + kMarks);
  text.same(front);
  i32 i = 0, j = 0;
  for (const auto& [nextI, nextJ] : same) {
    text.removed(a, i, nextI);
    text.added(b, j, nextJ);
    if (static_cast<std::size_t>(nextI) < a.size()) {
      text.same(a[static_cast<std::size_t>(nextI)]);
    }
    i = nextI + 1;
    j = nextJ + 1;
  }
  text.same(back);
  return text.take();
}

}  // namespace rvf::inspect
