#pragma once

#include "compare/ChildListResults.h"
#include "inspect/model/FileBytes.h"
#include "inspect/model/Inspection.h"
#include "inspect/model/InspectionTally.h"

namespace rvf::inspect {

/// One of the two files under inspection.
struct InspectedSide {
  CaptureFile& file;
  FileBytes& bytes;
};

/// Where the results for a customer go.
struct InspectionSink {
  const InspectionSettings& settings;
  InspectionListener& listener;
  InspectionTally& tally;
  ChildListResults& childLists;
};

/// Customers with the same id in both files. `isJudged` says whether a run compares their pages.
struct CustomerPair {
  i32 first = 0;
  i32 second = 0;
  bool isJudged = false;
};

/// Judges and explains the pages of two customers. Pages of equal bytes are decoded once.
void inspectCustomers(InspectedSide& first, InspectedSide& second, const CustomerPair& pair,
                      const InspectionSink& sink);

}  // namespace rvf::inspect
