#include "pagemodel/VectorParts.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

#include "pagemodel/PartSweep.h"

namespace rvf {
namespace {

using test::kBlue;
using test::kRed;
using test::since;
using test::Values;

template <class Points>
Values flat(const Points& points) {
  Values values;
  for (const Point& point : points) values.insert(values.end(), {point.x, point.y});
  return values;
}

TEST(VectorParts, LinesOfEveryVersion) {
  test::forEveryVersion(2, true, [](DrawPart& part, int v, bool) {
    const LineFields& f = part.fields.line;
    EXPECT_EQ(flat(linePoints(part)), (Values{10, 20, 30, 40}));
    EXPECT_EQ(
        (Values{f.pointCapacity, f.lineKind, f.lineStyle, f.width, f.colour, f.tint, f.overprint}),
        (Values{2, 5, 6, 15, kBlue, since(108, v, 80), since(109, v, 7)}));
  });
  test::forEveryVersion(30, true, [](DrawPart& part, int, bool) {
    const Just1LineFields& f = part.fields.just1Line;
    EXPECT_EQ((Values{f.x1, f.x2, f.y1, f.y2}), (Values{10, 30, 20, 40}));
    EXPECT_EQ((Values{f.shapeCode, f.shapeFlag, f.lineStyle, f.width, f.colour, f.tint}),
              (Values{1, 2, 3, 15, kBlue, 80}));
  });
  test::forEveryVersion(31, true, [](DrawPart& part, int, bool) {
    const LineSetFields& f = part.fields.lineSet;
    const auto offsets = lineOffsets(part);
    EXPECT_EQ(Values(offsets.begin(), offsets.end()), (Values{20, 40, 70}));
    EXPECT_EQ((Values{f.start, f.end, f.horizontal, f.lineStyle, f.width, f.colour, f.tint}),
              (Values{10, 500, 1, 2, 15, kBlue, 80}));
  });
}

TEST(VectorParts, RectOfEveryVersion) {
  test::forEveryVersion(3, true, [](DrawPart& part, int v, bool) {
    const RectFields& f = part.fields.rect;
    EXPECT_EQ((Values{f.left, f.top, f.right, f.bottom}), (Values{100, 200, 300, 400}));
    EXPECT_EQ((Values{f.noFill, f.noOutline, f.shapeCode, f.shapeFlag, f.lineWidth}),
              (Values{1, 2, 3, 4, 15}));
    EXPECT_EQ((Values{f.fillColour, f.lineColour, f.fillTint, f.lineTint}),
              (Values{kBlue, kRed, since(108, v, 80), since(108, v, 90)}));
  });
}

TEST(VectorParts, PolyOfEveryVersion) {
  test::forEveryVersion(4, true, [](DrawPart& part, int v, bool) {
    const PolyFields& f = part.fields.poly;
    const PolyStyle& s = polyStyle(part);
    EXPECT_EQ(flat(polyPoints(part)), (Values{10, 20, 30, 40, 50, 25}));
    EXPECT_EQ((Values{f.lineWidth, f.polyCode, f.polyExtra}), (Values{15, 5, since(114, v, 6)}));
    EXPECT_EQ(
        (Values{s.shapeCodeA, s.shapeCodeB, s.shapeCodeC, s.shapeCodeD, s.noFill, s.noOutline}),
        (Values{11, 12, since(113, v, 13), since(150, v, 14), 1, 2}));
    EXPECT_EQ((Values{s.fillColour, s.lineColour, s.fillTint, s.lineTint, s.hasGradient}),
              (Values{kBlue, kRed, since(108, v, 80), since(108, v, 90), since(152, v, 1)}));
    ASSERT_EQ(s.gradient != nullptr, v >= 152);
    if (v < 152) return;
    const Gradient& g = *s.gradient;
    EXPECT_EQ((Values{g.gradientKind, g.gradientCode}), (Values{1, 2}));
    EXPECT_EQ(g.originX + 10 * g.originY, 1.5 + 25);
    EXPECT_EQ(g.stopColours, (std::vector<u32>{kRed, kBlue}));
    EXPECT_EQ(g.stopPositions, (std::vector{0.5, 0.75}));
    EXPECT_EQ(Values(g.stopTints.begin(), g.stopTints.end()),
              (Values{since(155, v, 70), since(155, v, 60)}));
  });
}

TEST(VectorParts, PolyWithoutPointsIsUnknownAndReadToItsEnd) {
  for (const int v : {100, 105, 113, 114, 150, 151, 152, 154, 157}) {
    DrawPart part = test::readFresh(test::image(), v);
    test::readOver(part, test::poly({.points = {}, .gradient = test::Gradient{}}), v);
    EXPECT_EQ(part.type, PartType::kUnknown);
    EXPECT_EQ(part.poolKind, 7);
    EXPECT_TRUE(test::hasNoFields(part));
    EXPECT_EQ(part.extraId, since(149, v, 99));
  }
}

TEST(VectorParts, OldGradientColoursAreFloatingNumbers) {
  const std::string stored = test::ByteWriter().f64(255.0).bytes;
  constexpr double kNoNumber = std::numeric_limits<double>::quiet_NaN();
  for (const auto& [value, colour] : {std::pair{255.9, 255U},
                                      {4294967295.0, 0xFFFFFFFFU},
                                      {-1.0, 0xFFFFFFFFU},
                                      {kNoNumber, 0U},
                                      {1e300, 0U}}) {
    test::ByteWriter w;
    writePart(w, test::poly({.gradient = test::Gradient{}}), 154);
    w.bytes.replace(w.bytes.find(stored), 8, test::ByteWriter().f64(value).bytes);
    test::LoadedBytes file(w.bytes);
    DrawPart part;
    readDrawPart(part, file.archive);
    EXPECT_EQ(polyStyle(part).gradient->stopColours[0], colour);
  }
}

}  // namespace
}  // namespace rvf
