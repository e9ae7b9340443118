#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

namespace rvf::test {

inline constexpr std::uint32_t kEndMark = 0x42F00757;

/// The contents of sections behind the ones that the program knows, in their order.
using Sections = std::vector<std::string>;

/// Puts the values of a capture file one behind the other, little-endian. A number is cut to the
/// width it is written with, so a test can put high bits into a field of which only the low ones
/// count. The writers of this folder take nothing from the program, neither a table nor a constant:
/// a version gate that is wrong in the one cannot be wrong in the other for the same reason.
struct ByteWriter {
  explicit ByteWriter(bool wideText = false) : wide(wideText) {}

  bool wide;  // the file's texts: two bytes a character and marked, or one byte a character
  std::string bytes;

  int size() const { return static_cast<int>(bytes.size()); }

  /// `width` bytes of `value`; a width of 0 writes nothing: the field does not exist.
  ByteWriter& number(std::int64_t value, int width) {
    for (int i = 0; i < width; ++i) bytes += byteOf(value, i);
    return *this;
  }
  template <class... T>
  ByteWriter& u8(T... values) {
    return (number(static_cast<std::int64_t>(values), 1), ..., *this);
  }
  template <class... T>
  ByteWriter& u16(T... values) {
    return (number(static_cast<std::int64_t>(values), 2), ..., *this);
  }
  template <class... T>
  ByteWriter& i16(T... values) {
    return u16(values...);
  }
  template <class... T>
  ByteWriter& i32(T... values) {
    return (number(static_cast<std::int64_t>(values), 4), ..., *this);
  }
  template <class... T>
  ByteWriter& u32(T... values) {
    return i32(values...);
  }
  ByteWriter& i64(std::int64_t value) { return number(value, 8); }
  ByteWriter& f64(double value) { return i64(std::bit_cast<std::int64_t>(value)); }
  ByteWriter& raw(std::string_view block) {
    bytes += block;
    return *this;
  }
  ByteWriter& patch(int offset, std::int64_t value) {
    for (int i = 0; i < 4; ++i) bytes[static_cast<std::size_t>(offset + i)] = byteOf(value, i);
    return *this;
  }

  /// Characters alone, without a count.
  ByteWriter& characters(std::u16string_view text, int width) {
    for (const char16_t unit : text) number(unit, width);
    return *this;
  }
  ByteWriter& characters(std::u16string_view text) { return characters(text, wide ? 2 : 1); }
  /// A text of a part: its length in 32 bits, then the characters at the file's width.
  ByteWriter& counted(std::u16string_view text) { return i32(text.size()).characters(text); }

  /// The count of a string in its shortest form: 1, 3 or 7 bytes.
  ByteWriter& count(std::size_t n) {
    if (n < 255) return u8(n);
    if (n < 65534) return u8(255).u16(n);
    return u8(255).u16(65535).i32(n);
  }
  ByteWriter& narrowString(std::u16string_view text) {
    return count(text.size()).characters(text, 1);
  }
  ByteWriter& wideString(std::u16string_view text) {
    return raw("\xFF\xFE\xFF").count(text.size()).characters(text, 2);
  }
  ByteWriter& string(std::u16string_view text) {
    return wide ? wideString(text) : narrowString(text);
  }

  /// What stands behind the fields of a record with the tag `tag`: nothing in a record as old as
  /// its base, otherwise the sections, numbered away from zero, and the end mark.
  ByteWriter& endRecord(int tag, int baseTag, const Sections& sections = {}) {
    if (magnitude(tag) <= magnitude(baseTag)) return *this;
    int number = baseTag + (baseTag > 0 ? 1 : -1);
    for (const std::string& section : sections) {
      number += number > 0 ? 1 : -1;
      i32(number, section.size()).raw(section);
    }
    return u32(kEndMark);
  }

  /// The size of a tag, which the most negative one has too.
  static std::int64_t magnitude(std::int64_t tag) { return std::abs(tag); }

 private:
  static char byteOf(std::int64_t value, int index) {
    return static_cast<char>(value >> (8 * index));
  }
};

}  // namespace rvf::test
