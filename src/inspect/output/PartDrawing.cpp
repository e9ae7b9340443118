#include "inspect/output/PartDrawing.h"

#include <algorithm>
#include <string>

#include "inspect/model/ListExplanation.h"
#include "inspect/model/PartPlace.h"
#include "inspect/output/ImageData.h"
#include "inspect/output/ShownText.h"
#include "pagemodel/ImageParts.h"
#include "pagemodel/TextParts.h"
#include "pagemodel/VectorParts.h"

namespace rvf::inspect {

namespace {

using pugi::xml_node;

xml_node element(xml_node parent, const char* name, i32 index) {
  xml_node node = parent.append_child(name);
  node.append_attribute("data-part") = index;
  return node;
}

void set(xml_node node, const char* name, const std::string& value) {
  node.append_attribute(name) = value.c_str();
}
void set(xml_node node, const char* name, i64 value) {
  node.append_attribute(name) = static_cast<long long>(value);
}

void setStroke(xml_node node, u32 colour, u8 tint, i64 width, const DrawingTarget& target) {
  set(node, "stroke", svgColour(colour, tint, target.style.colours));
  set(node, "stroke-width", std::max<i64>(width, 1));
}

void setBox(xml_node node, const Box& box) {
  set(node, "x", std::min(box.left, box.right));
  set(node, "y", std::min(box.top, box.bottom));
  set(node, "width", std::abs(box.right - box.left));
  set(node, "height", std::abs(box.bottom - box.top));
}

std::string pointsText(std::span<const Point> points) {
  std::string text;
  for (const Point& point : points) {
    text += std::to_string(point.x) + "," + std::to_string(point.y) + " ";
  }
  return text;
}

void drawText(const DrawPart& part, i32 index, const DrawingTarget& target) {
  const TextFields& fields = part.fields.text;
  xml_node node = element(target.ink, "text", index);
  const auto font = target.style.fonts.find(fields.fontId);
  const FontStyle style = font == target.style.fonts.end() ? FontStyle() : font->second;
  const i64 size = style.size > 0 ? style.size : target.sizes.sizeOf(fields.fontId);
  set(node, "font-family", style.family);
  set(node, "font-size", size);
  set(node, "fill", svgColour(fields.colour, fields.tint, target.style.colours));
  set(node, "xml:space", "preserve");
  std::u16string_view left(textCharacters(part).data(), textCharacters(part).size());
  for (const TextRun& run : textRuns(part)) {
    const std::u16string_view characters = left.substr(0, run.charCount);
    left.remove_prefix(characters.size());
    xml_node span = node.append_child("tspan");
    set(span, "x", run.x);
    set(span, "y", run.y);
    span.append_child(pugi::node_pcdata).set_value(shownText(characters).c_str());
  }
  if (fields.rotation != 0 && !textRuns(part).empty()) {
    const TextRun& start = textRuns(part).front();
    set(node, "transform",
        "rotate(" + std::to_string(kTextRotationStep * fields.rotation) + " " +
            std::to_string(start.x) + " " + std::to_string(start.y) + ")");
  }
}

void drawLine(const DrawPart& part, i32 index, const DrawingTarget& target) {
  const LineFields& fields = part.fields.line;
  xml_node node = element(target.ink, "polyline", index);
  set(node, "points", pointsText(linePoints(part)));
  set(node, "fill", "none");
  setStroke(node, fields.colour, fields.tint, fields.width, target);
}

void drawJust1Line(const DrawPart& part, i32 index, const DrawingTarget& target) {
  const Just1LineFields& fields = part.fields.just1Line;
  xml_node node = element(target.ink, "line", index);
  set(node, "x1", fields.x1);
  set(node, "y1", fields.y1);
  set(node, "x2", fields.x2);
  set(node, "y2", fields.y2);
  setStroke(node, fields.colour, fields.tint, fields.width, target);
}

void drawLineSet(const DrawPart& part, i32 index, const DrawingTarget& target) {
  const LineSetFields& fields = part.fields.lineSet;
  const std::string start = std::to_string(fields.start), end = std::to_string(fields.end);
  std::string path;
  for (const i32 offset : lineOffsets(part)) {
    const std::string at = std::to_string(offset);
    const bool isHorizontal = fields.horizontal != 0;
    path.append("M").append(isHorizontal ? start : at).append(" ");
    path.append(isHorizontal ? at : start).append(isHorizontal ? "H" : "V").append(end);
  }
  xml_node node = element(target.ink, "path", index);
  set(node, "d", path);
  setStroke(node, fields.colour, fields.tint, fields.width, target);
}

void drawRect(const DrawPart& part, i32 index, const DrawingTarget& target) {
  const RectFields& fields = part.fields.rect;
  xml_node node = element(target.ink, "rect", index);
  setBox(node, {fields.left, fields.top, fields.right, fields.bottom});
  set(node, "fill",
      fields.noFill != 0 ? "none"
                         : svgColour(fields.fillColour, fields.fillTint, target.style.colours));
  if (fields.noOutline == 0) {
    setStroke(node, fields.lineColour, fields.lineTint, fields.lineWidth, target);
  }
}

// Draws the stops from left to right; the other fields of a gradient have no known meaning.
std::string defineGradient(const Gradient& gradient, const DrawingTarget& target) {
  xml_node definitions = target.definitions;
  xml_node node = definitions.append_child("linearGradient");
  const std::string id = "gradient-" + std::to_string(target.gradients++);
  set(node, "id", id);
  for (std::size_t i = 0; i < gradient.stopPositions.size(); ++i) {
    xml_node stop = node.append_child("stop");
    stop.append_attribute("offset") = std::clamp(gradient.stopPositions[i], 0.0, 1.0);
    set(stop, "stop-color",
        svgColour(gradient.stopColours[i], gradient.stopTints[i], target.style.colours));
  }
  return "url(#" + id + ")";
}

void drawPoly(const DrawPart& part, i32 index, const DrawingTarget& target) {
  const PolyStyle& style = polyStyle(part);
  xml_node node = element(target.ink, "polygon", index);
  set(node, "points", pointsText(polyPoints(part)));
  if (style.noFill != 0) {
    set(node, "fill", "none");
  } else if (style.gradient != nullptr && !style.gradient->stopPositions.empty()) {
    set(node, "fill", defineGradient(*style.gradient, target));
  } else {
    set(node, "fill", svgColour(style.fillColour, style.fillTint, target.style.colours));
  }
  if (style.noOutline == 0) {
    setStroke(node, style.lineColour, style.lineTint, part.fields.poly.lineWidth, target);
  }
}

/// An empty frame with a label.
void drawFrame(const Box& box, const std::string& label, i32 index, xml_node parent) {
  xml_node group = element(parent, "g", index);
  xml_node frame = group.append_child("rect");
  setBox(frame, box);
  set(frame, "fill", "#f4f4f4");
  set(frame, "stroke", "#808080");
  set(frame, "stroke-width", 2);
  constexpr i64 kSmallest = 8, kLargest = 24;
  const i64 fitting = 2 * std::abs(box.right - box.left) / static_cast<i64>(label.size() + 1);
  if (fitting < kSmallest) {
    group.append_child("title").append_child(pugi::node_pcdata).set_value(label.c_str());
    return;
  }
  xml_node text = group.append_child("text");
  set(text, "x", std::min(box.left, box.right) + 8);
  set(text, "y", std::min(box.top, box.bottom) + 32);
  set(text, "font-family", "sans-serif");
  set(text, "font-size", std::min(fitting, kLargest));
  set(text, "fill", "#606060");
  text.append_child(pugi::node_pcdata).set_value(label.c_str());
}

void drawImage(const DrawPart& part, i32 index, const DrawingTarget& target) {
  const ImageFields& fields = part.fields.image;
  if (fields.info == kNullPointer) {
    return;
  }
  const ImageInfo& info = imageInfo(part);
  const Box box{info.left, info.top, info.right, info.bottom};
  const std::span<const std::byte> bytes = imageBytes(part);
  const std::string type = redactsTexts ? "" : embeddableType(bytes);
  if (type.empty()) {
    drawFrame(box,
              "image of kind " + std::to_string(fields.imageKind) + ", " +
                  std::to_string(fields.pixelWidth) + " x " + std::to_string(fields.pixelHeight) +
                  ", " + counted(static_cast<i64>(bytes.size()), "byte"),
              index, target.ink);
    return;
  }
  xml_node node = element(target.ink, "image", index);
  setBox(node, box);
  set(node, "preserveAspectRatio", "none");
  set(node, "href", "data:" + type + ";base64," + base64(bytes));
}

// Only the position of resources, imported pages and barcodes is known.
void drawPlaceholder(const DrawPart& part, i32 index, const DrawingTarget& target) {
  constexpr i64 kWidth = 300, kHeight = 60;
  if (const std::optional<Place> place = placeOf(part)) {
    const std::u16string text = textOf(part);
    drawFrame({place->x, place->y, place->x + kWidth, place->y + kHeight},
              typeName(part.type) + (text.empty() ? "" : " " + shownText(text)), index, target.ink);
  }
}

void drawMark(const DrawPart& part, i32 index, const DrawingTarget& target) {
  const std::optional<Box> box = boxOf(part);
  if (!box) {
    return;
  }
  xml_node node = element(target.marks, "rect", index);
  setBox(node, *box);
  set(node, "fill", "none");
  set(node, "stroke", "#4080c0");
  set(node, "stroke-opacity", "0.5");
  set(node, "stroke-width", 2);
  set(node, "stroke-dasharray", "12 8");
  const std::u16string text = textOf(part);
  node.append_child("title")
      .append_child(pugi::node_pcdata)
      .set_value((typeName(part.type) + (text.empty() ? "" : " " + shownText(text))).c_str());
}

}  // namespace

void drawPart(const DrawPart& part, i32 index, const DrawingTarget& target) {
  switch (part.type) {
    case PartType::kText:
      return drawText(part, index, target);
    case PartType::kLine:
      return drawLine(part, index, target);
    case PartType::kRect:
      return drawRect(part, index, target);
    case PartType::kPoly:
      return drawPoly(part, index, target);
    case PartType::kJust1Line:
      return drawJust1Line(part, index, target);
    case PartType::kLineSet:
      return drawLineSet(part, index, target);
    case PartType::kImage:
      return drawImage(part, index, target);
    case PartType::kResource:
    case PartType::kImportPage:
    case PartType::kBcocaBarcode:
      return drawPlaceholder(part, index, target);
    case PartType::kStaticRef:
      return;
    default:
      return drawMark(part, index, target);
  }
}

}  // namespace rvf::inspect
