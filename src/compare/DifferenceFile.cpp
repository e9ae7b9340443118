#include "compare/DifferenceFile.h"

namespace rvf {

void DifferenceFileWriter::writeHeader(const eString& firstPath, const eString& secondPath,
                                       i32 customerCount) {
  archive_.WriteString(firstPath);
  archive_.WriteString(secondPath);
  archive_.WriteI32(customerCount);
}

void DifferenceFileWriter::writeCustomerHead(i32 index, const eString& id, i32 firstPageCount,
                                             i32 secondPageCount) {
  archive_.WriteI32(index);
  archive_.WriteString(id);
  archive_.WriteI32(firstPageCount);
  archive_.WriteI32(secondPageCount);
}

void DifferenceFileWriter::writeTrailer(DiffFlags fileBits, i32 differingPages,
                                        i32 pageCountDelta) {
  archive_.WriteU32(fileBits);
  archive_.WriteI32(differingPages);
  archive_.WriteI32(pageCountDelta);
}

}  // namespace rvf
