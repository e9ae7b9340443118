#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "pagemodel/DrawPart.h"
#include "pagemodel/FieldVisitor.h"
#include "pagemodel/NameValue.h"
#include "storage/Archive.h"

namespace rvf {

// CLICKAREA, HYPERLINKAREA and SIGNATUREFIELD.
//
// Payloads: the url of a HYPERLINKAREA, zero-terminated; the SignatureInfo.

/// The data of a SIGNATUREFIELD, for versions that store it.
struct SignatureInfo {
  i32 left = 0, top = 0, right = 0, bottom = 0;
  std::u16string fieldName;
  std::u16string fieldValue;
  NameValues attributes;
};

/// All characters of the url; empty if there is none.
[[nodiscard]] std::u16string_view storedUrl(const DrawPart& part);
/// The url up to its first zero character, as comparisons see it.
[[nodiscard]] std::u16string_view hyperlinkUrl(const DrawPart& part);
/// Null for a part of a version that stores none.
[[nodiscard]] const SignatureInfo* signatureInfo(const DrawPart& part);

void readClickArea(DrawPart& part, eArchive& archive, i32 v);
void visitClickArea(const DrawPart& part, FieldVisitor& visitor);

void readHyperlinkArea(DrawPart& part, eArchive& archive, i32 v);
void visitHyperlinkArea(const DrawPart& part, FieldVisitor& visitor);
void copyHyperlinkArea(DrawPart& target, const DrawPart& source);
void shiftHyperlinkArea(DrawPart& part, i32 dx, i32 dy);

void readSignatureField(DrawPart& part, eArchive& archive, i32 v);
void visitSignatureField(const DrawPart& part, FieldVisitor& visitor);
void copySignatureField(DrawPart& target, const DrawPart& source);
void shiftSignatureField(DrawPart& part, i32 dx, i32 dy);
void releaseSignatureField(DrawPart& part);

}  // namespace rvf
