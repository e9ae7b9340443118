#include "compare/CompareAreaParts.h"

#include <algorithm>

#include "pagemodel/AreaParts.h"

namespace rvf {

// CLICKAREA: any two are equal, so only parts of other types are ever classified.
DiffFlags classifyClickAreas(const DrawPart&, const DrawPart&, const Tolerances&) { return 0; }

// HYPERLINKAREA. Quirk that stays: two areas without a url are never equal, not even if all their
// fields are. Existing results depend on this.
bool equalHyperlinkAreas(const DrawPart& left, const DrawPart& right) {
  const HyperlinkAreaFields& a = left.fields.hyperlinkArea;
  const HyperlinkAreaFields& b = right.fields.hyperlinkArea;
  const bool bothHaveUrl = a.url == kSetPointer && b.url == kSetPointer;
  return bothHaveUrl && a.linkFlagA == b.linkFlagA && a.left == b.left && a.top == b.top &&
         a.right == b.right && a.bottom == b.bottom && hyperlinkUrl(left) == hyperlinkUrl(right);
}

// SIGNATUREFIELD

namespace {

// Texts are compared up to their first zero character.
bool sameText(const std::u16string& a, const std::u16string& b) {
  return std::u16string_view(a.c_str()) == std::u16string_view(b.c_str());
}

bool sameAttribute(const NameValue& a, const NameValue& b) {
  return a.name == b.name && a.hasValue == b.hasValue && a.value == b.value;
}

bool sameSignature(const SignatureInfo& a, const SignatureInfo& b) {
  return a.left == b.left && a.top == b.top && a.right == b.right && a.bottom == b.bottom &&
         sameText(a.fieldName, b.fieldName) && sameText(a.fieldValue, b.fieldValue) &&
         std::ranges::equal(a.attributes, b.attributes, sameAttribute);
}

}  // namespace

bool equalSignatureFields(const DrawPart& left, const DrawPart& right) {
  const SignatureFieldFields& a = left.fields.signatureField;
  const SignatureFieldFields& b = right.fields.signatureField;
  if (a.fieldFlagA != b.fieldFlagA || a.fieldFlagB != b.fieldFlagB || a.fieldId != b.fieldId) {
    return false;
  }
  const SignatureInfo* s = signatureInfo(left);
  const SignatureInfo* t = signatureInfo(right);
  if (s == nullptr || t == nullptr) {
    return s == t;
  }
  return sameSignature(*s, *t);
}

DiffFlags classifySignatureFields(const DrawPart&, const DrawPart&, const Tolerances&) {
  return diff::kContent;
}

namespace {

void addText(MatchKey& key, std::u16string_view upToZero) {
  key.addBytes(upToZero.data(), upToZero.size() * sizeof(char16_t));
}

}  // namespace

void addSignatureFieldToKey(MatchKey& key, const DrawPart& part, const Tolerances&) {
  const SignatureFieldFields& fields = part.fields.signatureField;
  key.addAll(fields.fieldFlagA, fields.fieldFlagB, fields.fieldId);
  const SignatureInfo* info = signatureInfo(part);
  if (info == nullptr) {
    return;
  }
  key.addAll(info->left, info->top, info->right, info->bottom, info->attributes.size());
  addText(key, info->fieldName.c_str());
  addText(key, info->fieldValue.c_str());
  for (const NameValue& attribute : info->attributes) {
    addText(key, attribute.name.c_str());
    key.add(attribute.hasValue);
    addText(key, attribute.value.c_str());
  }
}

}  // namespace rvf
