#pragma once

#include <string>
#include <vector>

#include "compare/ChildListResults.h"
#include "inspect/model/ChangeStream.h"
#include "inspect/model/PartPairing.h"

namespace rvf::inspect {

/// Adds the changes that turn the parts of one list into those of another.
void explainParts(const DigestedList& first, const DigestedList& second, const std::string& list,
                  ChildListResults& childLists, ChangeStream& changes);

/// A place in both lists, if a change has one.
struct IndexesOfChange {
  i32 first = kNone;
  i32 second = kNone;
};

/// Adds a change for the fields that differ, if any. `ignoredBy` is the rule that makes the verdict
/// ignore them.
void explainFields(std::vector<FieldChange> fields, const std::string& type,
                   const std::string& list, std::string_view ignoredBy, ChangeStream& changes,
                   const IndexesOfChange& indexes = {});

/// The fields of two lists that differ, except for the number of their parts.
[[nodiscard]] std::vector<FieldChange> changesOfList(const DrawList& first, const DrawList& second);
/// The fields of a list except for the number of its parts, which the parts themselves show.
[[nodiscard]] std::vector<Field> fieldsOfList(const DrawList& list);

/// The name of a part's type.
[[nodiscard]] std::string typeName(PartType type);
/// The readable content of a part, if any: its text, link or title.
[[nodiscard]] std::u16string textOf(const DrawPart& part);

}  // namespace rvf::inspect
