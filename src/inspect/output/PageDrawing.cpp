#include "inspect/output/PageDrawing.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <numbers>
#include <optional>
#include <pugixml.hpp>
#include <span>

#include "inspect/model/PageVerdict.h"
#include "inspect/model/PartPlace.h"
#include "inspect/output/PartDrawing.h"
#include "inspect/output/XmlText.h"
#include "pagemodel/ReferenceParts.h"
#include "pagemodel/TextParts.h"

namespace rvf::inspect {

namespace {

using pugi::xml_node;

void include(std::optional<Box>& all, const Box& box, Place offset) {
  const Box moved{
      std::min(box.left, box.right) + offset.x, std::min(box.top, box.bottom) + offset.y,
      std::max(box.left, box.right) + offset.x, std::max(box.top, box.bottom) + offset.y};
  if (!all) {
    all = moved;
    return;
  }
  all = Box{std::min(all->left, moved.left), std::min(all->top, moved.top),
            std::max(all->right, moved.right), std::max(all->bottom, moved.bottom)};
}

/// A box turned by a text's rotation about a point.
Box turned(const Box& box, u8 rotation, const Place& centre) {
  const f64 angle = kTextRotationStep * rotation * std::numbers::pi / 180;
  std::optional<Box> all;
  for (const Place& corner : {Place{box.left, box.top}, Place{box.right, box.top},
                              Place{box.left, box.bottom}, Place{box.right, box.bottom}}) {
    const auto x = static_cast<f64>(corner.x - centre.x);
    const auto y = static_cast<f64>(corner.y - centre.y);
    const i64 left = centre.x + std::llround(x * std::cos(angle) - y * std::sin(angle));
    const i64 top = centre.y + std::llround(x * std::sin(angle) + y * std::cos(angle));
    include(all, {left, top, left, top}, Place());
  }
  return *all;
}

/// The space that a text takes in letters of a size, half as wide as a line is high.
Box boxOfLetters(std::span<const TextRun> runs, i64 size) {
  const i64 height = size * 5 / 4;
  std::optional<Box> box;
  for (const TextRun& run : runs) {
    include(box, {run.x, run.y - height, run.x + run.charCount * height / 2, run.y}, Place());
  }
  return *box;
}

std::string translation(const Place& place) {
  return "translate(" + std::to_string(place.x) + " " + std::to_string(place.y) + ")";
}

class PageDrawing {
 public:
  PageDrawing(const CompareContext& page, const DrawingStyle& style) : page_(page), style_(style) {}

  std::string draw() {
    xml_node svg = document_.append_child("svg");
    svg.append_attribute("xmlns") = "http://www.w3.org/2000/svg";
    learnSizes();
    definitions_ = svg.append_child("defs");
    xml_node paper = svg.append_child("rect");
    xml_node ink = svg.append_child("g");
    xml_node marks = svg.append_child("g");
    ink.append_attribute("id") = "ink";
    marks.append_attribute("id") = "marks";
    drawList(page_.pageList, "page", Place(), ink, marks);
    for (i32 i = 0; i < page_.staticCount; ++i) {
      const auto at = static_cast<std::size_t>(i);
      const DrawList& list = page_.staticList(i);
      drawList(list, "placed " + std::to_string(i),
               {i64{list.originX} + page_.staticPlacementX[at],
                i64{list.originY} + page_.staticPlacementY[at]},
               ink, marks);
    }
    setSize(svg, paper);
    XmlText writer;
    document_.save(writer, " ", pugi::format_indent, pugi::encoding_utf8);
    return std::move(writer.text);
  }

 private:
  /// A shared object that has been drawn.
  struct DrawnObject {
    std::string id;
    std::string marksId{};  // empty if it has no marks
    std::optional<Box> box;
  };

  void learnSizes() {
    sizes_.learn(page_.pageList);
    for (i32 i = 0; i < page_.staticCount; ++i) {
      sizes_.learn(page_.staticList(i));
    }
  }

  void drawList(const DrawList& list, const std::string& name, Place offset, xml_node ink,
                xml_node marks) {
    for (xml_node* layer : {&ink, &marks}) {
      *layer = layer->append_child("g");
      layer->append_attribute("data-list") = name.c_str();
      if (offset != Place()) {
        layer->append_attribute("transform") = translation(offset).c_str();
      }
    }
    const DrawingTarget target{ink, marks, definitions_, style_, sizes_, gradients_};
    for (i32 i = 0; i < list.count; ++i) {
      const DrawPart& part = list[i];
      drawPart(part, i, target);
      if (part.type == PartType::kStaticRef) {
        useObject(part, i, offset, ink, marks);
      } else if (const std::optional<Box> box = drawnBox(part)) {
        include(box_, *box, offset);
      }
    }
  }

