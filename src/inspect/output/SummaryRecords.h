#pragma once

#include "inspect/model/ResultsSummary.h"
#include "inspect/output/JsonLine.h"

namespace rvf::inspect {

// What JSON Lines and the page of a night have in common. Each appends to an object that is open.

/// As rvfjobs writes it, with the names of the bits and what reading the pair again brought;
/// `inspection` is null for a pair that was not read again.
void addPair(JsonLine& json, const PairResult& pair, const PairInspection* inspection);
void addGroupOfPairs(JsonLine& json, const GroupOfPairs& entry);
void addResultsSummary(JsonLine& json, const ResultsSummary& summary);

}  // namespace rvf::inspect
