#include "pagemodel/VectorParts.h"

#include <algorithm>
#include <cmath>
#include <new>

#include "base/Sizes.h"
#include "base/Wrapping.h"
#include "pagemodel/EmptyParts.h"
#include "pagemodel/HeldDecoding.h"
#include "pagemodel/PartVersions.h"
#include "pagemodel/PayloadText.h"
#include "pagemodel/Shift.h"

namespace rvf {

namespace {

constexpr i32 kPointSize = sizeof(Point);
constexpr i32 kStopSize = 16;  // tint, colour and position, or two floating values

// A point has the same form on disk and in memory.
template <class Input>
void readPoints(std::span<Point> points, Input& input) {
  input.ReadWhole(points.data(), static_cast<i32>(points.size_bytes()));
}

void shiftPoints(std::span<Point> points, i32 dx, i32 dy) {
  for (Point& point : points) {
    shiftPlace(point, dx, dy);
  }
}

}  // namespace

// LINE

std::span<Point> linePoints(DrawPart& part) {
  return {part.payload.at<Point>(0), asSize(part.fields.line.pointCount)};
}

std::span<const Point> linePoints(const DrawPart& part) {
  return {part.payload.at<Point>(0), asSize(part.fields.line.pointCount)};
}

namespace {

template <class Input>
void decodeLine(DrawPart& part, Input& input, i32 v) {
  using namespace part_version;
  LineFields& fields = part.fields.line;
  const i32 pointCount = input.checkedCount(input.ReadI32(), kPointSize);
  part.payload.resize(i64{pointCount} * kPointSize);
  fields.pointCount = pointCount;
  fields.pointCapacity = pointCount;
  fields.points = pointerWord(pointCount > 0);
  readPoints(linePoints(part), input);
  fields.lineKind = input.ReadI32();
  fields.lineStyle = input.ReadI32();
  fields.width = input.ReadI32();
  fields.colour = readColour(input);
  fields.tint = v >= kTint ? readLow8(input) : u8{0};
  fields.overprint = v >= kOverprint ? input.ReadU8() : u8{0};
}

}  // namespace

void readLine(DrawPart& part, eArchive& archive, i32 v) { decodeLine(part, archive, v); }

void readLine(DrawPart& part, HeldInput& held, i32 v) {
  decodeHeld(held, v, [&part, v](HeldInput& input) { decodeLine(part, input, v); });
}

void shiftLine(DrawPart& part, i32 dx, i32 dy) { shiftPoints(linePoints(part), dx, dy); }

// RECT

namespace {

template <class Input>
void readOldRectStyle(RectFields& fields, Input& input) {
  fields.noFill = readLow8(input);
  fields.shapeCode = readLow8(input);
  fields.lineWidth = readLow16(input);
  fields.fillColour = readColour(input);
  fields.noOutline = readLow8(input);
  fields.lineColour = readColour(input);
  fields.shapeFlag = readLow8(input);
}

template <class Input>
void readRectStyle(RectFields& fields, Input& input, i32 v) {
  using namespace part_version;
  fields.noFill = input.ReadU8();
  fields.noOutline = input.ReadU8();
  fields.shapeCode = input.ReadU8();
  fields.shapeFlag = input.ReadU8();
  fields.lineWidth = readLow16(input);
  fields.fillColour = readColour(input);
  fields.fillTint = v >= kTint ? readLow8(input) : u8{0};
  fields.lineColour = readColour(input);
  fields.lineTint = v >= kTint ? readLow8(input) : u8{0};
}

template <class Input>
void decodeRect(DrawPart& part, Input& input, i32 v) {
  RectFields& fields = part.fields.rect;
  fields.left = input.ReadI32();
  fields.top = input.ReadI32();
  fields.right = input.ReadI32();
  fields.bottom = input.ReadI32();
  if (v < part_version::kCompactFields) {
    readOldRectStyle(fields, input);
  } else {
    readRectStyle(fields, input, v);
  }
}

}  // namespace

void readRect(DrawPart& part, eArchive& archive, i32 v) { decodeRect(part, archive, v); }

void readRect(DrawPart& part, HeldInput& held, i32 v) {
  decodeHeld(held, v, [&part, v](HeldInput& input) { decodeRect(part, input, v); });
}

void shiftRect(DrawPart& part, i32 dx, i32 dy) { shiftBox(part.fields.rect, dx, dy); }

// POLY

PolyStyle& polyStyle(DrawPart& part) { return *part.payload.at<PolyStyle>(0); }

const PolyStyle& polyStyle(const DrawPart& part) {
  static const PolyStyle kNone;
  return part.fields.poly.style == kSetPointer ? *part.payload.at<PolyStyle>(0) : kNone;
}

std::span<Point> polyPoints(DrawPart& part) {
  return {part.payload.at<Point>(sizeof(PolyStyle)), part.fields.poly.pointCount};
}

std::span<const Point> polyPoints(const DrawPart& part) {
  return {part.payload.at<Point>(sizeof(PolyStyle)), part.fields.poly.pointCount};
}

namespace {

PolyStyle& makePolyStyle(DrawPart& part, u16 pointCount) {
  part.payload.resize(static_cast<i64>(sizeof(PolyStyle)) + i64{pointCount} * kPointSize);
  auto* style = new (part.payload.data()) PolyStyle();
  part.fields.poly.style = kSetPointer;
  part.fields.poly.points = pointerWord(pointCount > 0);
  part.fields.poly.pointCount = pointCount;
  return *style;
}

// Old files store a colour as a floating-point number. Values out of range come from damage.
u32 colourFromFloating(f64 value) {
  constexpr f64 kLimit = 9.0e15;
  return std::fabs(value) < kLimit ? static_cast<u32>(static_cast<i64>(value)) : 0U;
}

std::unique_ptr<Gradient> readGradient(eArchive& archive, i32 v) {
  auto gradient = std::make_unique<Gradient>();
  gradient->gradientKind = archive.ReadU8();
  const i32 stopCount = archive.checkedCount(archive.ReadI16(), kStopSize);
  for (i32 i = 0; i < stopCount; ++i) {
    if (v < part_version::kGradientTints) {
      gradient->stopTints.push_back(0);
      gradient->stopColours.push_back(colourFromFloating(archive.ReadF64()));
    } else {
      gradient->stopTints.push_back(readLow8(archive));
      gradient->stopColours.push_back(readColour(archive));
    }
    gradient->stopPositions.push_back(archive.ReadF64());
  }
  gradient->gradientCode = archive.ReadI32();
  gradient->originX = archive.ReadF64();
  gradient->originY = archive.ReadF64();
  return gradient;
}

void readOldPolyStyle(PolyFields& fields, PolyStyle& style, eArchive& archive) {
  style.shapeCodeA = readLow8(archive);
  style.noFill = readLow8(archive);
  style.shapeCodeB = readLow8(archive);
  fields.lineWidth = archive.ReadI32();
  style.fillColour = readColour(archive);
  style.noOutline = readLow8(archive);
}

void readPolyStyle(PolyFields& fields, PolyStyle& style, eArchive& archive, i32 v) {
  style.shapeCodeA = archive.ReadU8();
  style.noFill = archive.ReadU8();
  style.noOutline = archive.ReadU8();
  style.shapeCodeB = readLow8(archive);
  fields.lineWidth = archive.ReadI32();
  style.fillColour = readColour(archive);
  style.fillTint = v >= part_version::kTint ? readLow8(archive) : u8{0};
}

u16 readPolyExtra(eArchive& archive, i32 v) {
  using namespace part_version;
  if (v < kPolyExtra) {
    return 0;
  }
  return v < kShortPointCount ? readLow16(archive) : archive.ReadU16();
}

u8 readShapeCodeD(eArchive& archive, i32 v) {
  using namespace part_version;
  if (v < kShapeCodeD) {
    return 0;
  }
  return v < kGradient ? readLow8(archive) : archive.ReadU8();
}

}  // namespace

void readPoly(DrawPart& part, eArchive& archive, i32 v) {
  using namespace part_version;
  const u16 stored = v < kShortPointCount ? readLow16(archive) : archive.ReadU16();
  const auto pointCount = static_cast<u16>(archive.checkedCount(stored, kPointSize));
  PolyStyle& style = makePolyStyle(part, pointCount);
  PolyFields& fields = part.fields.poly;
  readPoints(polyPoints(part), archive);
  if (v < kCompactFields) {
    readOldPolyStyle(fields, style, archive);
  } else {
    readPolyStyle(fields, style, archive, v);
  }
  style.lineColour = readColour(archive);
  style.lineTint = v >= kTint ? readLow8(archive) : u8{0};
  fields.polyCode = readLow8(archive);
  style.shapeCodeC = v >= kShapeCodeC ? archive.ReadU8() : u8{0};
  fields.polyExtra = readPolyExtra(archive, v);
  style.shapeCodeD = readShapeCodeD(archive, v);
  style.hasGradient = v >= kGradient ? archive.ReadU8() : u8{0};
  if (style.hasGradient != 0) {
    style.gradient = readGradient(archive, v);
  }
  if (pointCount == 0) {
    releasePoly(part);
    makeUnknown(part);
  }
}

void copyPoly(DrawPart& target, const DrawPart& source) {
  if (source.fields.poly.style != kSetPointer) {
    target.fields = source.fields;
    return;
  }
  PolyStyle& style = makePolyStyle(target, source.fields.poly.pointCount);
  const PolyStyle& from = polyStyle(source);
  target.fields = source.fields;
  style.gradient = from.gradient == nullptr ? nullptr : std::make_unique<Gradient>(*from.gradient);
  style.setFields(from);
  std::ranges::copy(polyPoints(source), polyPoints(target).begin());
}

void shiftPoly(DrawPart& part, i32 dx, i32 dy) {
  if (part.fields.poly.style != kSetPointer) {
    return;
  }
  shiftPoints(polyPoints(part), dx, dy);
  if (Gradient* gradient = polyStyle(part).gradient.get()) {
    gradient->originX += dx;
    gradient->originY += dy;
  }
}

void releasePoly(DrawPart& part) {
  if (part.fields.poly.style == kSetPointer) {
    polyStyle(part).~PolyStyle();
    part.fields.poly.style = kNullPointer;
    part.fields.poly.points = kNullPointer;
    part.fields.poly.pointCount = 0;
  }
}

// JUST1LINE

namespace {

template <class Input>
void decodeJust1Line(DrawPart& part, Input& input, i32) {
  Just1LineFields& fields = part.fields.just1Line;
  fields.x1 = input.ReadI32();
  fields.x2 = input.ReadI32();
  fields.y1 = input.ReadI32();
  fields.y2 = input.ReadI32();
  fields.shapeCode = input.ReadU8();
  fields.shapeFlag = input.ReadU8();
  fields.lineStyle = input.ReadU8();
  fields.width = input.ReadI32();
  fields.colour = readColour(input);
  fields.tint = readLow8(input);
}

}  // namespace

void readJust1Line(DrawPart& part, eArchive& archive, i32 v) { decodeJust1Line(part, archive, v); }

void readJust1Line(DrawPart& part, HeldInput& held, i32 v) {
  decodeHeld(held, v, [&part, v](HeldInput& input) { decodeJust1Line(part, input, v); });
}

void shiftJust1Line(DrawPart& part, i32 dx, i32 dy) {
  Just1LineFields& fields = part.fields.just1Line;
  fields.x1 = wrappingSum(fields.x1, dx);
  fields.x2 = wrappingSum(fields.x2, dx);
  fields.y1 = wrappingSum(fields.y1, dy);
  fields.y2 = wrappingSum(fields.y2, dy);
}

// LINESET

std::span<i32> lineOffsets(DrawPart& part) {
  return {part.payload.at<i32>(0), part.fields.lineSet.lineCount};
}

std::span<const i32> lineOffsets(const DrawPart& part) {
  return {part.payload.at<i32>(0), part.fields.lineSet.lineCount};
}

namespace {

template <class Input>
void decodeLineSet(DrawPart& part, Input& input, i32) {
  LineSetFields& fields = part.fields.lineSet;
  const auto lineCount = static_cast<u16>(input.checkedCount(input.ReadU16(), sizeof(i32)));
  fields.lineCount = lineCount;
  fields.lineCapacity = lineCount;
  fields.offsets = pointerWord(lineCount > 0);
  fields.start = input.ReadI32();
  fields.end = input.ReadI32();
  part.payload.resize(i64{lineCount} * i64{sizeof(i32)});
  input.ReadWhole(part.payload.data(), lineCount * i32{sizeof(i32)});
  fields.horizontal = readLow8(input);
  fields.lineStyle = input.ReadU8();
  fields.width = input.ReadI32();
  fields.colour = readColour(input);
  fields.tint = readLow8(input);
}

}  // namespace

void readLineSet(DrawPart& part, eArchive& archive, i32 v) { decodeLineSet(part, archive, v); }

void readLineSet(DrawPart& part, HeldInput& held, i32 v) {
  decodeHeld(held, v, [&part, v](HeldInput& input) { decodeLineSet(part, input, v); });
}

void shiftLineSet(DrawPart& part, i32 dx, i32 dy) {
  LineSetFields& fields = part.fields.lineSet;
  const bool isHorizontal = fields.horizontal != 0;
  const i32 along = isHorizontal ? dx : dy;
  const i32 across = isHorizontal ? dy : dx;
  fields.start = wrappingSum(fields.start, along);
  fields.end = wrappingSum(fields.end, along);
  for (i32& offset : lineOffsets(part)) {
    offset = wrappingSum(offset, across);
  }
}

}  // namespace rvf
