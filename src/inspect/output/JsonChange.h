#pragma once

#include "inspect/model/Inspection.h"
#include "inspect/output/JsonLine.h"

namespace rvf::inspect {

// Shared by JSON Lines and the report. Each function appends to an open object.

/// null for kNone.
void addIndex(JsonLine& json, std::string_view name, i32 index);
/// Adds nothing without a box.
void addBox(JsonLine& json, std::string_view name, const std::optional<Box>& box);

/// The fields of a file: path, label and sizes.
JsonLine& addFile(JsonLine& json, const CaptureFile& file);
void addChange(JsonLine& json, const Change& change);
void addGroup(JsonLine& json, const ChangeGroup& group);
void addSummary(JsonLine& json, const Summary& summary, const ChangeGroups& groups);
/// The bits and the comparisons that set them.
void addVerdict(JsonLine& json, const PageVerdict& verdict);

}  // namespace rvf::inspect
