#include "capture/PageRecord.h"

#include "capture/IndexTag.h"
#include "storage/RecordFrame.h"

namespace rvf {

void swapCharacterBytes(eString& text) {
  char16_t* chars = text.GetBuffer(0);
  for (i32 i = 0; i < text.length(); ++i) {
    chars[i] = static_cast<char16_t>(chars[i] << 8 | chars[i] >> 8);
  }
}

void PageRecord::read(eArchive& archive, bool swapBytes) {
  eRecordFrame frame(index_tag::kBase);
  frame.BeginRecord();
  if (!archive.isLoading()) {
    archive.WriteI32(leadValue);
    archive.WriteString(name);
    archive.WriteI32(filePosition);
    archive.WriteI32(index_tag::kNewest);
    archive.WriteI32(tailValue);
    frame.WriteEndMark(archive);
    return;
  }
  leadValue = archive.ReadI32();
  archive.ReadString(name);
  if (swapBytes && !name.isEmpty()) {
    swapCharacterBytes(name);
  }
  name.ReleaseBuffer(-1);
  filePosition = archive.ReadI32();
  tailValue = readTaggedValue(frame, archive);
  frame.EndRecord(archive);
}

}  // namespace rvf
