#include "inspect/model/Change.h"

#include <algorithm>
#include <utility>

namespace rvf::inspect {

std::string_view nameOf(ChangeKind kind) {
  switch (kind) {
    case ChangeKind::kMoved:
      return "moved";
    case ChangeKind::kOrder:
      return "order";
    case ChangeKind::kAdded:
      return "added";
    case ChangeKind::kRemoved:
      return "removed";
    default:
      return "changed";
  }
}

void setFields(Change& change, std::vector<FieldChange> fields) {
  change.fields = std::move(fields);
  // The text itself is the most interesting field, and its length follows from it.
  std::stable_partition(change.fields.begin(), change.fields.end(), [](const FieldChange& field) {
    return std::holds_alternative<std::u16string>(field.from) ||
           std::holds_alternative<std::u16string>(field.to);
  });
  if (change.fields.size() > Change::kMostFields) {
    change.fieldsLeftOut = static_cast<i64>(change.fields.size() - Change::kMostFields);
    change.fields.resize(Change::kMostFields);
  }
}

}  // namespace rvf::inspect
