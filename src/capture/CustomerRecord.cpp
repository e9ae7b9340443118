#include "capture/CustomerRecord.h"

#include "capture/IndexTag.h"
#include "storage/RecordFrame.h"

namespace rvf {

namespace {

// Quirk that stays: text of the other byte order is recognised by the low byte of the id's first
// character alone. The names of a customer with an empty id are therefore swapped too (the byte
// tested is the terminator's), and an id that starts with U+3000 is taken as swapped. Existing
// results depend on this.
CharacterOrder orderOf(const eString& id) {
  return (id.c_str()[0] & 0xFF) == 0 ? CharacterOrder::kSwapped : CharacterOrder::kNative;
}

}  // namespace

void CustomerRecord::read(eArchive& archive, PageNames& names) {
  eRecordFrame frame(index_tag::kBase);
  frame.BeginRecord();
  leadValue = readTaggedValue(frame, archive);
  archive.ReadString(id);
  const CharacterOrder order = orderOf(id);
  if (order == CharacterOrder::kSwapped) {
    swapCharacterBytes(id);
    id.ReleaseBuffer(-1);
  }
  pageCount = archive.ReadI32();
  const i32 count = archive.checkedCount(pageCount, kSmallestPageRecord);
  pages.reserve(static_cast<std::size_t>(count));
  for (i32 i = 0; i < count && !archive.failed(); ++i) {
    pages.emplace_back().read(archive, order, names);
  }
  frame.EndRecord(archive);
}

void CustomerRecord::store(eArchive& archive) const {
  archive.WriteI32(index_tag::kNewest);
  archive.WriteI32(leadValue);
  archive.WriteString(id);
  archive.WriteI32(static_cast<i32>(pages.size()));
  for (const PageRecord& page : pages) {
    page.store(archive);
  }
  archive.WriteI32(kEndMark);
}

}  // namespace rvf
