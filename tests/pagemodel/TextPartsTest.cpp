#include "pagemodel/TextParts.h"

#include <gtest/gtest.h>

#include <cstring>
#include <limits>
#include <string>
#include <vector>

#include "pagemodel/PartSweep.h"

namespace rvf {
namespace {

using test::readFresh;
using test::since;
using test::Values;

std::u16string charactersOf(const DrawPart& part) {
  const auto characters = textCharacters(part);
  return {characters.begin(), characters.end()};
}

// The outline records behind `offset` of the payload, with the count in front.
std::vector<i32> outlinesAt(const DrawPart& part, std::size_t offset) {
  u16 count = 0;
  std::memcpy(&count, part.payload.data() + offset, sizeof(count));
  std::vector<i32> values(6U * count);
  std::memcpy(values.data(), part.payload.data() + offset + 2, 4 * values.size());
  return values;
}

Values valuesOf(const TextRun& run) {
  const int unused = run.unused[0] + run.unused[1] + run.unused[2];
  return {run.x, run.y, run.charCount, run.runClass, run.runExtra, unused};
}

TEST(TextParts, TextOfEveryVersion) {
  test::forEveryVersion(1, true, [](DrawPart& part, int v, bool) {
    const TextFields& f = part.fields.text;
    EXPECT_EQ(charactersOf(part), u"Gr\u00FC\u00DFe");
    ASSERT_EQ((Values{f.runCount, f.runCapacity, f.textCapacity}), (Values{2, 2, 5}));
    EXPECT_EQ(valuesOf(textRuns(part)[0]),
              (Values{10, 20, 3, since(134, v, 4, 255), since(151, v, 5), 0}));
    EXPECT_EQ(valuesOf(textRuns(part)[1]),
              (Values{11, 21, 2, since(134, v, 6, 255), since(151, v, 7), 0}));
    EXPECT_EQ((Values{f.fontId, f.rotation, f.textFlags, f.colour, f.tint}),
              (Values{7, since(118, v, 45, 9), since(118, v, 1 + 4 + 8), test::kBlue,
                      since(108, v, 80)}));
    EXPECT_EQ(f.fontVariant + f.fontExtra, 0U);
    ASSERT_EQ(extensionRuns(part).size(), v < 118 ? 0U : 1U);
    if (v < 118) return;
    EXPECT_EQ(valuesOf(extensionRuns(part)[0]), (Values{12, 22, 1, since(134, v, 8, 5), 0, 0}));
    EXPECT_EQ(part.payload.at<u16>(2 * sizeof(TextRun))[0], 0xFEFE);
    EXPECT_EQ(outlinesAt(part, 3 * sizeof(TextRun) + 4), (std::vector<i32>{1, 2, 3, 4, 5, 6}));
  });
}

TEST(TextParts, RotationInDegreesAndInSteps) {
  constexpr int kLowest = std::numeric_limits<int>::min();
  const int rows[][3] = {{100, -90, 238},     {110, -90, 54}, {105, 0, 0},   {105, 2, 0},
                         {105, 3, 1},         {105, 358, 72}, {105, -2, 0},  {105, -3, 255},
                         {105, kLowest, 102}, {106, 4, 0},    {117, -1, 71}, {117, -400, 248},
                         {118, 200, 200},     {0, 90, 18},    {-157, 90, 18}};
  for (const auto& [v, stored, steps] : rows) {
    const DrawPart part = readFresh(test::text({.rotation = stored}), v);
    EXPECT_EQ(part.fields.text.rotation, steps) << v << ' ' << stored;
  }
}

TEST(TextParts, RunPositionsOfSixteenBitsHaveNoSign) {
  for (const auto& [v, x] : {std::pair{105, -1}, {106, 65535}, {110, 65535}, {111, -1}}) {
    const DrawPart part = readFresh(test::text({.runs = {{.x = -1, .y = -1}}}), v);
    EXPECT_EQ((Values{textRuns(part)[0].x, textRuns(part)[0].y}), (Values{x, x}));
  }
  // Four bytes in one version alone, of which the low one counts.
  EXPECT_EQ(textRuns(readFresh(test::text({.runs = {{.runClass = 0x1F4}}}), 134))[0].runClass,
            0xF4);
}

TEST(TextParts, ExtensionAreasAreCopiedAndMove) {
  const std::array<int, 6> outline = {1, 2, 3, 4, 5, 6};
  struct Row {
    int flags;  // as stored, whether anything follows or not
    std::size_t runs, outlines;
    int expected;
  };
  for (const Row& row : {Row{0xF3, 0, 0, 0xF3},
                         {4, 0, 0, 0},
                         {12, 0, 0, 0},
                         {0, 2, 0, 4},
                         {4, 0, 1, 8},
                         {8, 1, 0, 4},
                         {0, 2, 2, 12}}) {
    DrawPart part = readFresh(test::text({.text = std::u16string(u"a\0b", 3),
                                          .runs = {{}, {}, {}},
                                          .textFlags = row.flags,
                                          .extensionRuns = std::vector<test::Run>(row.runs),
                                          .outlines = std::vector(row.outlines, outline)}),
                              150);
    DrawPart copy;
    copyPart(copy, part);
    makeBlank(part);
    reserveText(copy, 5, 10, 2, 1, static_cast<i32>(row.runs), static_cast<i32>(row.outlines));
    const TextFields& f = copy.fields.text;
    EXPECT_EQ((Values{f.textFlags, f.runCapacity, f.textCapacity}), (Values{row.expected, 7, 11}));
    EXPECT_EQ(charactersOf(copy), std::u16string(u"a\0b", 3));  // a zero is a character
    EXPECT_EQ(textRuns(copy)[2].x, 10);
    ASSERT_EQ(extensionRuns(copy).size(), row.runs);
    for (const TextRun& run : extensionRuns(copy)) EXPECT_EQ(run.y, 20);
    if (row.outlines == 0) continue;
    const std::size_t area = row.runs == 0 ? 0 : 4 + sizeof(TextRun) * row.runs;
    EXPECT_EQ(outlinesAt(copy, 7 * sizeof(TextRun) + area).size(), 6 * row.outlines);
  }
}

TEST(TextParts, TextPropOfEveryVersion) {
  test::forEveryVersion(7, true, [](DrawPart& part, int v, bool) {
    const TextPropFields& f = part.fields.textProp;
    EXPECT_EQ((Values{f.propKind, f.propValue, f.propExtra, f.propTag}), (Values{3, 8, 9, 0}));
    EXPECT_EQ((Values{f.lengthA, f.lengthB, f.lengthC, f.lengthD}),
              (Values{1, 2, 4, since(116, v, 5)}));
    const std::u16string expected = v < 116 ? u"abcdefg" : u"abcdefghijkl";
    ASSERT_EQ(part.payload.size(), 2 * expected.size());
    EXPECT_EQ(std::u16string(part.payload.at<char16_t>(0), expected.size()), expected);
  });
  for (const auto& [kind, extra] : {std::pair{2, 0}, {3, 9}, {4, 9}, {5, 0}, {-3, 0}}) {
    EXPECT_EQ(readFresh(test::textProp({.propKind = kind})).fields.textProp.propExtra, extra);
  }
  // The sum of the lengths wraps at 32 bits, and one that is not above 0 means no characters.
  constexpr int kMost = std::numeric_limits<int>::max();
  for (const auto& [a, b, characters] : {std::array{kMost, kMost, 0}, {-5, 5, 0}, {-3, 5, 2}}) {
    const auto payload = [a = a, b = b, n = characters](test::ByteWriter& w, int) {
      w.i32(1, 2, a, b).u16(0, 0).raw(std::string(static_cast<std::size_t>(n), 'x'));
    };
    const DrawPart part = readFresh({.type = 7, .payload = payload});
    EXPECT_EQ((Values{part.fields.textProp.lengthA, part.payload.size()}),
              (Values{a, 2 * characters}));
  }
}

}  // namespace
}  // namespace rvf
