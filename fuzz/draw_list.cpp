// Two draw lists, one behind the other, at any version: the second is read over the first and into
// a new list, which has to come to the same. The first is also what references find.

#include <cstddef>

#include "pagemodel/DrawListReader.h"
#include "pagemodel/DrawStatic.h"
#include "support/FuzzInput.h"
#include "support/FuzzRun.h"
#include "support/PartInvariants.h"

namespace rvf::fuzz {
namespace {

/// Finds one object, whatever is asked for.
struct OneStatic final : StaticLookup {
  [[nodiscard]] const DrawStatic* FindStatic(i32, i32) const override { return &object; }
  DrawStatic object;
};

void readLists(FuzzInput input) {
  const u8 flags = input.take();
  const bool isWide = (flags & 1) != 0;
  const i32 dx = input.take<i32>(), dy = input.take<i32>();
  InputFile listFile(input.rest());
  eArchive archive(listFile.file(), eArchive::Mode::kLoad, eArchive::kSectionBufferSize);
  archive.setWideStrings(isWide);
  OneStatic found;
  readDrawList(found.object.firstList, archive);
  const i32 second = archive.GetPosition();
  if (archive.failed()) {
    return;
  }
  DrawList used, fresh;
  archive.Seek(0);
  readDrawList(used, archive);
  if ((flags & 2) == 0) {
    resetList(used);
  }
  currentContext = &found;
  readDrawList(used, archive);
  eArchive again(listFile.file(), eArchive::Mode::kLoad, eArchive::kSectionBufferSize);
  again.setWideStrings(isWide);
  again.Seek(second);
  readDrawList(fresh, again);
  requireSame(used, fresh);
  examineParts(fresh);
  DrawList copy;
  appendList(copy, fresh, true);
  requireShiftIsUndone(fresh, used, dx, dy);
}

}  // namespace
}  // namespace rvf::fuzz

extern "C" int LLVMFuzzerTestOneInput(const rvf::u8* data, std::size_t size) {
  return rvf::fuzz::runOnce([=] { rvf::fuzz::readLists({data, size}); });
}
