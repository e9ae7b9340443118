#pragma once

#include <string>

#include "base/Integers.h"
#include "compare/DiffFlags.h"
#include "storage/FileObject.h"
#include "text/eString.h"

namespace rvf::inspect {

struct DifferenceHeader {
  eString firstPath;
  eString secondPath;
  i32 customerCount = 0;
};

struct DifferenceCustomer {
  i32 index = 0;
  eString id;
  i32 firstPageCount = 0;
  i32 secondPageCount = 0;
};

struct DifferenceTotals {
  DiffFlags bits = 0;
  i32 differingPages = 0;
  i32 pageCountDelta = 0;
};

/// Receives the contents of a difference file in order. A function is not called for what the file
/// lacks.
class DifferenceVisitor {
 public:
  virtual ~DifferenceVisitor() = default;
  virtual void header(const DifferenceHeader&) {}
  virtual void customer(const DifferenceCustomer&) {}
  virtual void page(i32 index, DiffFlags bits) = 0;
  virtual void customerEnd(DiffFlags) {}
  virtual void totals(const DifferenceTotals&) {}
};

/// Reads an open difference file to its end. The result is empty for a complete file and otherwise
/// says what is missing; everything before that is passed on all the same.
[[nodiscard]] std::string readDifferenceFile(FileObject& file, DifferenceVisitor& visitor);

}  // namespace rvf::inspect
