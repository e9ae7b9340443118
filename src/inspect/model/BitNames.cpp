#include "inspect/model/BitNames.h"

#include <algorithm>
#include <cctype>

namespace rvf::inspect {

namespace {

struct BitName {
  DiffFlags bit;
  std::string_view name;
};

constexpr BitName kBitNames[] = {
    {diff::kResolution, "Resolution"},
    {diff::kCustomers, "Customers"},
    {diff::kPageCount, "Page count"},
    {diff::kShapes, "Shapes"},
    {diff::kLines, "Lines"},
    {diff::kFonts, "Fonts"},
    {diff::kImages, "Images"},
    {diff::kText, "Text"},
    {diff::kBorderLines, "Border lines"},
    {diff::kRotation, "Angle of rotation"},
    {diff::kColor, "Color"},
    {diff::kContent, "Content"},
    {diff::kLineWidth, "Line Width"},
    {diff::kPosition, "Position"},
    {diff::kDrawOrder, "Draw Order"},
};

bool equalIgnoringCase(std::string_view a, std::string_view b) {
  return std::ranges::equal(
      a, b, [](unsigned char x, unsigned char y) { return std::tolower(x) == std::tolower(y); });
}

}  // namespace

std::vector<std::string> bitNames(DiffFlags bits) {
  std::vector<std::string> names;
  for (const BitName& entry : kBitNames) {
    if ((bits & entry.bit) != 0) {
      names.emplace_back(entry.name);
      bits &= ~entry.bit;
    }
  }
  for (DiffFlags bit = 1; bits != 0; bit <<= 1) {
    if ((bits & bit) != 0) {
      names.push_back("bit " + std::to_string(bit));
      bits &= ~bit;
    }
  }
  return names;
}

std::string bitsInWords(DiffFlags bits) {
  if (bits == 0) {
    return "identical";
  }
  std::string words;
  for (const std::string& name : bitNames(bits)) {
    words += (words.empty() ? "" : ", ") + name;
  }
  return words + " (" + std::to_string(bits) + ")";
}

DiffFlags bitOfName(std::string_view name) {
  for (const BitName& entry : kBitNames) {
    if (equalIgnoringCase(entry.name, name)) {
      return entry.bit;
    }
  }
  return 0;
}

std::string allBitNames() {
  std::string names;
  for (const BitName& entry : kBitNames) {
    names += (names.empty() ? "" : ", ") + std::string(entry.name);
  }
  return names;
}

}  // namespace rvf::inspect
