#include "capture/CustomerRecord.h"

#include "capture/IndexTag.h"
#include "storage/RecordFrame.h"

namespace rvf {

namespace {

void store(CustomerRecord& customer, eArchive& archive, const eRecordFrame& frame) {
  archive.WriteI32(index_tag::kNewest);
  archive.WriteI32(customer.leadValue);
  archive.WriteString(customer.id);
  archive.WriteI32(static_cast<i32>(customer.pages.size()));
  for (PageRecord& page : customer.pages) {
    page.read(archive, false);
  }
  frame.WriteEndMark(archive);
}

// Quirk that stays: text of the other byte order is known by the low byte of the id's first
// character alone. So the names of a customer with an empty id are exchanged too (the byte that is
// looked at is the terminator), and an id that starts with U+3000 is taken for swapped.
bool looksSwapped(const eString& id) { return (id.c_str()[0] & 0xFF) == 0; }

}  // namespace

void CustomerRecord::read(eArchive& archive) {
  eRecordFrame frame(index_tag::kBase);
  frame.BeginRecord();
  if (!archive.isLoading()) {
    store(*this, archive, frame);
    return;
  }
  leadValue = readTaggedValue(frame, archive);
  archive.ReadString(id);
  const bool swapBytes = looksSwapped(id);
  if (swapBytes) {
    swapCharacterBytes(id);
    id.ReleaseBuffer(-1);
  }
  pageCount = archive.ReadI32();
  const i32 count = archive.CheckedCount(pageCount, kSmallestPageRecord);
  for (i32 i = 0; i < count && !archive.failed(); ++i) {
    if (static_cast<std::size_t>(i) >= pages.size()) {
      pages.emplace_back();
    }
    pages[static_cast<std::size_t>(i)].read(archive, swapBytes);
  }
  frame.EndRecord(archive);
}

}  // namespace rvf
