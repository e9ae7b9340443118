#include "storage/RecordFrame.h"

#include "messages/MessageReporter.h"

namespace rvf {

bool eRecordFrame::readSectionTag(eArchive& archive, i32 number) {
  const i32 found = archive.ReadI32();
  sectionCursor_ = step(sectionCursor_);
  if (sectionCursor_ == number && found == number) {
    return true;
  }
  archive.markDamaged();
  return false;
}

SectionResult eRecordFrame::ReadSection(eArchive& archive, i32 number) {
  if (!isKnownToWriter(number)) {
    return SectionResult::kAbsent;
  }
  if (!readSectionTag(archive, number)) {
    return SectionResult::kFailed;
  }
  return archive.ReadI32() > 0 ? SectionResult::kPresent : SectionResult::kAbsent;
}

SectionResult eRecordFrame::ReadFixedSection(eArchive& archive, i32 expectedSize, i32 number) {
  if (!isKnownToWriter(number)) {
    return SectionResult::kAbsent;
  }
  if (!readSectionTag(archive, number)) {
    return SectionResult::kFailed;
  }
  if (archive.ReadI32() != expectedSize) {
    archive.markDamaged();
    return SectionResult::kFailed;
  }
  return SectionResult::kPresent;
}

void eRecordFrame::EndRecord(eArchive& archive) {
  if (archive.failed() || tagMagnitude(fileTag) <= tagMagnitude(baseTag_)) {
    return;
  }
  i32 found = archive.ReadI32();
  sectionCursor_ = step(sectionCursor_);
  while (found == sectionCursor_ && !archive.failed()) {
    const i32 size = archive.checkedCount(archive.ReadI32(), 1);
    archive.skip(size);
    found = archive.ReadI32();
    sectionCursor_ = step(sectionCursor_);
  }
  if (found != kEndMark) {
    archive.markFailed();
  }
}

void eRecordFrame::WriteSectionTag(eArchive& archive, i32 number) {
  sectionCursor_ = step(sectionCursor_);
  archive.WriteI32(number);
}

void eRecordFrame::WriteFixedSection(eArchive& archive, i32 size, i32 number) {
  WriteSectionTag(archive, number);
  archive.WriteI32(size);
}

void eRecordFrame::writeMeasuredSection(eArchive& archive, i32 number,
                                        const std::function<void(eArchive&)>& content) {
  eCountingArchive counting;
  muteAllMessages += 1;
  content(counting);
  const i64 size = counting.countedBytes();
  muteAllMessages -= 1;

  WriteSectionTag(archive, number);
  content(BeginSubArchive(static_cast<i32>(size)));
  EndSubArchive(archive);
}

eArchive& eRecordFrame::BeginSubArchive(i32 size) {
  const i32 growBy = size == 0 ? eArchive::kSectionBufferSize : size;
  subArchive_.reset();
  subFile_ = std::make_unique<eMemFile>(growBy);
  subArchive_ =
      std::make_unique<eArchive>(*subFile_, eArchive::Mode::kStore, eArchive::kSectionBufferSize);
  return *subArchive_;
}

void eRecordFrame::EndSubArchive(eArchive& archive) {
  subArchive_->Close();
  const i32 size = subFile_->Tell();
  archive.WriteI32(size);
  archive.WriteRaw(subFile_->data(), size);
  subArchive_.reset();
  subFile_.reset();
}

}  // namespace rvf
