#pragma once

#include <algorithm>

#include "compare/DiffFlags.h"
#include "storage/Archive.h"
#include "storage/MemFile.h"
#include "support/FuzzRun.h"

namespace rvf::fuzz {

constexpr DiffFlags kReservedBits = diff::kReserved2 | diff::kReserved4 | diff::kReserved8 |
                                    diff::kReserved16 | diff::kReserved19 | diff::kReserved20 |
                                    diff::kReserved21;

/// Reads the entry of one customer and counts its differing pages. Returns its bits.
inline DiffFlags checkCustomerEntry(eArchive& archive, i32 index, i32& differingPages) {
  require(archive.ReadI32() == index, "the entries stand in order");
  eString id;
  archive.ReadString(id);
  const i32 firstCount = archive.ReadI32();
  const i32 secondCount = archive.ReadI32();
  DiffFlags bits = firstCount == secondCount ? 0 : diff::kPageCount;
  for (i32 p = 0; p < std::min(firstCount, secondCount) && !archive.failed(); ++p) {
    const DiffFlags pageBits = archive.ReadU32();
    differingPages += pageBits != 0 ? 1 : 0;
    bits |= pageBits;
  }
  require(archive.ReadU32() == bits, "a customer has the bits of its pages");
  return bits;
}

/// Checks that a difference file is complete in itself and tells the same as the status of its
/// walk.
inline void checkDifferenceFile(eMemFile& file, DiffFlags status) {
  require((status & kReservedBits) == 0, "no reserved bit is set");
  file.Seek(0, SeekOrigin::kStart);
  if (file.GetLength() == 0) {
    require(status == diff::kResolution || status == diff::kCustomers, "an empty file has a cause");
    return;
  }
  eArchive archive(file, eArchive::Mode::kLoad, eArchive::kSectionBufferSize);
  eString path;
  archive.ReadString(path);
  archive.ReadString(path);
  const i32 customerCount = archive.ReadI32();
  DiffFlags bits = 0;
  i32 differingPages = 0;
  i32 index = 0;
  for (; index < customerCount && archive.BytesLeft() > 0; ++index) {
    bits |= checkCustomerEntry(archive, index, differingPages);
  }
  if (archive.BytesLeft() > 0) {
    require(archive.ReadU32() == status, "the trailer has the status");
    require(archive.ReadI32() == differingPages, "the trailer counts the differing pages");
    static_cast<void>(archive.ReadI32());
    bits |= status & diff::kCustomers;
  } else {
    bits |= diff::kCustomers;  // ended at customers that are not the same
  }
  require(bits == status, "the status has the bits of all customers");
  require(!archive.failed() && archive.BytesLeft() == 0, "the file has nothing more or less");
}

}  // namespace rvf::fuzz
