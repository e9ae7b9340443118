#include "pagemodel/VectorFields.h"

#include "pagemodel/FieldVisitor.h"
#include "pagemodel/SharedFields.h"
#include "pagemodel/VectorParts.h"

namespace rvf {

namespace {

void visitPoints(std::span<const Point> points, FieldVisitor& visitor) {
  i32 index = 0;
  for (const Point& point : points) {
    visitor.enter("points", index++);
    visitor.number("x", point.x);
    visitor.number("y", point.y);
    visitor.leave();
  }
}

}  // namespace

void visitLine(const DrawPart& part, FieldVisitor& visitor) {
  const LineFields& fields = part.fields.line;
  visitor.number("pointCount", fields.pointCount);
  visitPoints(linePoints(part), visitor);
  visitor.number("lineKind", fields.lineKind);
  visitor.number("lineStyle", fields.lineStyle);
  visitor.number("width", fields.width);
  visitor.colour("colour", fields.colour);
  visitor.number("tint", fields.tint);
  visitor.number("overprint", fields.overprint);
}

void visitRect(const DrawPart& part, FieldVisitor& visitor) {
  const RectFields& fields = part.fields.rect;
  visitBox(fields, visitor);
  visitor.number("noFill", fields.noFill);
  visitor.number("noOutline", fields.noOutline);
  visitor.number("shapeCode", fields.shapeCode);
  visitor.number("shapeFlag", fields.shapeFlag);
  visitor.number("lineWidth", fields.lineWidth);
  visitor.colour("fillColour", fields.fillColour);
  visitor.number("fillTint", fields.fillTint);
  visitor.colour("lineColour", fields.lineColour);
  visitor.number("lineTint", fields.lineTint);
}

namespace {

void visitGradient(const Gradient& gradient, FieldVisitor& visitor) {
  visitor.enter("gradient", FieldVisitor::kSingle);
  visitor.number("gradientKind", gradient.gradientKind);
  const std::size_t stopCount = gradient.stopPositions.size();
  visitor.number("stopCount", static_cast<i64>(stopCount));
  for (std::size_t i = 0; i < stopCount; ++i) {
    visitor.enter("stops", static_cast<i32>(i));
    visitor.number("tint", gradient.stopTints[i]);
    visitor.colour("colour", gradient.stopColours[i]);
    visitor.floating("position", gradient.stopPositions[i]);
    visitor.leave();
  }
  visitor.number("gradientCode", gradient.gradientCode);
  visitor.floating("originX", gradient.originX);
  visitor.floating("originY", gradient.originY);
  visitor.leave();
}

void visitPolyStyle(const PolyStyle& style, FieldVisitor& visitor) {
  visitor.enter("style", FieldVisitor::kSingle);
  visitor.number("shapeCodeA", style.shapeCodeA);
  visitor.number("noFill", style.noFill);
  visitor.number("noOutline", style.noOutline);
  visitor.number("shapeCodeB", style.shapeCodeB);
  visitor.colour("fillColour", style.fillColour);
  visitor.number("fillTint", style.fillTint);
  visitor.colour("lineColour", style.lineColour);
  visitor.number("lineTint", style.lineTint);
  visitor.number("shapeCodeC", style.shapeCodeC);
  visitor.number("shapeCodeD", style.shapeCodeD);
  visitor.number("hasGradient", style.hasGradient);
  if (style.gradient != nullptr) {
    visitGradient(*style.gradient, visitor);
  }
  visitor.leave();
}

}  // namespace

void visitPoly(const DrawPart& part, FieldVisitor& visitor) {
  const PolyFields& fields = part.fields.poly;
  visitor.number("pointCount", fields.pointCount);
  visitPoints(fields.pointCount == 0 ? std::span<const Point>() : polyPoints(part), visitor);
  visitor.number("lineWidth", fields.lineWidth);
  visitor.number("polyCode", fields.polyCode);
  visitor.number("polyExtra", fields.polyExtra);
  if (fields.style == kSetPointer) {
    visitPolyStyle(polyStyle(part), visitor);
  }
}

void visitJust1Line(const DrawPart& part, FieldVisitor& visitor) {
  const Just1LineFields& fields = part.fields.just1Line;
  visitor.number("x1", fields.x1);
  visitor.number("x2", fields.x2);
  visitor.number("y1", fields.y1);
  visitor.number("y2", fields.y2);
  visitor.number("shapeCode", fields.shapeCode);
  visitor.number("shapeFlag", fields.shapeFlag);
  visitor.number("lineStyle", fields.lineStyle);
  visitor.number("width", fields.width);
  visitor.colour("colour", fields.colour);
  visitor.number("tint", fields.tint);
}

void visitLineSet(const DrawPart& part, FieldVisitor& visitor) {
  const LineSetFields& fields = part.fields.lineSet;
  visitor.number("lineCount", fields.lineCount);
  visitor.number("start", fields.start);
  visitor.number("end", fields.end);
  visitNumbers("offsets", lineOffsets(part), visitor);
  visitor.number("horizontal", fields.horizontal);
  visitor.number("lineStyle", fields.lineStyle);
  visitor.number("width", fields.width);
  visitor.colour("colour", fields.colour);
  visitor.number("tint", fields.tint);
}

}  // namespace rvf
