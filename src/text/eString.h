#pragma once

#include <compare>
#include <cstddef>
#include <span>
#include <string_view>

#include "base/Integers.h"
#include "text/Format.h"

namespace rvf {

/// Reference-counted, copy-on-write string of 16-bit characters, one pointer wide.
///
/// The pointer refers to the first character of a buffer. Its header (reference count, length,
/// capacity) directly precedes the characters in the same allocation, so a handle can be read as an
/// ordinary zero-terminated text and takes no more room in a record than a pointer. The pointer is
/// never null: an empty string refers to a shared static buffer that is never counted or freed.
///
/// Counts are not atomic: all copies of a string stay on one thread. Indexes are not checked unless
/// an operation says so. Running out of memory throws std::bad_alloc.
class eString {
 public:
  eString() noexcept;
  eString(const eString& other);
  eString(eString&& other) noexcept;
  /// Widens each byte. Meant for literals and ASCII: no code page is consulted. Null counts as "".
  /// Quirk that stays: widening extends the sign (0xE9 becomes 0xFFE9), as it does in the engine.
  explicit eString(const char* narrow);
  /// Null counts as "".
  eString(const char16_t* wide);
  explicit eString(std::u16string_view wide);
  /// `character` repeated; a count below 1 gives the empty string.
  eString(char16_t character, i32 count);
  ~eString();

  eString& operator=(const eString& other);
  eString& operator=(eString&& other) noexcept;

  [[nodiscard]] const char16_t* c_str() const { return chars_; }
  [[nodiscard]] i32 length() const { return header().length; }
  [[nodiscard]] i32 capacity() const { return header().capacity; }
  [[nodiscard]] bool isEmpty() const { return header().length == 0; }
  /// All characters, zero characters included.
  [[nodiscard]] std::u16string_view view() const;
  /// The characters up to the first zero character, as comparisons see them.
  [[nodiscard]] std::u16string_view text() const;
  /// Whether both handles share a buffer.
  [[nodiscard]] bool sharesBufferWith(const eString& other) const { return chars_ == other.chars_; }

  void Assign(const eString& other);
  void Assign(const char16_t* wide);
  /// Takes `length` characters, zero characters included. `wide` may point into this string.
  void AssignCounted(i32 length, const char16_t* wide);

  void Append(const eString& other);
  void Append(const char16_t* wide);
  void AppendChar(char16_t character);

  /// Replaces the content with a wide `printf`-style print. `%ls` and `%s` take 16-bit text.
  /// Quirk that stays: a result longer than about twice the size estimate is cut, and the lines of
  /// reports and messages rely on this limit.
  template <class... Arguments>
  void Format(const char16_t* format, const Arguments&... arguments) {
    if constexpr (sizeof...(arguments) == 0) {
      formatList(format, {});
    } else {
      const FormatArgument list[] = {FormatArgument(arguments)...};
      formatList(format, list);
    }
  }

  /// Makes the string empty. An already empty string keeps its allocation.
  void Empty();

  /// Makes the buffer unshared and large enough for `minimumCapacity` characters (0 only unshares
  /// it) and returns it. After writing through the pointer, call ReleaseBuffer.
  char16_t* GetBuffer(i32 minimumCapacity);
  /// Ends writing through GetBuffer. With -1, the new length is that of the zero-terminated
  /// content.
  void ReleaseBuffer(i32 newLength);
  /// Sets the length, with an allocation of exactly that size if one is needed, and returns the
  /// characters. Their content is undefined; the caller is expected to read a text into them.
  char16_t* getBufferSetLength(i32 length);
  /// Part of the interface; a run does not call it.
  void SetAt(i32 index, char16_t character);

  /// The index of the first `character` at or after `start`, or -1.
  [[nodiscard]] i32 Find(char16_t character, i32 start) const;
  /// Parts of the text, clamped to it. The whole text shares this buffer.
  [[nodiscard]] eString Left(i32 count) const;
  [[nodiscard]] eString Mid(i32 start, i32 count) const;
  [[nodiscard]] eString Mid(i32 start) const;

  /// Removes `count` characters and returns the old length. The caller must not ask for more
  /// characters than follow `index`.
  i32 Delete(i32 index, i32 count);
  /// An index beyond the length inserts nothing; one equal to it appends. Part of the interface; a
  /// run does not call it.
  void Insert(i32 index, const char16_t* wide);
  void Insert(i32 index, char16_t character);

  /// Both convert ASCII letters only. A run does not call MakeLower; it is part of the interface.
  void MakeUpper();
  void MakeLower();
  /// Removes leading blanks. Quirk that stays: a leading tab is kept, although TrimRight removes
  /// trailing ones; existing option lines and catalogue texts rely on the difference.
  void TrimLeft();
  /// Removes trailing blanks and tabs.
  void TrimRight();

  /// Compares without regard to the case of ASCII letters: -1, 0 or 1.
  [[nodiscard]] int CompareNoCase(const char16_t* wide) const;

  /// By code unit, up to the first zero character.
  friend bool operator==(const eString& a, const eString& b) { return a.text() == b.text(); }
  friend std::strong_ordering operator<=>(const eString& a, const eString& b) {
    return a.text() <=> b.text();
  }

 private:
  struct Header {
    i32 refCount;
    i32 length;
    i32 capacity;
  };
  struct EmptyBuffer {
    Header header;
    char16_t terminator;
  };
  static_assert(sizeof(Header) == 12, "the header stands in front of the characters unpadded");

  static EmptyBuffer sharedEmpty;

  static Header& headerOf(char16_t* chars) {
    return *reinterpret_cast<Header*>(reinterpret_cast<std::byte*>(chars) - sizeof(Header));
  }
  [[nodiscard]] Header& header() { return headerOf(chars_); }
  [[nodiscard]] const Header& header() const { return headerOf(chars_); }

  static char16_t* allocate(i32 capacity);
  static void release(char16_t* chars) noexcept;
  static bool isSharedEmpty(char16_t* chars) noexcept;

  void EnsureWritable(i64 capacity);
  void grow(i64 capacity);
  void append(i32 count, const char16_t* wide);
  void formatList(const char16_t* format, std::span<const FormatArgument> arguments);

  char16_t* chars_;
};

static_assert(sizeof(eString) == sizeof(void*),
              "a string in a record takes no more than a pointer");

}  // namespace rvf
