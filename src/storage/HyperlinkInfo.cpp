#include "storage/HyperlinkInfo.h"

#include <algorithm>
#include <vector>

#include "base/Sizes.h"
#include "storage/RecordFrame.h"

namespace rvf {

namespace link_tag {
constexpr i32 kBase = 100;
constexpr i32 kLabels = 102;   // the two labels
constexpr i32 kHighest = 102;  // a newer record cannot be skipped
}  // namespace link_tag

namespace {

/// From this draw-part version on, the old form has one byte per character.
constexpr i32 kNarrowOldForm = 133;

}  // namespace

HyperlinkInfo::HyperlinkInfo(const HyperlinkInfo& other) { *this = other; }

HyperlinkInfo& HyperlinkInfo::operator=(const HyperlinkInfo& other) {
  if (this == &other) {
    return *this;
  }
  linkValue1 = other.linkValue1;
  linkValue2 = other.linkValue2;
  linkValue3 = other.linkValue3;
  firstLabel = other.firstLabel;
  secondLabel = other.secondLabel;
  reservedA = other.reservedA;
  reservedB = other.reservedB;
  text.reset();
  textLength = 0;
  textCapacity = 0;
  reserveText(other.text == nullptr ? 0 : other.textLength);
  if (text != nullptr) {
    std::copy_n(other.text.get(), textLength, text.get());
  }
  return *this;
}

void HyperlinkInfo::reserveText(i32 minimumLength) {
  textLength = static_cast<u16>(std::max<i32>(textLength, minimumLength));
  if (textLength == 0 || (text != nullptr && textLength < textCapacity)) {
    return;
  }
  // The capacity of the longest text overflows its field; the size of the block is what matters.
  const std::size_t characters = asSize(textLength) + 1;
  textCapacity = static_cast<u16>(characters);
  text = std::make_unique<char16_t[]>(characters);
}

void HyperlinkInfo::loadFixedFields(eArchive& archive) {
  // A capacity read from the file must never be mistaken for that of the previous text.
  text.reset();
  firstLabel.Empty();
  secondLabel.Empty();
  linkValue1 = archive.ReadI32();
  linkValue2 = archive.ReadI32();
  textCapacity = archive.ReadU16();
  textLength = archive.ReadU16();
  linkValue3 = archive.ReadI32();
}

void HyperlinkInfo::read(eArchive& archive) {
  eRecordFrame frame(link_tag::kBase);
  frame.BeginRecord();
  frame.fileTag = archive.ReadI32();
  if (archive.failed()) {
    return;
  }
  if (tagMagnitude(frame.fileTag) > link_tag::kHighest) {
    archive.markTooNew({u"HYPERLINKINFO", frame.fileTag, link_tag::kHighest});
    return;
  }
  loadFixedFields(archive);
  const i32 characterSize = archive.wideStrings() ? 2 : 1;
  const i32 length = archive.checkedCount(textLength, characterSize);
  textLength = 0;
  if (length != 0) {
    reserveText(length);
    if (archive.wideStrings()) {
      archive.ReadWhole(text.get(), 2 * textLength);
    } else {
      std::vector<u8> narrow(textLength);
      archive.ReadWhole(narrow.data(), textLength);
      std::ranges::copy(narrow, text.get());
    }
  }
  if (frame.fileTag >= link_tag::kLabels) {
    archive.ReadString(firstLabel);
    archive.ReadString(secondLabel);
  }
  frame.EndRecord(archive);
}

void HyperlinkInfo::store(eArchive& archive) const {
  archive.WriteI32(link_tag::kHighest);
  archive.WriteI32(linkValue1);
  archive.WriteI32(linkValue2);
  archive.WriteU16(textCapacity);
  // The old form can have a length without a text.
  const u16 storedLength = text == nullptr ? u16{0} : textLength;
  archive.WriteU16(storedLength);
  archive.WriteI32(linkValue3);
  archive.WriteRaw(text.get(), 2 * i64{storedLength});
  archive.WriteString(firstLabel);
  archive.WriteString(secondLabel);
  archive.WriteI32(kEndMark);
}

void HyperlinkInfo::readOldForm(eArchive& archive, i32 version) {
  if (!archive.isLoading()) {
    return;
  }
  loadFixedFields(archive);
  const u16 storedCapacity = textCapacity;
  if (storedCapacity == 0) {
    return;
  }
  const i32 characterSize = version >= kNarrowOldForm ? 1 : 2;
  const i32 count = archive.checkedCount(textLength, characterSize);
  std::vector<u8> bytes(asSize(count) * asSize(characterSize));
  if (archive.failed() || !archive.ReadWhole(bytes.data(), static_cast<i32>(bytes.size()))) {
    return;
  }
  reserveText(count);
  if (text == nullptr) {
    return;
  }
  // Quirk that stays: the bytes are read as one zero-terminated text whatever the character size,
  // so two-byte text ends at its first zero byte. Existing results depend on this.
  const auto end = std::find(bytes.begin(), bytes.begin() + textLength, u8{0});
  const auto found = static_cast<i32>(end - bytes.begin());
  const i32 copied = std::min<i32>(found, storedCapacity);
  std::copy_n(bytes.begin(), copied, text.get());
  text[asSize(copied)] = 0;
}

}  // namespace rvf
