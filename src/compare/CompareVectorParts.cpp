#include "compare/CompareVectorParts.h"

#include <algorithm>

#include "compare/PartBytes.h"
#include "pagemodel/VectorParts.h"

namespace rvf {

namespace {

/// Whether any two points at the same index are out of tolerance.
bool anyPointMoved(std::span<const Point> left, std::span<const Point> right, i32 tolerance) {
  const std::size_t common = std::min(left.size(), right.size());
  for (std::size_t i = 0; i < common; ++i) {
    if (exceeds(left[i].x, right[i].x, tolerance) || exceeds(left[i].y, right[i].y, tolerance)) {
      return true;
    }
  }
  return false;
}

/// Nothing is within a negative tolerance: if either is negative, only equal parts match.
Tolerances usableTolerances(const Tolerances& tolerances) {
  const bool anyIsNegative = tolerances.positionTolerance < 0 || tolerances.lineTolerance < 0;
  return anyIsNegative ? Tolerances() : tolerances;
}

/// The bits for the fill and the outline of a RECT or POLY. A fill or outline that the first part
/// does not draw is ignored.
template <class Shape>
DiffFlags fillAndOutlineBits(const Shape& a, const Shape& b) {
  const bool fillDiffers =
      a.noFill == 0 && (a.fillColour != b.fillColour || a.fillTint != b.fillTint);
  const bool outlineDiffers =
      a.noOutline == 0 && (a.lineColour != b.lineColour || a.lineTint != b.lineTint);
  return fillDiffers || outlineDiffers ? diff::kColor : 0;
}

template <class Shape>
void addFillAndOutlineToKey(MatchKey& key, const Shape& shape) {
  key.addAll(shape.noFill, shape.noOutline);
  if (shape.noFill == 0) {
    key.addAll(shape.fillColour, shape.fillTint);
  }
  if (shape.noOutline == 0) {
    key.addAll(shape.lineColour, shape.lineTint);
  }
}

DiffFlags widthBits(i32 left, i32 right, const Tolerances& tolerances) {
  return exceeds(left, right, tolerances.lineTolerance) ? diff::kLineWidth : 0;
}

}  // namespace

// LINE

bool equalLines(const DrawPart& left, const DrawPart& right) {
  const LineFields& a = left.fields.line;
  const LineFields& b = right.fields.line;
  return a.pointCount == b.pointCount && a.lineStyle == b.lineStyle && a.width == b.width &&
         a.colour == b.colour && a.tint == b.tint && a.lineKind == b.lineKind &&
         a.overprint == b.overprint && sameBytes(linePoints(left), linePoints(right));
}

DiffFlags classifyLines(const DrawPart& left, const DrawPart& right, const Tolerances& tolerances) {
  const LineFields& a = left.fields.line;
  const LineFields& b = right.fields.line;
  const DiffFlags bits = a.colour != b.colour || a.tint != b.tint ? diff::kColor : 0;
  if (a.pointCount != b.pointCount || a.lineStyle != b.lineStyle || a.lineKind != b.lineKind ||
      a.overprint != b.overprint) {
    return bits | diff::kLines;
  }
  if (anyPointMoved(linePoints(left), linePoints(right), tolerances.positionTolerance)) {
    return bits | diff::kBorderLines | diff::kPosition;
  }
  return bits | widthBits(a.width, b.width, tolerances);
}

void addLineToKey(MatchKey& key, const DrawPart& part, const Tolerances& tolerances) {
  const LineFields& fields = part.fields.line;
  const std::span<const Point> points = linePoints(part);
  const Tolerances usable = points.empty() ? tolerances : usableTolerances(tolerances);
  key.addAll(fields.colour, fields.tint, fields.pointCount, fields.lineStyle, fields.lineKind,
             fields.overprint);
  key.addWidth(fields.width, usable);
  for (const Point& point : points) {
    key.addPlace(point.x, point.y, usable);
  }
}

// RECT

// All fields of a rectangle are compared.
bool equalRects(const DrawPart& left, const DrawPart& right) {
  return std::memcmp(&left.fields.rect, &right.fields.rect, sizeof(RectFields)) == 0;
}

namespace {

// Quirk that stays: the coordinates are compared as one byte string, and the result (-1, 0 or 1) is
// tested as if it were a distance. So without a tolerance every change counts, and with one no
// change does, however large. Existing results depend on this.
bool rectangleMoved(const RectFields& a, const RectFields& b, i32 tolerance) {
  constexpr std::size_t kCoordinates = 4 * sizeof(i32);
  static_assert(offsetof(RectFields, noFill) == kCoordinates);
  const int order = std::memcmp(&a.left, &b.left, kCoordinates) == 0 ? 0 : 1;
  return exceeds(order, 0, tolerance);
}

}  // namespace

DiffFlags classifyRects(const DrawPart& left, const DrawPart& right, const Tolerances& tolerances) {
  const RectFields& a = left.fields.rect;
  const RectFields& b = right.fields.rect;
  DiffFlags bits = fillAndOutlineBits(a, b);
  if (a.noFill != b.noFill || a.shapeCode != b.shapeCode || a.shapeFlag != b.shapeFlag ||
      a.noOutline != b.noOutline) {
    return bits | diff::kShapes;
  }
  if (rectangleMoved(a, b, tolerances.positionTolerance)) {
    bits |= diff::kShapes | diff::kPosition;
  }
  return bits | widthBits(a.lineWidth, b.lineWidth, tolerances);
}

void addRectToKey(MatchKey& key, const DrawPart& part, const Tolerances& tolerances) {
  const RectFields& fields = part.fields.rect;
  const Tolerances usable = usableTolerances(tolerances);
  key.addAll(fields.shapeCode, fields.shapeFlag);
  addFillAndOutlineToKey(key, fields);
  key.addWidth(fields.lineWidth, usable);
  // With a tolerance, the position of a rectangle is ignored.
  if (usable.positionTolerance <= 0) {
    key.addAll(fields.left, fields.top, fields.right, fields.bottom);
  }
}

// POLY

bool equalPolys(const DrawPart& left, const DrawPart& right) {
  const PolyFields& a = left.fields.poly;
  const PolyFields& b = right.fields.poly;
  const PolyStyle& s = polyStyle(left);
  const PolyStyle& t = polyStyle(right);
  return a.pointCount == b.pointCount && a.polyExtra == b.polyExtra && s.noFill == t.noFill &&
         s.shapeCodeB == t.shapeCodeB && a.lineWidth == b.lineWidth &&
         s.fillColour == t.fillColour && s.fillTint == t.fillTint && s.noOutline == t.noOutline &&
         s.lineColour == t.lineColour && s.lineTint == t.lineTint && a.polyCode == b.polyCode &&
         s.shapeCodeA == t.shapeCodeA && s.shapeCodeC == t.shapeCodeC &&
         sameBytes(polyPoints(left), polyPoints(right));
}

DiffFlags classifyPolys(const DrawPart& left, const DrawPart& right, const Tolerances& tolerances) {
  constexpr i32 kAllowedSurplus = 1;
  const PolyFields& a = left.fields.poly;
  const PolyFields& b = right.fields.poly;
  const PolyStyle& s = polyStyle(left);
  const PolyStyle& t = polyStyle(right);
  const DiffFlags bits = fillAndOutlineBits(s, t);
  if (exceeds(a.pointCount, b.pointCount, kAllowedSurplus)) {
    return bits | diff::kShapes;
  }
  if (a.polyExtra != b.polyExtra || s.noFill != t.noFill || s.noOutline != t.noOutline ||
      s.shapeCodeB != t.shapeCodeB || a.polyCode != b.polyCode || s.shapeCodeA != t.shapeCodeA ||
      s.shapeCodeC != t.shapeCodeC) {
    return bits | diff::kShapes;
  }
  if (anyPointMoved(polyPoints(left), polyPoints(right), tolerances.positionTolerance)) {
    return bits | diff::kShapes | diff::kPosition;
  }
  return bits | widthBits(a.lineWidth, b.lineWidth, tolerances);
}

// The number of points may differ by one, in which case the last point of the longer polygon is
// ignored. So a polygon of n points is filed both with all its points and without the last. A
// search looks for polygons of n points, of n + 1 points without their last, and of n - 1 points.
void addPolyToKey(MatchKey& key, const DrawPart& part, const Tolerances& tolerances) {
  const PolyFields& fields = part.fields.poly;
  const PolyStyle& style = polyStyle(part);
  key.addAll(fields.polyExtra, fields.polyCode, style.shapeCodeA, style.shapeCodeB,
             style.shapeCodeC);
  addFillAndOutlineToKey(key, style);
  const auto points = polyPoints(part);
  const std::size_t dropped = key.number() == (key.use() == KeyUse::kFiled ? 1 : 2) ? 1 : 0;
  std::size_t filedCount = points.size();
  if (key.use() == KeyUse::kSearched && key.number() > 0) {
    filedCount = key.number() == 1 ? filedCount + 1 : filedCount - 1;
  }
  const Tolerances usable = usableTolerances(tolerances);
  const auto compared = points.first(points.size() - dropped);
  key.addAll(filedCount, compared.size());
  key.addWidth(fields.lineWidth, usable);
  for (const Point& point : compared) {
    key.addPlace(point.x, point.y, usable);
  }
}

// JUST1LINE

bool equalJust1Lines(const DrawPart& left, const DrawPart& right) {
  const Just1LineFields& a = left.fields.just1Line;
  const Just1LineFields& b = right.fields.just1Line;
  return a.x1 == b.x1 && a.x2 == b.x2 && a.y1 == b.y1 && a.y2 == b.y2 &&
         a.shapeCode == b.shapeCode && a.shapeFlag == b.shapeFlag && a.lineStyle == b.lineStyle &&
         a.width == b.width && a.colour == b.colour && a.tint == b.tint;
}

DiffFlags classifyJust1Lines(const DrawPart& left, const DrawPart& right,
                             const Tolerances& tolerances) {
  const Just1LineFields& a = left.fields.just1Line;
  const Just1LineFields& b = right.fields.just1Line;
  const i32 p = tolerances.positionTolerance;
  const DiffFlags bits = a.colour != b.colour || a.tint != b.tint ? diff::kColor : 0;
  if (exceeds(a.x1, b.x1, p) || exceeds(a.x2, b.x2, p) || exceeds(a.y1, b.y1, p) ||
      exceeds(a.y2, b.y2, p)) {
    return bits | diff::kBorderLines | diff::kPosition;
  }
  if (a.shapeCode != b.shapeCode || a.shapeFlag != b.shapeFlag || a.lineStyle != b.lineStyle) {
    return bits | diff::kBorderLines;
  }
  return bits | widthBits(a.width, b.width, tolerances);
}

void addJust1LineToKey(MatchKey& key, const DrawPart& part, const Tolerances& tolerances) {
  const Just1LineFields& fields = part.fields.just1Line;
  const Tolerances usable = usableTolerances(tolerances);
  key.addAll(fields.colour, fields.tint, fields.shapeCode, fields.shapeFlag, fields.lineStyle);
  key.addWidth(fields.width, usable);
  key.addPlace(fields.x1, fields.y1, usable);
  key.addPlace(fields.x2, fields.y2, usable);
}

// LINESET

bool equalLineSets(const DrawPart& left, const DrawPart& right) {
  const LineSetFields& a = left.fields.lineSet;
  const LineSetFields& b = right.fields.lineSet;
  return a.lineCount == b.lineCount && a.start == b.start && a.end == b.end &&
         a.horizontal == b.horizontal && a.lineStyle == b.lineStyle && a.width == b.width &&
         a.colour == b.colour && a.tint == b.tint &&
         sameBytes(lineOffsets(left), lineOffsets(right));
}

DiffFlags classifyLineSets(const DrawPart& left, const DrawPart& right,
                           const Tolerances& tolerances) {
  const LineSetFields& a = left.fields.lineSet;
  const LineSetFields& b = right.fields.lineSet;
  const i32 p = tolerances.positionTolerance;
  const DiffFlags bits = a.colour != b.colour || a.tint != b.tint ? diff::kColor : 0;
  if (a.lineCount != b.lineCount || a.horizontal != b.horizontal || a.lineStyle != b.lineStyle) {
    return bits | diff::kBorderLines;
  }
  const auto moved = [p](i32 x, i32 y) { return exceeds(x, y, p); };
  const std::span<const i32> offsets = lineOffsets(left);
  const bool offsetMoved = !std::ranges::equal(offsets, lineOffsets(right),
                                               [&moved](i32 x, i32 y) { return !moved(x, y); });
  if (moved(a.start, b.start) || moved(a.end, b.end) || offsetMoved) {
    return bits | diff::kBorderLines | diff::kPosition;
  }
  return bits | widthBits(a.width, b.width, tolerances);
}

void addLineSetToKey(MatchKey& key, const DrawPart& part, const Tolerances& tolerances) {
  const LineSetFields& fields = part.fields.lineSet;
  const Tolerances usable = usableTolerances(tolerances);
  key.addAll(fields.colour, fields.tint, fields.lineCount, fields.horizontal, fields.lineStyle);
  key.addWidth(fields.width, usable);
  key.addPosition(fields.start, usable);
  key.addPosition(fields.end, usable);
  for (const i32 offset : lineOffsets(part)) {
    key.addPosition(offset, usable);
  }
}

// The empty types

// The second, third and sixth words, which are 0 in a 1LINE itself.
bool equal1Lines(const DrawPart& left, const DrawPart& right) {
  constexpr u8 kWords = 0b0010'0110;
  return sameWords(left, right, kWords);
}

bool equalRecomposes(const DrawPart& left, const DrawPart& right) {
  constexpr u8 kAllWords = 0b1111'1111;
  return sameWords(left, right, kAllWords);
}

}  // namespace rvf
