#pragma once

#include <string_view>

#include "base/Integers.h"
#include "pagemodel/PayloadBlock.h"
#include "storage/Archive.h"

namespace rvf {

/// Bytes that one character of a part's text has in this file.
template <class Input>
[[nodiscard]] i32 characterSize(const Input& input) {
  return input.wideStrings() ? 2 : 1;
}

/// Each byte as the 16-bit value of the same number, from the front.
void widen(const u8* bytes, i32 count, char16_t* target);

/// Reads `count` characters of one byte into `target`. The bytes go behind the place of the last
/// characters, so that widening from the front never overtakes what is still to be widened.
template <class Input>
void readNarrowText(Input& input, i32 count, char16_t* target) {
  auto* bytes = reinterpret_cast<u8*>(target) + count;
  input.ReadWhole(bytes, count);
  widen(bytes, count, target);
}

/// Reads `count` characters into `target`. Narrow ones are widened to the 16-bit value of the same
/// number; a zero among them is a character like any other. A short read sets the archive's
/// `failed`.
template <class Input>
void readPartText(Input& input, i32 count, char16_t* target) {
  if (input.wideStrings()) {
    input.ReadWhole(target, 2 * count);
  } else {
    readNarrowText(input, count, target);
  }
}

/// Appends a text of `count` characters and its terminator to the block. A count that is not above
/// 0 appends nothing; one that does not fit into the file is damage. Returns the characters that
/// were appended, 0 where there is no text.
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

/// A field stored in 32 bits of which only the low ones are kept.
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
