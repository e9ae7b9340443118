#include "capture/PageRecord.h"

#include "capture/IndexTag.h"
#include "storage/RecordFrame.h"

namespace rvf {

void PageRecord::read(eArchive& archive, CharacterOrder order, PageNames& names) {
  eRecordFrame frame(index_tag::kBase);
  frame.BeginRecord();
  leadValue = archive.ReadI32();
  name = names.read(archive, order);
  filePosition = archive.ReadI32();
  tailValue = readTaggedValue(frame, archive);
  frame.EndRecord(archive);
}

void PageRecord::store(eArchive& archive) const {
  archive.WriteI32(leadValue);
  archive.WriteString(name.text());
  archive.WriteI32(filePosition);
  archive.WriteI32(index_tag::kNewest);
  archive.WriteI32(tailValue);
  archive.WriteI32(kEndMark);
}

}  // namespace rvf
