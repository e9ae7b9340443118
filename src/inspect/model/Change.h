#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/Integers.h"
#include "inspect/model/Fields.h"
#include "inspect/model/PartPlace.h"

namespace rvf::inspect {

enum class ChangeKind { kChanged, kMoved, kOrder, kAdded, kRemoved };

/// "changed", "moved" and so on.
[[nodiscard]] std::string_view nameOf(ChangeKind kind);

/// Why the verdict ignores a change. The texts are part of the output formats.
namespace ignored_by {
constexpr std::string_view kPositionTolerance = "position tolerance";
constexpr std::string_view kLineTolerance = "line tolerance";
constexpr std::string_view kRectangleStep = "one-step tolerance of rectangles";
constexpr std::string_view kResourceBytes = "resource bytes";
constexpr std::string_view kExtraPoint = "extra point of a polygon";
constexpr std::string_view kField = "field that is not compared";
constexpr std::string_view kType = "type that matches anything";
constexpr std::string_view kChildren = "children that are not compared";
constexpr std::string_view kPageName = "page name";
constexpr std::string_view kEncoding = "bytes that no field holds";
}  // namespace ignored_by

/// The index in a change for a side that has nothing there.
constexpr i32 kNone = -1;

/// One difference between two files, as a person would describe it.
struct Change {
  /// The number of fields that are listed; the rest are counted.
  static constexpr std::size_t kMostFields = 64;

  ChangeKind kind = ChangeKind::kChanged;
  std::string type;  // a part's type, or PAGE, LIST, CUSTOMER, FILE, OBJECT
  std::string list;  // "page", "placed 0", "object 21/0/first"; empty outside of lists
  i32 first = kNone;
  i32 second = kNone;
  std::string_view ignoredBy;  // empty: the change counts for the verdict
  std::vector<FieldChange> fields;
  i64 fieldsLeftOut = 0;
  std::u16string text;  // readable content of a part, such as the characters of a text
  std::optional<Box> firstBox;
  std::optional<Box> secondBox;
  Place distance;  // of kMoved

  [[nodiscard]] bool counts() const { return ignoredBy.empty(); }
};

/// Sets the fields up to the limit, texts first, and counts the rest.
void setFields(Change& change, std::vector<FieldChange> fields);

}  // namespace rvf::inspect
