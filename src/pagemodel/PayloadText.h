#pragma once

#include <string_view>

#include "base/Integers.h"
#include "pagemodel/PayloadBlock.h"
#include "storage/Archive.h"

namespace rvf {

/// Bytes per character of part texts in this file.
template <class Input>
[[nodiscard]] i32 characterSize(const Input& input) {
  return input.wideStrings() ? 2 : 1;
}

/// Zero-extends each byte to 16 bits, from front to back.
void widen(const u8* bytes, i32 count, char16_t* target);

/// Reads `count` characters of one byte each into `target`. The bytes are read into its second
/// half, so that widening from the front never overwrites a byte that has yet to be widened.
template <class Input>
void readNarrowText(Input& input, i32 count, char16_t* target) {
  auto* bytes = reinterpret_cast<u8*>(target) + count;
  input.ReadWhole(bytes, count);
  widen(bytes, count, target);
}

/// Reads `count` characters into `target`. Narrow ones are zero-extended; a zero among them is a
/// character like any other. A short read sets the archive's `failed`.
template <class Input>
void readPartText(Input& input, i32 count, char16_t* target) {
  if (input.wideStrings()) {
    input.ReadWhole(target, 2 * count);
  } else {
    readNarrowText(input, count, target);
  }
}

/// Appends a text of `count` characters and its terminator to the block. A count of 0 or less
/// appends nothing; one that exceeds the rest of the file is damage. Returns the number of
/// characters appended.
[[nodiscard]] i32 appendPartText(eArchive& archive, i32 count, PayloadBlock& block);
/// The same for characters that have two bytes in every file.
[[nodiscard]] i32 appendWideText(eArchive& archive, i32 count, PayloadBlock& block);

/// The zero-terminated text at `offset` of the block.
[[nodiscard]] inline std::u16string_view terminatedText(const PayloadBlock& block,
                                                        std::size_t offset) {
  return {block.at<char16_t>(offset)};
}

/// The one text that fills a block, without its terminator.
[[nodiscard]] inline std::u16string_view wholeText(const PayloadBlock& block) {
  return {block.at<char16_t>(0), block.size() / sizeof(char16_t) - 1};
}

/// A field stored in 32 bits, of which only the low 8 or 16 are kept.
template <class Input>
[[nodiscard]] u8 readLow8(Input& input) {
  return static_cast<u8>(input.ReadI32());
}
template <class Input>
[[nodiscard]] u16 readLow16(Input& input) {
  return static_cast<u16>(input.ReadI32());
}
/// A packed colour: four bytes that are compared and never interpreted.
template <class Input>
[[nodiscard]] u32 readColour(Input& input) {
  return input.ReadU32();
}

}  // namespace rvf
