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

/// Where the results of a customer go.
struct InspectionSink {
  const InspectionSettings& settings;
  InspectionListener& listener;
  InspectionTally& tally;
  ChildListResults& childLists;
};

/// Customers with one id in both files. `isJudged`: a run compares them, page by page.
struct CustomerPair {
  i32 first = 0;
  i32 second = 0;
  bool isJudged = false;
};

/// Judges and explains the pages of two customers. Pages of equal bytes are decoded once.
void inspectCustomers(InspectedSide& first, InspectedSide& second, const CustomerPair& pair,
                      const InspectionSink& sink);

}  // namespace rvf::inspect
