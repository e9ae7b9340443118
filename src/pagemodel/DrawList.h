#pragma once

#include <span>
#include <vector>

#include "base/Integers.h"
#include "pagemodel/DrawPart.h"

namespace rvf {

namespace list_flag {
constexpr u8 kPolyAdded = 16;
constexpr u8 kBorrowed = 32;       // the parts belong to another list
constexpr u8 kBorrowedOwned = 64;  // borrowed, but owned all the same
}  // namespace list_flag

constexpr u8 kDefaultByteA = 255;

/// An ordered list of draw parts: a page, a static object, an overlay. Slots and their payload
/// blocks are reused from page to page, so memory stops growing after the largest page.
struct DrawList {
  std::vector<DrawPart> slots;  // all allocated parts; those from `count` on are unused
  i32 count = 0;
  u32 listState = 0;
  i32 originX = 0;  // offset of the list on the page
  i32 originY = 0;
  i32 reservedA = 0;
  i32 reservedB = 0;
  i32 valueB = 0;
  i32 valueA = 0;
  i32 contentTally = 0;
  u8 listMark = 0;
  u8 listFlags = 0;  // list_flag::*
  u16 listExtra = 0;
  u32 ownerTag = 0;  // copied to parts by appendList
  u8 byteA = kDefaultByteA;
  u8 byteB = 0;

  [[nodiscard]] i32 capacity() const { return static_cast<i32>(slots.size()); }
  [[nodiscard]] std::span<DrawPart> parts() {
    return {slots.data(), static_cast<std::size_t>(count)};
  }
  [[nodiscard]] std::span<const DrawPart> parts() const {
    return {slots.data(), static_cast<std::size_t>(count)};
  }
  [[nodiscard]] const DrawPart& operator[](i32 index) const {
    return slots[static_cast<std::size_t>(index)];
  }
};

/// The next free slot, blank except for the payload block, which it keeps.
DrawPart& appendSlot(DrawList& list);

/// Frees all parts. A list of borrowed parts only drops them.
void clearParts(DrawList& list);

/// Prepares a list for another page and keeps its parts for reuse. A list of borrowed parts drops
/// them.
void resetList(DrawList& list);

/// Appends copies of all parts of `source` to `target`, moved by the source's origin if `shift`.
void appendList(DrawList& target, const DrawList& source, bool shift);

}  // namespace rvf
