#include "pagemodel/DrawList.h"

#include "base/Wrapping.h"
#include "pagemodel/FieldVisitor.h"
#include "pagemodel/PartOperations.h"

namespace rvf {

namespace {

constexpr std::size_t kFirstSlots = 1;
constexpr std::size_t kMoreSlots = 5;

bool areBorrowed(const DrawList& list) {
  return (list.listFlags & list_flag::kBorrowed) != 0 &&
         (list.listFlags & list_flag::kBorrowedOwned) == 0;
}

}  // namespace

void forEachField(const DrawList& list, FieldVisitor& visitor) {
  visitor.number("originX", list.originX);
  visitor.number("originY", list.originY);
  visitor.number("count", list.count);
  visitor.number("contentTally", list.contentTally);
  visitor.number("byteA", list.byteA);
  visitor.number("byteB", list.byteB);
  visitor.number("listFlags", list.listFlags);
  visitor.number("valueA", list.valueA);
  visitor.number("valueB", list.valueB);
  visitor.number("listExtra", list.listExtra);
}

DrawPart& appendSlot(DrawList& list) {
  const auto index = static_cast<std::size_t>(list.count);
  if (index >= list.slots.size()) {
    list.slots.resize(list.slots.size() + (list.slots.empty() ? kFirstSlots : kMoreSlots));
  }
  list.count += 1;
  makeBlank(list.slots[index]);
  return list.slots[index];
}

void clearParts(DrawList& list) {
  list.listState = 0;
  if (areBorrowed(list)) {
    list.listExtra = 0;
    return;
  }
  list.count = 0;
  std::vector<DrawPart>().swap(list.slots);
}

void resetList(DrawList& list) {
  if (areBorrowed(list)) {
    list.slots.clear();
  }
  list.count = 0;
  list.listExtra = 0;
  list.originX = 0;
  list.originY = 0;
  list.reservedA = 0;
  list.reservedB = 0;
  list.listMark = 0;
  list.contentTally = 0;
  list.listFlags = 0;
  list.byteB = 0;
  list.listState = 0;
}

void appendList(DrawList& target, const DrawList& source, bool shift) {
  const i32 count = source.count;
  for (i32 i = 0; i < count; ++i) {
    DrawPart& slot = appendSlot(target);
    copyPart(slot, source[i]);
    slot.ownerTag = target.ownerTag;
    if (shift) {
      shiftPart(slot, source.originX, source.originY);
    }
    if (slot.type == PartType::kPoly) {
      target.listFlags |= list_flag::kPolyAdded;
    }
  }
  target.contentTally = wrappingSum(target.contentTally, source.contentTally);
}

}  // namespace rvf
