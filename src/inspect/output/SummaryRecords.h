#pragma once

#include "inspect/model/ResultsSummary.h"
#include "inspect/output/JsonLine.h"

namespace rvf::inspect {

// Shared by JSON Lines and the summary page. Each function appends to an open object.

/// As rvfjobs writes it, with the names of the bits and the results of reading the pair again;
/// `inspection` is null for a pair that was not read again.
void addPair(JsonLine& json, const PairResult& pair, const PairInspection* inspection);
void addGroupOfPairs(JsonLine& json, const GroupOfPairs& entry);
void addResultsSummary(JsonLine& json, const ResultsSummary& summary);

}  // namespace rvf::inspect
