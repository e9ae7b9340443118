#pragma once

#include "base/Integers.h"
#include "capture/RvfReader.h"
#include "compare/DiffFlags.h"
#include "compare/Tolerances.h"
#include "storage/FileObject.h"
#include "text/eString.h"

namespace rvf {

/// Receives the progress of a comparison.
class WalkObserver {
 public:
  virtual ~WalkObserver() = default;
  /// Called after every pair of pages and every customer.
  virtual void pagesCompared(i32 customersDone, i32 customerCount, i64 pagesCompared,
                             i32 differingPages) = 0;
};

/// Where the results of a walk go.
struct WalkOutput {
  FileObject& differenceFile;  // open for writing, empty
  eString firstPath;           // as given in the options
  eString secondPath;
  WalkObserver* observer = nullptr;  // not owned
  bool usesShortCut = true;          // decodes pages of equal bytes only once; changes no result
};

/// What a walk does if the customer counts differ: end before comparing anything, or compare only
/// as many customers as both files have.
enum class CountMismatch { kEndsWalk, kLimitsWalk };

/// Compares two loaded files customer by customer and page by page, strictly by position, and
/// returns the bits of all differences. Writes the difference file as it goes and leaves the bits
/// of each customer and page in the records of the first reader, which afterwards hold the pages of
/// both.
///
/// Different resolutions and, with kEndsWalk, different customer counts end the walk before
/// anything is written. Customers with different ids at the same index end it there, since
/// everything after them would be paired wrongly. So does a page with a record that is too new: the
/// page is left in its context, whose newerRecord describes the record, and the rest of the
/// difference file is not written.
[[nodiscard]] DiffFlags walkCustomers(RvfReader& first, RvfReader& second, CountMismatch onMismatch,
                                      const Tolerances& tolerances, const WalkOutput& output);

}  // namespace rvf
