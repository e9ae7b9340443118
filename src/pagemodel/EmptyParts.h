#pragma once

#include "pagemodel/DrawPart.h"
#include "pagemodel/FieldVisitor.h"
#include "storage/Archive.h"

namespace rvf {

// The types whose records consist only of their frame.

/// Turns a part whose owned objects are released into an empty one of type UNKNOWN.
void makeUnknown(DrawPart& part);

/// UNKNOWN and 1LINE: a part without a reference into a text pool.
void readWithoutPool(DrawPart& part, eArchive& archive, i32 v);
/// All others, unknown codes included: all fields stay zero.
void readNothing(DrawPart& part, eArchive& archive, i32 v);
void visitNothing(const DrawPart& part, FieldVisitor& visitor);

}  // namespace rvf
