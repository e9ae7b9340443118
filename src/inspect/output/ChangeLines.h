#pragma once

#include <string>
#include <vector>

#include "inspect/model/Change.h"
#include "inspect/model/ChangeGroups.h"
#include "inspect/model/Inspection.h"
#include "inspect/model/PageVerdict.h"

namespace rvf::inspect {

// The lines of the text output, without indentation.

/// A change, followed by its fields.
[[nodiscard]] std::vector<std::string> linesOf(const Change& change, bool isColoured);

/// Which comparison set the bits.
[[nodiscard]] std::string lineOf(const VerdictReason& reason);

/// A group, followed by its examples.
[[nodiscard]] std::vector<std::string> linesOf(const ChangeGroup& group, bool isColoured);

/// The totals of an inspection.
[[nodiscard]] std::vector<std::string> linesOf(const Summary& summary);

/// "Page 3 "Cover letter"", with the number and name in the other file if they are not the same.
[[nodiscard]] std::string titleOf(const PageResult& page);

}  // namespace rvf::inspect
