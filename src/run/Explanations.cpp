#include "run/Explanations.h"

#include "capture/RvfReader.h"
#include "storage/Archive.h"

namespace rvf {

eString explainTooLarge(i64 fileLength) {
  eString text;
  text.Format(u"Too large: it has %I64d bytes, the limit is %I64d", fileLength, kLongestFile);
  return text;
}

eString explainRejection(const RvfReader& reader, i64 fileLength) {
  const LoadResult& result = reader.loadResult();
  eString text;
  if (fileLength == 0) {
    return u"The file is empty";
  }
  switch (result.state) {
    case LoadState::kNotCapture:
      return u"Not a page-capture file";
    case LoadState::kUnsupportedVersion:
      text.Format(u"Version %d of the file format is not supported", reader.version);
      break;
    case LoadState::kBadTrailer:
      text.Format(u"The trailer is missing at offset %I64d: the file is damaged or cut short",
                  result.offset);
      break;
    case LoadState::kNoPages:
      return u"The file holds no pages";
    case LoadState::kRecordTooNew:
      text.Format(u"%ls, at offset %I64d", explainNewerRecord(*result.newer), result.offset);
      break;
    case LoadState::kTooLarge:
      return explainTooLarge(fileLength);
    default:
      text.Format(
          u"Damaged or cut short at offset %I64d, in the header, the shared objects or the index",
          result.offset);
  }
  return text;
}

eString explainNewerRecord(const NewerRecord& record) {
  eString text;
  text.Format(u"A record %ls has version %d, this program knows versions up to %d", record.label,
              record.version, record.highest);
  return text;
}

eString describePage(const RvfReader& reader, const DamagedPage& place) {
  const CustomerRecord& customer = reader.customers[static_cast<std::size_t>(place.customer)];
  eString text;
  text.Format(u"offset %I64d, customer %d \"%ls\", page %d", place.offset, place.customer,
              customer.id, place.page);
  return text;
}

}  // namespace rvf
