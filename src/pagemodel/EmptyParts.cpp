#include "pagemodel/EmptyParts.h"

namespace rvf {

void makeUnknown(DrawPart& part) {
  part.type = PartType::kUnknown;
  part.fields = PartFields();
  part.poolKind = kNoPool;
}

void readWithoutPool(DrawPart& part, eArchive&, i32) { part.poolKind = kNoPool; }

void readNothing(DrawPart&, eArchive&, i32) {}

void visitNothing(const DrawPart&, FieldVisitor&) {}

}  // namespace rvf
