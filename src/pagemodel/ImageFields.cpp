#include "pagemodel/ImageFields.h"

#include "pagemodel/FieldVisitor.h"
#include "pagemodel/ImageParts.h"
#include "pagemodel/SharedFields.h"

namespace rvf {

namespace {

void visitColour(std::string_view name, const ColourValue& colour, FieldVisitor& visitor) {
  visitor.enter(name, FieldVisitor::kSingle);
  visitor.number("kind", colour.kind);
  visitor.colour("value", colour.value);
  visitor.leave();
}

void visitImageInfo(const ImageInfo& info, FieldVisitor& visitor) {
  visitor.enter("info", FieldVisitor::kSingle);
  visitBox(info, visitor);
  visitor.number("valueA", info.valueA);
  visitor.number("valueB", info.valueB);
  visitColour("colourA", info.colourA, visitor);
  visitColour("colourB", info.colourB, visitor);
  visitColour("colourC", info.colourC, visitor);
  visitor.number("flagA", info.flagA);
  visitor.number("flagB", info.flagB);
  visitor.number("flagC", info.flagC);
  visitor.number("flagD", info.flagD);
  visitor.number("kindValue", info.kindValue);
  visitor.number("valueC", info.valueC);
  visitor.number("valueE", info.valueE);
  visitor.number("nameValueCount", info.nameValueCount);
  visitNameValues("nameValues", info.nameValues.get(), NumberField::kStored, visitor);
  visitor.number("valueD", info.valueD);
  visitor.number("byteE", info.byteE);
  visitor.number("imageFlag", info.imageFlag);
  visitColour("colourE", info.colourE, visitor);
  visitor.number("valueF", info.valueF);
  visitor.number("valueG", info.valueG);
  visitHyperlink(info.hyperlink.get(), visitor);
  visitor.leave();
}

}  // namespace

void visitImage(const DrawPart& part, FieldVisitor& visitor) {
  const ImageFields& fields = part.fields.image;
  visitor.number("pixelWidth", fields.pixelWidth);
  visitor.number("pixelHeight", fields.pixelHeight);
  visitor.number("dataLength", fields.dataLength);
  visitor.number("imageKind", fields.imageKind);
  visitor.bytes("data", imageBytes(part));
  if (fields.info == kSetPointer) {
    visitImageInfo(imageInfo(part), visitor);
  }
}

void visitResource(const DrawPart& part, FieldVisitor& visitor) {
  const ResourceFields& fields = part.fields.resource;
  visitor.number("resourceKind", fields.resourceKind);
  visitor.number("byteCount", fields.byteCount);
  visitor.bytes("bytes", resourceBytes(part));
  visitor.number("x", fields.x);
  visitor.number("y", fields.y);
  visitor.number("scaleX", fields.scaleX);
  visitor.number("scaleY", fields.scaleY);
  visitor.number("resourceExtra", fields.resourceExtra);
  visitor.number("resourceFlag", fields.resourceFlag);
  visitHyperlink(resourceHyperlink(part), visitor);
}

void visitImportPage(const DrawPart& part, FieldVisitor& visitor) {
  const ImportPageFields& fields = part.fields.importPage;
  visitor.number("pageObject", fields.pageObject);
  visitor.number("pageNumber", fields.pageNumber);
  visitor.number("byteA", fields.byteA);
  visitor.number("byteB", fields.byteB);
  visitor.number("x", fields.x);
  visitor.number("y", fields.y);
  visitor.number("valueA", fields.valueA);
  visitor.number("valueB", fields.valueB);
  visitNumbers("clip", importClip(part), visitor);
  visitor.number("importFlag", fields.importFlag);
}

void visitBarcode(const DrawPart& part, FieldVisitor& visitor) {
  const BcocaBarcodeFields& fields = part.fields.barcode;
  visitor.number("barcodeKind", fields.barcodeKind);
  visitor.number("barcodeFlag", fields.barcodeFlag);
  visitor.number("barcodeCode", fields.barcodeCode);
  visitor.number("barcodeValue", fields.barcodeValue);
  visitor.number("angle", fields.angle);
  visitor.number("byteA", fields.byteA);
  visitor.number("tint", fields.tint);
  visitor.colour("colour", fields.colour);
  visitor.number("barcodeExtra", fields.barcodeExtra);
  visitor.number("byteB", fields.byteB);
  visitor.number("textLength", fields.textLength);
  if (fields.origin == kSetPointer) {
    visitor.enter("origin", FieldVisitor::kSingle);
    visitor.number("x", barcodeOrigin(part).x);
    visitor.number("y", barcodeOrigin(part).y);
    visitor.leave();
  }
  visitor.text("text", barcodeText(part));
}

}  // namespace rvf
