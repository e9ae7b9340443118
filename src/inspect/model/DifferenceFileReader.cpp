#include "inspect/model/DifferenceFileReader.h"

#include <algorithm>

#include "storage/Archive.h"

namespace rvf::inspect {

namespace {

constexpr const char* kEndsInside = "the file ends inside a field";

// The marker of the first path, with which every difference file starts.
bool startsWithText(eArchive& archive) {
  constexpr u8 kMarker[] = {0xFF, 0xFE, 0xFF};
  const bool isMarked =
      std::ranges::all_of(kMarker, [&archive](u8 byte) { return archive.ReadU8() == byte; });
  return isMarked && archive.Seek(0) == 0;
}

bool readCustomer(eArchive& archive, DifferenceVisitor& visitor) {
  DifferenceCustomer customer;
  customer.index = archive.ReadI32();
  archive.ReadString(customer.id);
  customer.firstPageCount = archive.ReadI32();
  customer.secondPageCount = archive.ReadI32();
  if (archive.failed()) {
    return false;
  }
  visitor.customer(customer);
  const i32 pages = std::min(customer.firstPageCount, customer.secondPageCount);
  for (i32 p = 0; p < pages; ++p) {
    const DiffFlags bits = archive.ReadU32();
    if (archive.failed()) {
      return false;
    }
    visitor.page(p, bits);
  }
  const DiffFlags bits = archive.ReadU32();
  if (!archive.failed()) {
    visitor.customerEnd(bits);
  }
  return !archive.failed();
}

std::string readTotals(eArchive& archive, DifferenceVisitor& visitor) {
  DifferenceTotals totals;
  totals.bits = archive.ReadU32();
  totals.differingPages = archive.ReadI32();
  totals.pageCountDelta = archive.ReadI32();
  if (archive.failed()) {
    return kEndsInside;
  }
  visitor.totals(totals);
  return archive.bytesLeft() == 0 ? "" : "bytes follow the totals";
}

}  // namespace

std::string readDifferenceFile(FileObject& file, DifferenceVisitor& visitor) {
  eArchive archive(file, eArchive::Mode::kLoad, eArchive::kFileBufferSize);
  if (archive.bytesLeft() == 0) {
    return "the file is empty: nothing was compared (different resolutions, different numbers of "
           "customers, or an input that is not valid)";
  }
  DifferenceHeader header;
  if (!startsWithText(archive)) {
    return "not a difference file";
  }
  archive.ReadString(header.firstPath);
  archive.ReadString(header.secondPath);
  header.customerCount = archive.ReadI32();
  if (archive.failed()) {
    return "not a difference file";
  }
  visitor.header(header);
  for (i32 read = 0; read < header.customerCount; ++read) {
    if (archive.bytesLeft() == 0) {
      return "the file ends after " + std::to_string(read) + " of " +
             std::to_string(header.customerCount) +
             " customers: the ids of the next customer differ, or the run was cut off";
    }
    if (!readCustomer(archive, visitor)) {
      return kEndsInside;
    }
  }
  if (archive.bytesLeft() == 0) {
    return "the file has no totals: the run was cut off";
  }
  return readTotals(archive, visitor);
}

}  // namespace rvf::inspect
