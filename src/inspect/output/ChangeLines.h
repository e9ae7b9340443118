#pragma once

#include <string>
#include <vector>

#include "inspect/model/Change.h"
#include "inspect/model/ChangeGroups.h"
#include "inspect/model/Inspection.h"
#include "inspect/model/PageVerdict.h"

namespace rvf::inspect {

// What the writers for people say, line by line, without indentation.

/// A change and, behind it, its fields.
[[nodiscard]] std::vector<std::string> linesOf(const Change& change, bool isColoured);

/// Which comparison set the bits.
[[nodiscard]] std::string lineOf(const VerdictReason& reason);

/// A group, and behind it its examples.
[[nodiscard]] std::vector<std::string> linesOf(const ChangeGroup& group, bool isColoured);

/// The totals of an inspection.
[[nodiscard]] std::vector<std::string> linesOf(const Summary& summary);

/// "Page 3 "Cover letter"", with the number and name in the other file if they are not the same.
[[nodiscard]] std::string titleOf(const PageResult& page);

}  // namespace rvf::inspect
