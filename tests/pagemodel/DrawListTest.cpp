#include "pagemodel/DrawList.h"

#include <memory>

#include "pagemodel/DrawStatic.h"
#include "pagemodel/ImageParts.h"
#include "pagemodel/PartRows.h"
#include "pagemodel/ReferenceParts.h"
#include "support/Capture.h"

namespace rvf::test {
namespace {

/// What a list holds besides the fields of its record.
Rows stateOf(const DrawList& list) {
  Rows rows = fieldsOf(list);
  rows.push_back(Shown::row("capacity", list.capacity()));
  rows.push_back(Shown::row("listState", list.listState));
  rows.push_back(Shown::row("reserved", list.reservedA, list.reservedB, list.listMark));
  rows.push_back(Shown::row("ownerTag", list.ownerTag));
  return rows;
}

DrawList usedList(u8 flags) {
  DrawList list;
  const ListFields fields{.parts = {rect(), poly(), line()}, .originX = -5, .originY = 6};
  readWhole(list, readDrawList, bytesOf(writeList, fields), true);
  list.listState = list.ownerTag = 9;
  list.reservedA = list.reservedB = 9;
  list.listMark = 9;
  list.listFlags = flags;
  return list;
}

TEST(DrawList, GrowsByFiveSlots) {
  DrawList list;
  std::vector<i32> capacities;
  for (i32 count = 1; count <= 12; ++count) {
    EXPECT_EQ(appendSlot(list).type, PartType::kUnknown);
    EXPECT_EQ(list.count, count);
    capacities.push_back(list.capacity());
  }
  EXPECT_EQ(capacities, (std::vector<i32>{1, 6, 6, 6, 6, 6, 11, 11, 11, 11, 11, 16}));
  DrawList used = usedList(0);
  resetList(used);
  EXPECT_EQ(fieldsOf(appendSlot(used)), Rows{"extraId 0"});
}

TEST(DrawList, ClearAndResetRespectOwnership) {
  for (const int flags : {0, 16, 32, 64, 96}) {
    const bool isBorrowed = flags == 32;
    const DrawList before = usedList(static_cast<u8>(flags));
    DrawList cleared = usedList(static_cast<u8>(flags)), reset = usedList(static_cast<u8>(flags));
    clearParts(cleared);
    EXPECT_EQ(changedRows(stateOf(cleared), stateOf(before)),
              isBorrowed ? " [listExtra 0] [listState 0]" : " [count 0] [capacity 0] [listState 0]")
        << flags;
    resetList(reset);
    EXPECT_EQ(changedRows(stateOf(reset), stateOf(before)),
              " [originX 0] [originY 0] [count 0] [contentTally 0] [byteB 0]" +
                  std::string(flags == 0 ? "" : " [listFlags 0]") + " [listExtra 0]" +
                  (isBorrowed ? " [capacity 0]" : "") + " [listState 0] [reserved 0 0 0]")
        << flags;
    // Reading over borrowed parts leaves them alone.
    DrawList read = usedList(static_cast<u8>(flags));
    const ListFields fields{.version = 103, .parts = {rect()}};
    readWhole(read, readDrawList, bytesOf(writeList, fields), true);
    EXPECT_EQ(read.capacity(), (flags & 32) != 0 ? 1 : 3) << flags;
    EXPECT_EQ(read.listFlags, flags & ~32) << flags;
  }
}

TEST(DrawList, AppendsCopiesOfAllParts) {
  for (const bool shift : {false, true}) {
    DrawList target = usedList(128);
    const DrawList source = usedList(0);
    appendList(target, source, shift);
    EXPECT_EQ(changedRows(stateOf(target), stateOf(source)),
              " [count 6] [contentTally 2] [listFlags 144] [capacity 8]");
    for (i32 i = 0; i < 3; ++i) {
      DrawPart moved;
      copyPart(moved, source[i]);
      if (shift) shiftPart(moved, -5, 6);
      EXPECT_EQ(fieldsOf(target[3 + i]), fieldsOf(moved)) << i;
      EXPECT_EQ(target[3 + i].ownerTag, 9U);
    }
    appendList(target, target, shift);
    EXPECT_EQ(target.count, 12);
  }
}

struct OneStatic final : StaticLookup {
  [[nodiscard]] const DrawStatic* FindStatic(i32 objectType, i32 index) const override {
    return objectType == 21 && index == 300 ? &object : nullptr;
  }
  DrawStatic object;
};

TEST(StaticReference, FindsOneOfTheObjectsLists) {
  const OneStatic file;
  const auto found = [&file](const StaticRefFields& fields) {
    return referencedList(readFresh(staticRef(fields)).fields.staticRef, file);
  };
  StaticRefFields f{.staticIndex = 300};
  EXPECT_EQ(found(f), &file.object.firstList);
  f.useSecond = 2;
  EXPECT_EQ(found(f), &file.object.secondList);
  f.secondIsHidden = 2;
  EXPECT_EQ(found(f), &file.object.firstList);
  EXPECT_EQ(found({.objectType = 22, .staticIndex = 300}), nullptr);
  EXPECT_EQ(found({.staticIndex = 44}), nullptr);
}

/// Gives an image what only the owner of a part can set.
void nameImage(DrawPart& part) {
  ImageInfo& info = imageInfo(part);
  info.wideName = std::make_unique<char16_t[]>(2);
  info.wideName[1] = u'w';
  info.narrowName = std::make_unique<char[]>(3);
  info.narrowName[2] = 'n';
  info.wideNameLength = 2;
  info.narrowNameLength = 3;
}

TEST(OwnedMembers, AreCopiedAndReleased) {
  DrawPart copy;
  {
    DrawPart part = readFresh(allParts()[5]);
    nameImage(part);
    copyPart(copy, part);
  }
  const ImageInfo& info = imageInfo(std::as_const(copy));
  ASSERT_EQ(std::pair(info.wideNameLength, info.narrowNameLength), std::pair(2, 3));
  EXPECT_EQ(std::pair(info.wideName[1], info.narrowName[2]), std::pair(u'w', 'n'));
  releasePart(copy, kKeepHyperlink);
  EXPECT_EQ(std::pair(info.wideNameLength, info.narrowNameLength), std::pair(0, 0));
  EXPECT_EQ(info.wideName, nullptr);
  EXPECT_EQ(info.narrowName, nullptr);
  EXPECT_EQ(info.nameValues, nullptr);
  EXPECT_EQ(std::pair(info.nameValueCount, info.imageFlag), std::pair(0, 0));
  EXPECT_NE(info.hyperlink, nullptr);
  releasePart(copy, kReleaseAll);
  EXPECT_EQ(copy.fields.image.info, kNullPointer);
}

TEST(OwnedMembers, AResourceHasALinkOfItsOwn) {
  for (const char* bytes : {"", "1234567", "12345678"}) {
    DrawPart copy = readFresh(rect());
    Rows expected;
    {
      DrawPart part = readFresh(resource({.bytes = bytes}));
      auto link = std::make_unique<HyperlinkInfo>();
      link->firstLabel = u"label";
      link->reservedA = 7;
      link->reservedB = 8;
      setResourceHyperlink(part, std::move(link));
      expected = fieldsOf(part);
      copyPart(copy, part);
    }
    EXPECT_EQ(fieldsOf(copy), expected);
    EXPECT_EQ(std::ranges::count(expected, "hyperlink.firstLabel \"label\""), 1);
    const HyperlinkInfo& link = *resourceHyperlink(copy);
    EXPECT_EQ(std::pair(link.reservedA, link.reservedB), std::pair(7, 8));
    setResourceHyperlink(copy, nullptr);
    EXPECT_EQ(copy.fields.resource.hyperlink, kNullPointer);
    EXPECT_EQ(resourceHyperlink(copy), nullptr);
    EXPECT_EQ(resourceBytes(copy).size(), std::string(bytes).size());
  }
}

}  // namespace
}  // namespace rvf::test
