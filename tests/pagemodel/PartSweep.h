#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "pagemodel/DrawListReader.h"
#include "pagemodel/PartOperations.h"
#include "support/LoadedBytes.h"
#include "support/Parts.h"

namespace rvf::test {

/// Fields in a row, to be compared with what they ought to hold.
using Values = std::vector<i64>;

/// What a field holds that the version `first` brought.
inline i64 since(int first, int v, i64 value, i64 before = 0) {
  return v >= first ? value : before;
}

/// Reads one record over what the slot holds; it has to be taken up to its last byte.
inline void readOver(DrawPart& slot, const Part& part, int v, bool wide = false) {
  ByteWriter w(wide);
  writePart(w, part, v);
  LoadedBytes file(w.bytes, wide);
  readDrawPart(slot, file.archive);
  EXPECT_FALSE(file.archive.failed());
  EXPECT_EQ(file.archive.GetPosition(), w.size());
}
inline DrawPart readFresh(const Part& part, int v = kNewestPart, bool wide = false) {
  DrawPart slot;
  readOver(slot, part, v, wide);
  return slot;
}

inline bool hasNoFields(const DrawPart& part) {
  return part.fields.words == std::array<u32, kFieldWords>{};
}

/// Reads the part of this type out of allParts() in every version, in files of both widths, into a
/// slot that held a part of another type before, and has its fields checked; then those of a copy
/// that outlives the part, if the type is copied.
inline void forEveryVersion(int type, bool isCopied,
                            const std::function<void(DrawPart& part, int v, bool isCopy)>& check) {
  const std::vector<Part> all = allParts();
  const Part& source = all[static_cast<std::size_t>(type)];
  DrawPart slot, copy;
  std::size_t former = 0;
  for (const bool wide : {false, true}) {
    for (const int v : versionGates()) {
      SCOPED_TRACE("type " + std::to_string(type) + " version " + std::to_string(v));
      former += 1;
      readOver(slot, all[former % all.size()], former % 2 == 0 ? kNewestPart : v, wide);
      slot.ownerTag = 17;
      readOver(slot, source, v, wide);
      DrawPart blank;
      DrawPart& target = isCopied ? copy : blank;
      copyPart(target, slot);
      for (DrawPart* part : {&slot, &target}) {
        const bool isCopy = part == &target;
        EXPECT_EQ(part->ownerTag, 17U);  // copied, and not the reader's
        EXPECT_EQ(part->extraId, since(149, v, 99));
        EXPECT_EQ(static_cast<int>(part->type), isCopy && !isCopied ? 0 : type);
        if (isCopied || !isCopy) check(*part, v, isCopy);
        makeBlank(slot);
      }
      EXPECT_TRUE(isCopied || hasNoFields(target));
      if (::testing::Test::HasFailure()) return;
    }
  }
}

}  // namespace rvf::test
