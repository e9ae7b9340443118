#pragma once

#include <string_view>

#include "base/Integers.h"
#include "pagemodel/PayloadBlock.h"
#include "storage/Archive.h"

namespace rvf {

/// Bytes that one character of a part's text has in this file.
[[nodiscard]] inline i32 characterSize(const eArchive& archive) {
  return archive.wideStrings() ? 2 : 1;
}

/// Reads `count` characters into `target`. Narrow ones are widened to the 16-bit value of the same
/// number; a zero among them is a character like any other. A short read sets the archive's
/// `failed`.
void readPartText(eArchive& archive, i32 count, char16_t* target);

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
[[nodiscard]] inline u8 readLow8(eArchive& archive) { return static_cast<u8>(archive.ReadI32()); }
[[nodiscard]] inline u16 readLow16(eArchive& archive) {
  return static_cast<u16>(archive.ReadI32());
}
/// A packed colour: four bytes that are compared and never interpreted.
[[nodiscard]] inline u32 readColour(eArchive& archive) { return archive.ReadU32(); }

}  // namespace rvf
