#include "pagemodel/SharedFields.h"

namespace rvf {

void FieldVisitor::floating(std::string_view name, f64 value) {
  bytes(name, std::as_bytes(std::span(&value, 1)));
}

void visitHyperlink(const HyperlinkInfo* link, FieldVisitor& visitor) {
  if (link == nullptr) {
    return;
  }
  visitor.enter("hyperlink", FieldVisitor::kSingle);
  visitor.number("linkValue1", link->linkValue1);
  visitor.number("linkValue2", link->linkValue2);
  visitor.number("textCapacity", link->textCapacity);
  visitor.number("textLength", link->textLength);
  visitor.number("linkValue3", link->linkValue3);
  const char16_t* text = link->text.get();
  visitor.text("text", {text, text == nullptr ? 0 : std::size_t{link->textLength}});
  visitor.text("firstLabel", link->firstLabel.view());
  visitor.text("secondLabel", link->secondLabel.view());
  visitor.leave();
}

void visitNameValues(std::string_view name, const NameValues* values, NumberField number,
                     FieldVisitor& visitor) {
  if (values == nullptr) {
    return;
  }
  i32 index = 0;
  for (const NameValue& entry : *values) {
    visitor.enter(name, index++);
    visitor.text("name", entry.name.view());
    if (number == NumberField::kStored) {
      visitor.number("number", entry.number);
    }
    visitor.number("hasValue", entry.hasValue);
    visitor.text("value", entry.value.view());
    visitor.leave();
  }
}

}  // namespace rvf
