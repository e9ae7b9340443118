#include "pagemodel/AreaFields.h"

#include "pagemodel/AreaParts.h"
#include "pagemodel/FieldVisitor.h"
#include "pagemodel/SharedFields.h"

namespace rvf {

void visitClickArea(const DrawPart& part, FieldVisitor& visitor) {
  const ClickAreaFields& fields = part.fields.clickArea;
  visitBox(fields, visitor);
  visitor.number("areaA", fields.areaA);
  visitor.number("areaB", fields.areaB);
  visitor.number("areaScale", fields.areaScale);
  visitor.number("areaCode", fields.areaCode);
  visitor.number("areaFlag", fields.areaFlag);
}

void visitHyperlinkArea(const DrawPart& part, FieldVisitor& visitor) {
  const HyperlinkAreaFields& fields = part.fields.hyperlinkArea;
  visitor.text("url", storedUrl(part));
  visitBox(fields, visitor);
  visitor.number("linkFlagB", fields.linkFlagB);
  visitor.number("linkFlagA", fields.linkFlagA);
  visitor.number("linkValue", fields.linkValue);
  visitor.number("linkCode", fields.linkCode);
  visitor.number("linkValueB", fields.linkValueB);
  visitor.number("linkValueC", fields.linkValueC);
}

void visitSignatureField(const DrawPart& part, FieldVisitor& visitor) {
  const SignatureFieldFields& fields = part.fields.signatureField;
  const SignatureInfo* info = signatureInfo(part);
  if (info != nullptr) {
    visitor.enter("rect", FieldVisitor::kSingle);
    visitBox(*info, visitor);
    visitor.leave();
  }
  visitor.number("fieldFlagA", fields.fieldFlagA);
  visitor.text("fieldName", info == nullptr ? std::u16string_view() : info->fieldName);
  visitor.text("fieldValue", info == nullptr ? std::u16string_view() : info->fieldValue);
  visitor.number("fieldFlagB", fields.fieldFlagB);
  visitNameValues("attributes", info == nullptr ? nullptr : &info->attributes, NumberField::kAbsent,
                  visitor);
  visitor.number("fieldId", fields.fieldId);
}

}  // namespace rvf
