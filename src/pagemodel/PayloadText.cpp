#include "pagemodel/PayloadText.h"

namespace rvf {

void widen(const u8* bytes, i32 count, char16_t* target) {
  for (i32 i = 0; i < count; ++i) {
    const u8 byte = bytes[i];
    target[i] = byte;
  }
}

namespace {

constexpr i32 kWideSize = sizeof(char16_t);

i32 appendText(eArchive& archive, i32 count, i32 characterBytes, PayloadBlock& block) {
  const i32 characters = archive.checkedCount(count, characterBytes);
  if (characters == 0) {
    return 0;
  }
  const u32 start = block.size();
  block.resize(i64{start} + 2 * (i64{characters} + 1));
  auto* text = block.at<char16_t>(start);
  if (characterBytes == kWideSize) {
    archive.ReadWhole(text, 2 * characters);
  } else {
    readNarrowText(archive, characters, text);
  }
  text[characters] = 0;
  return characters;
}

}  // namespace

i32 appendPartText(eArchive& archive, i32 count, PayloadBlock& block) {
  return appendText(archive, count, characterSize(archive), block);
}

i32 appendWideText(eArchive& archive, i32 count, PayloadBlock& block) {
  return appendText(archive, count, kWideSize, block);
}

}  // namespace rvf
