#pragma once

#include <string_view>

#include "pagemodel/FieldVisitor.h"
#include "pagemodel/NameValue.h"
#include "storage/HyperlinkInfo.h"

namespace rvf {

// Members that several types of parts have, shown to a FieldVisitor.

/// Whether the record of a name value has a number.
enum class NumberField { kStored, kAbsent };

/// Null shows nothing.
void visitHyperlink(const HyperlinkInfo* link, FieldVisitor& visitor);
/// As elements of `name`. Null shows nothing.
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
