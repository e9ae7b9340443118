#include "capture/PageNames.h"

#include <algorithm>
#include <cstring>

namespace rvf {

namespace {

// The layout of a name in memory: its length and form, then the characters. A text has only one
// form, so equal names have equal bytes.
// one byte    2 * length + isWide, for lengths below 127; otherwise 255, followed by
//   four bytes  the same value

constexpr std::size_t kShortHead = 1;
constexpr std::size_t kLongHead = kShortHead + sizeof(u32);
constexpr std::size_t kShortLengths = 127;
constexpr u8 kLongMark = 255;
constexpr std::size_t kWideCharacter = sizeof(char16_t);

struct StoredName {
  explicit StoredName(const std::byte* start) {
    u32 form = static_cast<u32>(*start);
    characters = start + kShortHead;
    if (form == kLongMark) {
      std::memcpy(&form, characters, sizeof(form));
      characters = start + kLongHead;
    }
    isWide = (form & 1) != 0;
    length = form >> 1;
    totalSize =
        static_cast<std::size_t>(characters - start) + length * (isWide ? kWideCharacter : 1);
  }

  const std::byte* characters;
  bool isWide;
  std::size_t length;
  std::size_t totalSize;
};

enum class Width : u8 { kNarrow, kWide };

/// Allocates a name and writes its head. Returns where the characters go.
std::byte* makeName(IndexMemory& memory, std::size_t length, Width width, std::byte*& start) {
  const bool isWide = width == Width::kWide;
  const bool isShort = length < kShortLengths;
  const std::size_t headSize = isShort ? kShortHead : kLongHead;
  start = static_cast<std::byte*>(
      memory.allocate(headSize + length * (isWide ? kWideCharacter : 1), 1));
  const u32 form = static_cast<u32>(length) << 1 | (isWide ? 1U : 0U);
  *start = static_cast<std::byte>(isShort ? form : kLongMark);
  if (!isShort) {
    std::memcpy(start + kShortHead, &form, sizeof(form));
  }
  return start + headSize;
}

char16_t unitAt(const std::byte* units, std::size_t index) {
  char16_t unit = 0;
  std::memcpy(&unit, units + index * kWideCharacter, kWideCharacter);
  return unit;
}

// After the marker of wide text, the count takes one byte.
constexpr std::byte kWideMarker[] = {std::byte{0xFF}, std::byte{0xFE}, std::byte{0xFF}};
constexpr std::size_t kCountByte = 1;
constexpr std::size_t kLongerCount = 255;

}  // namespace

eString PageName::text() const {
  eString text;
  if (stored_ == nullptr) {
    return text;
  }
  const StoredName name(stored_);
  char16_t* out = text.getBufferSetLength(static_cast<i32>(name.length));
  if (name.isWide) {
    std::memcpy(out, name.characters, name.length * kWideCharacter);
  } else {
    std::transform(name.characters, name.characters + name.length, out,
                   [](std::byte character) { return static_cast<char16_t>(character); });
  }
  return text;
}

bool operator==(const PageName& a, const PageName& b) {
  if (a.stored_ == nullptr || b.stored_ == nullptr || *a.stored_ != *b.stored_) {
    return a.stored_ == b.stored_;
  }
  const std::size_t size = StoredName(a.stored_).totalSize;
  return StoredName(b.stored_).totalSize == size && std::memcmp(a.stored_, b.stored_, size) == 0;
}

PageName PageNames::keep(std::u16string_view text) {
  return keepWide(std::as_bytes(std::span(text)));
}

PageName PageNames::keepWide(std::span<const std::byte> units) {
  constexpr char16_t kLastNarrow = 0xFF;
  std::size_t length = 0;
  char16_t allBits = 0;
  for (const std::size_t most = units.size() / kWideCharacter; length < most; ++length) {
    const char16_t unit = unitAt(units.data(), length);
    if (unit == 0) {
      break;
    }
    allBits |= unit;
  }
  if (length == 0) {
    return {};
  }
  std::byte* start = nullptr;
  const bool isWide = allBits > kLastNarrow;
  std::byte* const characters =
      makeName(memory_, length, isWide ? Width::kWide : Width::kNarrow, start);
  if (isWide) {
    std::memcpy(characters, units.data(), length * kWideCharacter);
  } else {
    for (std::size_t i = 0; i < length; ++i) {
      characters[i] = units[i * kWideCharacter];
    }
  }
  return PageName(start);
}

PageName PageNames::keepNarrow(std::span<const std::byte> bytes) {
  const auto length =
      static_cast<std::size_t>(std::ranges::find(bytes, std::byte{0}) - bytes.begin());
  if (length == 0) {
    return {};
  }
  std::byte* start = nullptr;
  std::memcpy(makeName(memory_, length, Width::kNarrow, start), bytes.data(), length);
  return PageName(start);
}

PageName PageNames::read(eArchive& archive, CharacterOrder order) {
  // Nearly all names are short and entirely in the buffer, so they can be copied directly.
  const std::span<const std::byte> held = archive.held();
  const bool isMarked = held.size() > std::size(kWideMarker) &&
                        std::equal(std::begin(kWideMarker), std::end(kWideMarker), held.begin());
  const std::size_t front = (isMarked ? std::size(kWideMarker) : 0) + kCountByte;
  const bool isUsual = order == CharacterOrder::kNative && (isMarked || !archive.wideStrings());
  if (isUsual && held.size() >= front) {
    const auto count = static_cast<std::size_t>(held[front - kCountByte]);
    const std::size_t size = isMarked ? count * kWideCharacter : count;
    if (count < kLongerCount && held.size() - front >= size) {
      const std::span<const std::byte> text = held.subspan(front, size);
      archive.advanceTo(text.data() + size);
      return isMarked ? keepWide(text) : keepNarrow(text);
    }
  }
  archive.ReadString(scratch_);
  if (archive.failed()) {
    return {};
  }
  if (order == CharacterOrder::kSwapped) {
    swapCharacterBytes(scratch_);
  }
  return keep(scratch_.view());
}

void swapCharacterBytes(eString& text) {
  char16_t* chars = text.GetBuffer(0);
  for (i32 i = 0; i < text.length(); ++i) {
    chars[i] = static_cast<char16_t>(chars[i] << 8 | chars[i] >> 8);
  }
}

}  // namespace rvf
