// Two draw lists, one after the other, at any version: the second is read over the first and into a
// new list, with the same result. References find the first.

#include "base/Wrapping.h"
#include "pagemodel/DrawListReader.h"
#include "pagemodel/DrawStatic.h"
#include "support/PartChecks.h"

namespace rvf::fuzz {
namespace {

/// Finds the same object for every reference.
struct OneStatic final : StaticLookup {
  [[nodiscard]] const DrawStatic* FindStatic(i32, i32) const override { return &object; }
  DrawStatic object;
};

void requireSame(const DrawPart& a, const DrawPart& b, const char* what) {
  requireSameFields(a, b, what);
  require(partsEqual(a, b) || !equalsItsLike(a), what);
}

}  // namespace

void checkInput(FuzzInput input) {
  const u8 flags = input.take();
  const i32 dx = input.take<i32>(), dy = input.take<i32>();
  InputFile lists(input.rest());
  Loader archive(lists.file);
  archive.setWideStrings((flags & 1) != 0);
  OneStatic found;
  readDrawList(found.object.firstList, archive);
  const i64 second = archive.GetPosition();
  if (archive.failed()) return;
  DrawList used, fresh;
  archive.Seek(0);
  readDrawList(used, archive);
  if ((flags & 2) == 0) resetList(used);
  readDrawList(used, archive, found);
  Loader again(lists.file);
  again.setWideStrings((flags & 1) != 0);
  again.Seek(static_cast<i32>(second));
  readDrawList(fresh, again, found);

  require(used.count == fresh.count, "a used list has the parts of a new one");
  examineParts(fresh);
  DrawList copy;
  appendList(copy, fresh, true);
  for (i32 i = 0; i < used.count; ++i) {
    DrawPart& part = fresh.parts()[static_cast<std::size_t>(i)];
    requireSame(used[i], part, "a used slot is the same as a new one");
    shiftPart(part, dx, dy);
    shiftPart(part, wrappingProduct(dx, -1), wrappingProduct(dy, -1));
    requireSame(used[i], part, "a shift can be undone");
  }
}

}  // namespace rvf::fuzz