  void useObject(const DrawPart& reference, i32 index, Place offset, xml_node ink, xml_node marks) {
    const DrawList* list = childList(reference);
    const StaticRefFields& fields = reference.fields.staticRef;
    if (list == nullptr) {
      return;
    }
    const DrawnObject& object = objectOf(fields, *list);
    const Place place{i64{fields.x} + list->originX, i64{fields.y} + list->originY};
    const auto use = [&](xml_node layer, const std::string& id) {
      xml_node node = layer.append_child("use");
      node.append_attribute("data-part") = index;
      node.append_attribute("href") = ("#" + id).c_str();
      node.append_attribute("transform") = translation(place).c_str();
    };
    use(ink, object.id);
    if (!object.marksId.empty()) {
      use(marks, object.marksId);
    }
    if (object.box) {
      include(box_, *object.box, {place.x + offset.x, place.y + offset.y});
    }
  }

  const DrawnObject& objectOf(const StaticRefFields& fields, const DrawList& list) {
    const auto found = objects_.find(&list);
    if (found != objects_.end()) {
      return found->second;
    }
    const std::string name =
        objectListName(fields.objectType, fields.staticIndex, listNamedBy(fields));
    DrawnObject object{name, {}, std::nullopt};
    std::ranges::replace(object.id, ' ', '-');
    std::ranges::replace(object.id, '/', '-');
    sizes_.learn(list);
    xml_node ink = define(object.id, name);
    xml_node marks = define(object.id + "-marks", name);
    const DrawingTarget target{ink, marks, definitions_, style_, sizes_, gradients_};
    for (i32 i = 0; i < list.count; ++i) {
      drawPart(list[i], i, target);
      if (const std::optional<Box> box = drawnBox(list[i])) {
        include(object.box, *box, Place());
      }
    }
    if (marks.first_child()) {
      object.marksId = object.id + "-marks";
    } else {
      definitions_.remove_child(marks);
    }
    return objects_.emplace(&list, std::move(object)).first->second;
  }

  xml_node define(const std::string& id, const std::string& listName) {
    xml_node group = definitions_.append_child("g");
    group.append_attribute("id") = id.c_str();
    group.append_attribute("data-list") = listName.c_str();
    return group;
  }

  [[nodiscard]] std::optional<Box> drawnBox(const DrawPart& part) const {
    if (part.type != PartType::kText || textRuns(part).empty()) {
      return boxOf(part);
    }
    const TextFields& fields = part.fields.text;
    const auto font = style_.fonts.find(fields.fontId);
    const bool isSized = font != style_.fonts.end() && font->second.size > 0;
    const i64 size = isSized ? font->second.size : sizes_.sizeOf(fields.fontId);
    const TextRun& start = textRuns(part).front();
    return turned(boxOfLetters(textRuns(part), size), fields.rotation, {start.x, start.y});
  }

  void setSize(xml_node svg, xml_node paper) const {
    const Box extents{0, 0, page_.pageExtentA, page_.pageExtentB};
    Box view = box_.value_or(extents);
    const bool fits = view.left >= 0 && view.top >= 0 && view.right <= extents.right &&
                      view.bottom <= extents.bottom;
    if (fits) {
      view = extents;
    } else {
      constexpr i64 kMargin = 50;
      view = {view.left - kMargin, view.top - kMargin, view.right + kMargin, view.bottom + kMargin};
    }
    const i64 width = std::max<i64>(view.right - view.left, 1);
    const i64 height = std::max<i64>(view.bottom - view.top, 1);
    const std::string corner = std::to_string(view.left) + " " + std::to_string(view.top);
    const std::string size = std::to_string(width) + " " + std::to_string(height);
    svg.append_attribute("viewBox") = (corner + " " + size).c_str();
    paper.append_attribute("x") = static_cast<long long>(view.left);
    paper.append_attribute("y") = static_cast<long long>(view.top);
    paper.append_attribute("width") = static_cast<long long>(width);
    paper.append_attribute("height") = static_cast<long long>(height);
    paper.append_attribute("fill") = "#ffffff";
  }

  const CompareContext& page_;
  const DrawingStyle& style_;
  FontSizes sizes_;
  int gradients_ = 0;
  pugi::xml_document document_;
  xml_node definitions_;
  std::map<const DrawList*, DrawnObject> objects_;
  std::optional<Box> box_;
};

}  // namespace

std::string drawPage(const CompareContext& page, const DrawingStyle& style) {
  return PageDrawing(page, style).draw();
}

}  // namespace rvf::inspect
