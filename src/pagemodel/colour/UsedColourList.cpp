#include "pagemodel/colour/UsedColourList.h"

#include <algorithm>
#include <iterator>
#include <string_view>

namespace rvf {

namespace {

constexpr u32 kCodeMask = 0x00FFFFFF;
constexpr u8 kUncoatedList = 2;

struct FamilyRow {
  i32 list;
  ColourFamily family;
};

constexpr FamilyRow kFamilies[] = {
    {0, {"PANTONE solid coated", "PANTONE %s C"}},
    {2, {"PANTONE solid uncoated", "PANTONE %s U"}},
    {3, {"PANTONE Goe coated", "PANTONE %s C"}},
};

const NamedColourTables* currentTables = nullptr;
std::vector<UsedColour> used;

std::string narrowed(const char16_t* wide) {
  std::string narrow;
  for (; *wide != 0; ++wide) {
    narrow += static_cast<char>(*wide & 0xFF);
  }
  return narrow;
}

std::string plainNameOf(const NamedColour& row, u8 list) {
  std::string name = "PANTONE " + narrowed(row.name) + (list == kUncoatedList ? " U" : " C");
  constexpr std::string_view kUpper = "HEXACHROME";
  constexpr std::string_view kMixed = "Hexachrome";
  const std::size_t found = name.find(kUpper);
  if (hexachromeCase && found != std::string::npos) {
    name.replace(found, kUpper.size(), kMixed);
  }
  return name;
}

std::string encodedNameOf(const std::string& plain) {
  std::string encoded;
  for (const char c : plain) {
    encoded += c == ' ' ? std::string("#20") : std::string(1, c);
  }
  return encoded;
}

}  // namespace

void setNamedColourTables(const NamedColourTables* tables) {
  currentTables = tables;
  used.clear();
}

const NamedColour* findNamedColour(i32 list, u32 code) {
  if (currentTables == nullptr || list < 0 || list >= kColourListCount) {
    return nullptr;
  }
  const i32 table = list == 0 && !firstTableForList0 ? 1 : list;
  const std::span<const NamedColour> rows = currentTables->lists[table];
  if (rows.empty()) {
    return nullptr;
  }
  const auto found = std::ranges::find(rows, code, &NamedColour::code);
  return found == rows.end() ? &rows.front() : &*found;
}

const ColourFamily* colourFamily(i32 list) {
  const auto* row = std::ranges::find(kFamilies, list, &FamilyRow::list);
  return row == std::end(kFamilies) ? nullptr : &row->family;
}

void registerUsedColour(const ColourValue& colour) {
  const u8 list = colourList(colour);
  const NamedColour* row = findNamedColour(list, colour.value & kCodeMask);
  if (row == nullptr) {
    return;
  }
  if (std::ranges::find(used, row, &UsedColour::row) == used.end()) {
    const std::string plain = plainNameOf(*row, list);
    used.push_back({row, encodedNameOf(plain), plain, colour.value});
  }
  usedColoursChanged = true;
}

const std::vector<UsedColour>& usedColours() { return used; }

}  // namespace rvf
