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

/// The contents of sections that follow the ones that the program knows, in order.
using Sections = std::vector<std::string>;

/// Appends the values of a capture file, little-endian. A number is cut to the width with which it
/// is written, so tests can put high bits into a field of which only the low ones matter. The
/// writers in this folder share no table or constant with the program, so that both cannot have the
/// same wrong version gate for the same reason.
struct ByteWriter {
  explicit ByteWriter(bool wideText = false) : wide(wideText) {}

  bool wide;  // texts have two bytes per character and a marker, else one byte
  std::string bytes;

  int size() const { return static_cast<int>(bytes.size()); }

  /// Each of the values in `width` bytes; a width of 0 writes nothing, for fields that do not
  /// exist.
  ByteWriter& put(int width, auto... values) {
    for (const std::int64_t value : {static_cast<std::int64_t>(values)...}) {
      for (int i = 0; i < width; ++i) bytes += static_cast<char>(value >> (8 * i));
    }
    return *this;
  }
  ByteWriter& u8(auto... values) { return put(1, values...); }
  ByteWriter& u16(auto... values) { return put(2, values...); }
  ByteWriter& i16(auto... values) { return put(2, values...); }
  ByteWriter& i32(auto... values) { return put(4, values...); }
  ByteWriter& u32(auto... values) { return put(4, values...); }
  ByteWriter& i64(auto... values) { return put(8, values...); }
  ByteWriter& f64(auto... values) { return i64(std::bit_cast<std::int64_t>(double(values))...); }
  ByteWriter& raw(std::string_view block) { return bytes += block, *this; }

  /// Records that write themselves in the form of version `v`.
  ByteWriter& all(const auto& records, int v) {
    for (const auto& record : records) record.write(*this, v);
    return *this;
  }

  /// Characters without a count.
  ByteWriter& characters(std::u16string_view text, int width) {
    for (const char16_t unit : text) put(width, unit);
    return *this;
  }
  ByteWriter& characters(std::u16string_view text) { return characters(text, wide ? 2 : 1); }
  /// A text of a part: its length in 32 bits, then the characters at the file's width.
  ByteWriter& counted(std::u16string_view text) { return i32(text.size()).characters(text); }

  /// The count of a string in its shortest form: 1, 3 or 7 bytes.
  ByteWriter& count(std::size_t n) {
    if (n < 255) return u8(n);
    return n < 65534 ? u8(255).u16(n) : u8(255).u16(65535).i32(n);
  }
  ByteWriter& wideString(std::u16string_view text) {
    return raw("\xFF\xFE\xFF").count(text.size()).characters(text, 2);
  }
  ByteWriter& string(std::u16string_view text) {
    return wide ? wideString(text) : count(text.size()).characters(text, 1);
  }

  /// What follows the fields of a record with the tag `tag`: nothing if that is the base tag,
  /// otherwise the sections, numbered away from zero, and the end mark.
  ByteWriter& endRecord(int tag, int baseTag, const Sections& sections = {}) {
    if (magnitude(tag) <= magnitude(baseTag)) return *this;
    const int step = baseTag > 0 ? 1 : -1;
    int number = baseTag + step;
    for (const std::string& section : sections) i32(number += step, section.size()).raw(section);
    return u32(kEndMark);
  }

  /// The magnitude of a tag, which exists even for the most negative one.
  static std::int64_t magnitude(std::int64_t tag) { return std::abs(tag); }
};

}  // namespace rvf::test
