#pragma once

#include <string_view>

#include "pagemodel/FieldVisitor.h"
#include "pagemodel/NameValue.h"
#include "storage/HyperlinkInfo.h"

namespace rvf {

// Visits members that several types of parts have.

/// Whether the record of a name value holds a number.
enum class NumberField { kStored, kAbsent };

/// Visits nothing for null.
void visitHyperlink(const HyperlinkInfo* link, FieldVisitor& visitor);
/// As elements of `name`. Visits nothing for null.
void visitNameValues(std::string_view name, const NameValues* values, NumberField number,
                     FieldVisitor& visitor);

/// An array of plain numbers.
template <class Numbers>
void visitNumbers(std::string_view name, const Numbers& numbers, FieldVisitor& visitor) {
  i32 index = 0;
  for (const auto value : numbers) {
    visitor.enter(name, index++);
    visitor.number({}, value);
    visitor.leave();
  }
}

/// The four edges of a part or a member.
template <class Box>
void visitBox(const Box& box, FieldVisitor& visitor) {
  visitor.number("left", box.left);
  visitor.number("top", box.top);
  visitor.number("right", box.right);
  visitor.number("bottom", box.bottom);
}

}  // namespace rvf
