#pragma once

#include <string>
#include <vector>

#include "compare/ChildListResults.h"
#include "inspect/model/Change.h"
#include "inspect/model/PartPairing.h"

namespace rvf::inspect {

/// Appends the changes that turn the parts of one list into those of another.
void explainParts(const DigestedList& first, const DigestedList& second, const std::string& list,
                  ChildListResults& childLists, std::vector<Change>& changes);

/// Appends a change for the fields that differ, if any. `ignoredBy` is the rule that makes the
/// verdict ignore them.
void explainFields(std::vector<FieldChange> fields, const std::string& type,
                   const std::string& list, std::string_view ignoredBy,
                   std::vector<Change>& changes);

/// The fields of two lists that differ, except for the number of their parts.
[[nodiscard]] std::vector<FieldChange> changesOfList(const DrawList& first, const DrawList& second);
/// The fields of a list except for the number of its parts, which the parts themselves show.
[[nodiscard]] std::vector<Field> fieldsOfList(const DrawList& list);

/// A part that only one side has, with all its fields.
[[nodiscard]] Change onlyOnOneSide(const DrawPart& part, const std::string& list, ChangeKind kind);

/// The name of a part's type.
[[nodiscard]] std::string typeName(PartType type);
/// The readable content of a part, if any: its text, link or title.
[[nodiscard]] std::u16string textOf(const DrawPart& part);

}  // namespace rvf::inspect
