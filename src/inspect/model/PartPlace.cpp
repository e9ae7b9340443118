#include "inspect/model/PartPlace.h"

#include <algorithm>
#include <limits>

#include "pagemodel/FieldVisitor.h"
#include "pagemodel/TextParts.h"
#include "pagemodel/VectorParts.h"

namespace rvf::inspect {

namespace {

constexpr i64 kUsualLineHeight = 50;  // 12 points at 300 dots per inch

/// Collects the positions of a part as its fields are shown.
class PositionVisitor final : public FieldVisitor {
 public:
  explicit PositionVisitor(const DrawPart& part) : part_(part) {}

  void number(std::string_view name, i64 value) override {
    switch (axisOf(part_, member_, name)) {
      case Axis::kX:
        x_.add(value);
        break;
      case Axis::kY:
        y_.add(value);
        break;
      case Axis::kNone:
        break;
    }
  }
  void floating(std::string_view, f64) override {}
  void colour(std::string_view, u32) override {}
  void text(std::string_view, std::u16string_view) override {}
  void bytes(std::string_view, std::span<const std::byte>) override {}
  void enter(std::string_view name, i32) override { member_ = name; }
  void leave() override { member_ = {}; }

  [[nodiscard]] bool hasPlace() const { return x_.isSet && y_.isSet; }
  [[nodiscard]] Place place() const { return {x_.first, y_.first}; }
  [[nodiscard]] Box box() const { return {x_.least, y_.least, x_.greatest, y_.greatest}; }

 private:
  struct Range {
    i64 first = 0;
    i64 least = std::numeric_limits<i64>::max();
    i64 greatest = std::numeric_limits<i64>::min();
    bool isSet = false;

    void add(i64 value) {
      if (!isSet) {
        first = value;
        isSet = true;
      }
      least = std::min(least, value);
      greatest = std::max(greatest, value);
    }
  };

  const DrawPart& part_;
  std::string_view member_;
  Range x_;
  Range y_;
};

Box boxOfText(const DrawPart& part) {
  const i64 height = lineHeightOf(part);
  Box box{std::numeric_limits<i64>::max(), std::numeric_limits<i64>::max(),
          std::numeric_limits<i64>::min(), std::numeric_limits<i64>::min()};
  for (const TextRun& run : textRuns(part)) {
    box.left = std::min(box.left, i64{run.x});
    box.right = std::max(box.right, run.x + run.charCount * height / 2);
    box.top = std::min(box.top, run.y - height);
    box.bottom = std::max(box.bottom, i64{run.y});
  }
  return box;
}

}  // namespace

Axis axisOf(const DrawPart& part, std::string_view member, std::string_view field) {
  if (part.type == PartType::kLineSet) {
    const bool isHorizontal = part.fields.lineSet.horizontal != 0;
    if (field == "start" || field == "end") {
      return isHorizontal ? Axis::kX : Axis::kY;
    }
    if (member == "offsets") {
      return isHorizontal ? Axis::kY : Axis::kX;
    }
    return Axis::kNone;
  }
  if (field == "x" || field == "left" || field == "right" || field == "x1" || field == "x2" ||
      field == "originX") {
    return Axis::kX;
  }
  if (field == "y" || field == "top" || field == "bottom" || field == "y1" || field == "y2" ||
      field == "originY") {
    return Axis::kY;
  }
  return Axis::kNone;
}

std::optional<Place> placeOf(const DrawPart& part) {
  // A short cut to the first position for the most frequent types.
  if (part.type == PartType::kText && !textRuns(part).empty()) {
    return Place{textRuns(part).front().x, textRuns(part).front().y};
  }
  if (part.type == PartType::kLine && !linePoints(part).empty()) {
    return Place{linePoints(part).front().x, linePoints(part).front().y};
  }
  if (part.type == PartType::kRect) {
    return Place{part.fields.rect.left, part.fields.rect.top};
  }
  PositionVisitor visitor(part);
  forEachField(part, visitor);
  return visitor.hasPlace() ? std::optional(visitor.place()) : std::nullopt;
}

std::optional<Box> boxOf(const DrawPart& part) {
  if (part.type == PartType::kText && !textRuns(part).empty()) {
    return boxOfText(part);
  }
  PositionVisitor visitor(part);
  forEachField(part, visitor);
  if (!visitor.hasPlace()) {
    return std::nullopt;
  }
  Box box = visitor.box();
  if (part.type == PartType::kStaticRef) {
    box.right = box.left + std::max(part.fields.staticRef.width, 0);
    box.bottom = box.top + std::max(part.fields.staticRef.height, 0);
  }
  return box;
}

i64 lineHeightOf(const DrawPart& text) {
  i64 height = 0;
  const TextRun* before = nullptr;
  for (const TextRun& run : textRuns(text)) {
    const i64 step = before == nullptr ? 0 : i64{run.y} - before->y;
    if (step > 0 && (height == 0 || step < height)) {
      height = step;
    }
    before = &run;
  }
  return height == 0 ? kUsualLineHeight : height;
}

}  // namespace rvf::inspect
