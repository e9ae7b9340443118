#pragma once

#include "pagemodel/DrawPart.h"
#include "pagemodel/FieldVisitor.h"
#include "pagemodel/StaticLookup.h"
#include "storage/HeldInput.h"

namespace rvf {

// STATICREF. Its payload is the pointer to the child list, if there is one. Reading the part does
// not set it: the reader of the list looks it up.

struct DrawList;

/// The two lists of a static object.
enum class ObjectList : u8 { kFirst, kSecond };

/// Which of them a reference refers to.
[[nodiscard]] ObjectList listNamedBy(const StaticRefFields& fields);
/// The list of the static object that the part refers to. It belongs to the file; null if the
/// object does not exist.
[[nodiscard]] const DrawList* childList(const DrawPart& part);
/// The list that a reference refers to in a file's tables; null if there is no such object.
[[nodiscard]] const DrawList* referencedList(const StaticRefFields& fields,
                                             const StaticLookup& tables);
void setChildList(DrawPart& part, const DrawList* list);

void readStaticRef(DrawPart& part, eArchive& archive, i32 v);
void readStaticRef(DrawPart& part, HeldInput& held, i32 v);
void visitStaticRef(const DrawPart& part, FieldVisitor& visitor);
void shiftStaticRef(DrawPart& part, i32 dx, i32 dy);

}  // namespace rvf
