#pragma once

#include <string_view>

#include "compare/DiffFlags.h"
#include "inspect/output/JsonLine.h"
#include "inspect/output/Output.h"

namespace rvf::inspect {

/// The number of the format described by docs/rvfinspect.schema.json.
constexpr int kJsonFormat = 1;

/// Starts a line with the kind of record.
JsonLine& openRecord(JsonLine& json, std::string_view record);
/// Writes a closed record as one line and empties it.
void writeRecord(Output& output, JsonLine& json);
/// Writes what there is of a record so far, and keeps only what is needed to go on.
void writeBeginning(Output& output, JsonLine& json);

/// The fields "bits" and "names".
JsonLine& addBits(JsonLine& json, DiffFlags bits);

}  // namespace rvf::inspect
