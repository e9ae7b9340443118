#include "pagemodel/PayloadText.h"

namespace rvf {

namespace {

// Reads the bytes behind the place of the last characters, so that widening from the front never
// overtakes what is still to be widened.
void readNarrowText(eArchive& archive, i32 count, char16_t* target) {
  auto* bytes = reinterpret_cast<u8*>(target) + count;
  archive.ReadWhole(bytes, count);
  for (i32 i = 0; i < count; ++i) {
    const u8 byte = bytes[i];
    target[i] = byte;
  }
}

i32 appendText(eArchive& archive, i32 count, bool isWide, PayloadBlock& block) {
  const i32 characters = archive.CheckedCount(count, isWide ? 2 : 1);
  if (characters == 0) {
    return 0;
  }
  const u32 start = block.size();
  block.resize(i64{start} + 2 * (i64{characters} + 1));
  auto* text = block.at<char16_t>(start);
  if (isWide) {
    archive.ReadWhole(text, 2 * characters);
  } else {
    readNarrowText(archive, characters, text);
  }
  text[characters] = 0;
  return characters;
}

}  // namespace

void readPartText(eArchive& archive, i32 count, char16_t* target) {
  if (archive.wideStrings()) {
    archive.ReadWhole(target, 2 * count);
  } else {
    readNarrowText(archive, count, target);
  }
}

i32 appendPartText(eArchive& archive, i32 count, PayloadBlock& block) {
  return appendText(archive, count, archive.wideStrings(), block);
}

i32 appendWideText(eArchive& archive, i32 count, PayloadBlock& block) {
  return appendText(archive, count, true, block);
}

}  // namespace rvf
