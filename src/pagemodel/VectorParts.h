#pragma once

#include <memory>
#include <span>
#include <vector>

#include "pagemodel/DrawPart.h"
#include "pagemodel/FieldVisitor.h"
#include "storage/HeldInput.h"

namespace rvf {

// LINE, RECT, POLY, JUST1LINE and LINESET.
//
// Payloads: the points of a LINE; the PolyStyle of a POLY and then its points; the offsets of a
// LINESET.

struct Point {
  i32 x;
  i32 y;
};
static_assert(sizeof(Point) == 8);

struct Gradient {
  u8 gradientKind = 0;
  i32 gradientCode = 0;
  f64 originX = 0;
  f64 originY = 0;
  std::vector<f64> stopPositions;
  std::vector<u8> stopTints;
  std::vector<u32> stopColours;
};

struct PolyStyleFields {
  u32 fillColour = 0;
  u32 lineColour = 0;
  u8 hasGradient = 0;
  u8 shapeCodeA = 0;
  u8 noFill = 0;
  u8 shapeCodeB = 0;
  u8 noOutline = 0;
  u8 fillTint = 0;
  u8 lineTint = 0;
  u8 shapeCodeC = 0;
  u8 shapeCodeD = 0;
};

struct PolyStyle : PolyStyleFields {
  /// Copies everything except the gradient.
  void setFields(const PolyStyleFields& fields) { PolyStyleFields::operator=(fields); }

  std::unique_ptr<Gradient> gradient;
};

[[nodiscard]] std::span<Point> linePoints(DrawPart& part);
[[nodiscard]] std::span<const Point> linePoints(const DrawPart& part);
[[nodiscard]] PolyStyle& polyStyle(DrawPart& part);
[[nodiscard]] const PolyStyle& polyStyle(const DrawPart& part);
[[nodiscard]] std::span<Point> polyPoints(DrawPart& part);
[[nodiscard]] std::span<const Point> polyPoints(const DrawPart& part);
[[nodiscard]] std::span<i32> lineOffsets(DrawPart& part);
[[nodiscard]] std::span<const i32> lineOffsets(const DrawPart& part);

void readLine(DrawPart& part, eArchive& archive, i32 v);
void readLine(DrawPart& part, HeldInput& held, i32 v);
void visitLine(const DrawPart& part, FieldVisitor& visitor);
void shiftLine(DrawPart& part, i32 dx, i32 dy);

void readRect(DrawPart& part, eArchive& archive, i32 v);
void readRect(DrawPart& part, HeldInput& held, i32 v);
void visitRect(const DrawPart& part, FieldVisitor& visitor);
void shiftRect(DrawPart& part, i32 dx, i32 dy);

/// A POLY without points becomes an UNKNOWN part after its record has been read.
void readPoly(DrawPart& part, eArchive& archive, i32 v);
void visitPoly(const DrawPart& part, FieldVisitor& visitor);
void copyPoly(DrawPart& target, const DrawPart& source);
void shiftPoly(DrawPart& part, i32 dx, i32 dy);
void releasePoly(DrawPart& part);

void readJust1Line(DrawPart& part, eArchive& archive, i32 v);
void readJust1Line(DrawPart& part, HeldInput& held, i32 v);
void visitJust1Line(const DrawPart& part, FieldVisitor& visitor);
void shiftJust1Line(DrawPart& part, i32 dx, i32 dy);

void readLineSet(DrawPart& part, eArchive& archive, i32 v);
void readLineSet(DrawPart& part, HeldInput& held, i32 v);
void visitLineSet(const DrawPart& part, FieldVisitor& visitor);
void shiftLineSet(DrawPart& part, i32 dx, i32 dy);

}  // namespace rvf
