#include "pagemodel/ImageParts.h"
#include "pagemodel/PartRows.h"
#include "pagemodel/colour/UsedColourList.h"

namespace rvf::test {
namespace {

using namespace std::string_literals;

/// Colour lists of a few rows, installed for the duration of a test.
class ColourTables : public ::testing::Test {
 protected:
  ColourTables() { setNamedColourTables(&tables_); }
  ~ColourTables() override {
    setNamedColourTables(nullptr);
    hexachromeCase = firstTableForList0 = usedColoursChanged = false;
  }

  const NamedColour rows_[4][2] = {{{1, u"first"}, {2, u"HEXACHROME Cyan"}},
                                   {{1, u"second"}, {2, u"Blue"}},
                                   {{7, u"Process Yellow"}, {9, u"Red\u0141"}},
                                   {{7, u"1-1-1"}, {9, u"HEXACHROME Cyan"}}};
  const NamedColourTables tables_ = {{rows_[0], rows_[1], rows_[2], rows_[3]}};
};

TEST_F(ColourTables, RowsOfAList) {
  const std::tuple<i32, u32, const NamedColour*> rows[] = {
      {0, 2, &rows_[1][1]}, {1, 1, &rows_[1][0]}, {2, 9, &rows_[2][1]}, {3, 7, &rows_[3][0]},
      {3, 8, &rows_[3][0]}, {4, 7, nullptr},      {-1, 7, nullptr},     {0, 0, &rows_[1][0]}};
  for (const auto& [list, code, row] : rows) EXPECT_EQ(findNamedColour(list, code), row) << list;
  firstTableForList0 = true;
  EXPECT_EQ(findNamedColour(0, 2), &rows_[0][1]);
  EXPECT_EQ(findNamedColour(1, 2), &rows_[1][1]);
  const NamedColourTables withoutRows;
  for (const NamedColourTables* tables : {&withoutRows, static_cast<decltype(&tables_)>(nullptr)}) {
    setNamedColourTables(tables);
    EXPECT_EQ(findNamedColour(2, 7), nullptr);
  }
}

TEST_F(ColourTables, Families) {
  std::string text;
  for (i32 list = -1; list <= 4; ++list) {
    const ColourFamily* family = colourFamily(list);
    text += family == nullptr ? "-"s : ""s + family->title + family->nameFormat + "|";
  }
  EXPECT_EQ(text,
            "-PANTONE solid coatedPANTONE %s C|-PANTONE solid uncoatedPANTONE %s U|"
            "PANTONE Goe coatedPANTONE %s C|-");
}

TEST_F(ColourTables, NamedColoursAreEnteredOnce) {
  const std::tuple<ColourValue, bool, std::string, std::string> rows[] = {
      // a colour, whether hexachromeCase is set, and the names under which it is entered
      {{2, 0x02000007}, true, "PANTONE Process Yellow U", "PANTONE#20Process#20Yellow#20U"},
      {{2, 0x02000001}, true, "", ""},  // not in the list: its first row, already registered
      {{2, 0x03000009}, true, "PANTONE Hexachrome Cyan C", "PANTONE#20Hexachrome#20Cyan#20C"},
      {{2, 0x01000001}, true, "PANTONE second C", "PANTONE#20second#20C"},
      {{2, 0x00000002}, true, "PANTONE Blue C", "PANTONE#20Blue#20C"},
      {{2, 0x02000009}, true, "PANTONE RedA U", "PANTONE#20RedA#20U"},
      {{2, 0x04000009}, true, "", ""},
      {{0, 0x03000007}, true, "", ""},
      {{1, 0x03000007}, true, "", ""},
      {{2, 0x00000002}, false, "PANTONE HEXACHROME Cyan C", "PANTONE#20HEXACHROME#20Cyan#20C"},
  };
  for (const auto& [colour, mixedCase, plain, encoded] : rows) {
    hexachromeCase = mixedCase, firstTableForList0 = !mixedCase, usedColoursChanged = false;
    const std::size_t before = usedColours().size();
    const Part part = image({.colourA = {.kind = colour.kind, .value = colour.value}});
    EXPECT_EQ(imageInfo(readFresh(part)).colourA, colour);
    const bool isNamed = colour.kind == 2 && colourList(colour) < 4;
    EXPECT_EQ(usedColoursChanged, isNamed);
    ASSERT_EQ(usedColours().size(), before + (plain.empty() ? 0 : 1)) << colour.value;
    if (plain.empty()) continue;
    EXPECT_EQ(usedColours().back().plainName, plain);
    EXPECT_EQ(usedColours().back().encodedName, encoded);
    EXPECT_EQ(usedColours().back().colourValue, colour.value);
  }
}

}  // namespace
}  // namespace rvf::test
