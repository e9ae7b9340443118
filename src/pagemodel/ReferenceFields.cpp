#include "pagemodel/ReferenceFields.h"

#include "pagemodel/FieldVisitor.h"
#include "pagemodel/ReferenceParts.h"

namespace rvf {

void visitStaticRef(const DrawPart& part, FieldVisitor& visitor) {
  const StaticRefFields& fields = part.fields.staticRef;
  visitor.number("objectType", fields.objectType);
  visitor.number("width", fields.width);
  visitor.number("height", fields.height);
  visitor.number("refA", fields.refA);
  visitor.number("refB", fields.refB);
  visitor.number("useSecond", fields.useSecond);
  visitor.number("secondIsHidden", fields.secondIsHidden);
  visitor.number("staticIndex", fields.staticIndex);
  visitor.number("x", fields.x);
  visitor.number("y", fields.y);
  visitor.number("refC", fields.refC);
  visitor.number("refD", fields.refD);
  visitor.number("layerByteA", fields.layerByteA);
  visitor.number("layerByteB", fields.layerByteB);
}

}  // namespace rvf
