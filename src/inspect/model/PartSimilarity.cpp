#include "inspect/model/PartSimilarity.h"

#include <algorithm>
#include <cstdlib>

#include "inspect/model/Digest.h"
#include "inspect/model/SequencePairing.h"
#include "pagemodel/FieldVisitor.h"

namespace rvf::inspect {

namespace {

constexpr i32 kAll = 1000;

class SketchVisitor final : public FieldVisitor {
 public:
  SketchVisitor(const DrawPart& part, PartSketch& sketch) : part_(part), sketch_(sketch) {}

  void number(std::string_view name, i64 value) override {
    if (axisOf(part_, member_, name) == Axis::kNone) {
      addField(name, static_cast<u64>(value));
    }
  }
  void floating(std::string_view, f64) override {}
  void colour(std::string_view name, u32 packed) override { addField(name, packed); }
  void text(std::string_view, std::u16string_view value) override { addWords(value); }
  void bytes(std::string_view name, std::span<const std::byte> value) override {
    Digest digest;
    digest.addBytes(value);
    addField(name, digest.value());
  }
  void enter(std::string_view name, i32) override { member_ = name; }
  void leave() override { member_ = {}; }

 private:
  void addField(std::string_view name, u64 value) {
    // The length of a text adds nothing to the text itself.
    const bool isLength = name == "textLength" || name == "charCount" || name == "dataLength";
    if (isLength || sketch_.fields.size() == PartSketch::kMostDigests) {
      return;
    }
    Digest digest;
    digest.addText(member_);
    digest.addText(name);
    digest.add(value);
    sketch_.fields.push_back(digest.value());
  }

  void addWords(std::u16string_view text) {
    while (!text.empty() && sketch_.words.size() < PartSketch::kMostDigests) {
      const std::size_t end = std::min(text.find(u' '), text.size());
      if (end > 0) {
        Digest digest;
        digest.addText(text.substr(0, end));
        sketch_.words.push_back(digest.value());
      }
      text.remove_prefix(std::min(end + 1, text.size()));
    }
  }

  const DrawPart& part_;
  PartSketch& sketch_;
  std::string_view member_;
};

/// The share of values that two sorted lists have in common; all if both are empty.
i32 sharePer1000(const std::vector<u64>& a, const std::vector<u64>& b) {
  if (a.empty() && b.empty()) {
    return kAll;
  }
  const auto common = static_cast<i32>(countCommon(a, b));
  return 2 * kAll * common / static_cast<i32>(a.size() + b.size());
}

}  // namespace

PartSketch sketchOf(const DrawPart& part) {
  PartSketch sketch;
  SketchVisitor visitor(part, sketch);
  forEachField(part, visitor);
  std::ranges::sort(sketch.words);
  std::ranges::sort(sketch.fields);
  sketch.place = placeOf(part);
  return sketch;
}

i32 similarity(const PartSketch& a, const PartSketch& b, bool isSameStretch) {
  const bool hasWords = !a.words.empty() || !b.words.empty();
  const i32 fields = sharePer1000(a.fields, b.fields);
  const i32 content = hasWords ? (sharePer1000(a.words, b.words) * 3 + fields) / 4 : fields;
  if (!a.place || !b.place) {
    return isSameStretch ? 1 + content : 0;
  }
  const i64 distance =
      std::max(std::abs(a.place->x - b.place->x), std::abs(a.place->y - b.place->y));
  const bool isNear = distance <= kNearDistance;
  const bool isAlike =
      (isNear && content >= kAll / 2) || (isSameStretch && content >= kAll * 3 / 4);
  if (distance == 0 || isAlike) {
    const i64 closeness = isNear ? (kNearDistance - distance) * kAll / kNearDistance : 0;
    return content + static_cast<i32>(closeness) / 2;
  }
  return 0;
}

}  // namespace rvf::inspect
