#include "inspect/model/PartDigest.h"

#include <array>
#include <bit>
#include <span>

#include "compare/PartBytes.h"
#include "inspect/model/Digest.h"
#include "inspect/model/PartPlace.h"
#include "pagemodel/FieldVisitor.h"
#include "pagemodel/TextParts.h"
#include "pagemodel/VectorParts.h"

namespace rvf::inspect {

namespace {

/// Digests values as they come. The fields of a type always come in the same order, so only the
/// elements of its arrays have to be distinguished.
class DigestVisitor : public FieldVisitor {
 public:
  explicit DigestVisitor(PartType type) { digest_.add(partIndex(type)); }

  void number(std::string_view, i64 value) override { digest_.add(static_cast<u64>(value)); }
  void floating(std::string_view, f64 value) override { digest_.add(std::bit_cast<u64>(value)); }
  void colour(std::string_view, u32 packed) override { digest_.add(packed); }
  void text(std::string_view, std::u16string_view value) override { digest_.addText(value); }
  void bytes(std::string_view, std::span<const std::byte> value) override {
    digest_.addBytes(value);
  }
  void enter(std::string_view name, i32 index) override {
    digest_.add(name.size() << 32 | static_cast<u32>(index));
  }
  void leave() override {}

  [[nodiscard]] u64 value() const { return digest_.value(); }

 private:
  Digest digest_;
};

/// Takes every position relative to the part's first one.
class ShapeVisitor final : public DigestVisitor {
 public:
  ShapeVisitor(const DrawPart& part, Place origin)
      : DigestVisitor(part.type), part_(part), origin_(origin) {}

  void number(std::string_view name, i64 value) override {
    DigestVisitor::number(name, value - shiftOf(name));
  }
  void floating(std::string_view name, f64 value) override {
    DigestVisitor::floating(name, value - static_cast<f64>(shiftOf(name)));
  }
  void enter(std::string_view name, i32 index) override {
    DigestVisitor::enter(name, index);
    member_ = name;
  }
  void leave() override { member_ = {}; }

 private:
  [[nodiscard]] i64 shiftOf(std::string_view name) const {
    switch (axisOf(part_, member_, name)) {
      case Axis::kX:
        return origin_.x;
      case Axis::kY:
        return origin_.y;
      default:
        return 0;
    }
  }

  const DrawPart& part_;
  Place origin_;
  std::string_view member_;
};

/// Collects only positions and texts.
class PlaceVisitor final : public FieldVisitor {
 public:
  explicit PlaceVisitor(const DrawPart& part) : part_(part) { digest_.add(partIndex(part.type)); }

  void number(std::string_view name, i64 value) override {
    if (axisOf(part_, member_, name) != Axis::kNone) {
      digest_.add(static_cast<u64>(value));
    }
  }
  void floating(std::string_view, f64) override {}
  void colour(std::string_view, u32) override {}
  void text(std::string_view, std::u16string_view value) override { digest_.addText(value); }
  void bytes(std::string_view, std::span<const std::byte>) override {}
  void enter(std::string_view name, i32) override { member_ = name; }
  void leave() override { member_ = {}; }

  [[nodiscard]] u64 value() const { return digest_.value(); }

 private:
  const DrawPart& part_;
  std::string_view member_;
  Digest digest_;
};

/// The fields of a part as values and stretches of bytes.
struct PlainContent {
  std::array<u64, 5> values{};
  std::array<std::span<const std::byte>, 2> stretches{};
};

/// Most parts are plain texts, lines and boxes. Their fields are in a few ranges of bytes, which
/// take a tenth of the time of visiting every field. Returns whether the part is such a one.
bool getPlainContent(const DrawPart& part, PlainContent& content) {
  content.values = {partIndex(part.type), static_cast<u64>(part.extraId)};
  content.stretches = {};
  switch (part.type) {
    case PartType::kText: {
      const TextFields& fields = part.fields.text;
      content.values[2] = u64{static_cast<u32>(fields.fontId)} << 32 | fields.colour;
      content.values[3] =
          static_cast<u64>(fields.rotation << 16 | fields.textFlags << 8 | fields.tint);
      content.stretches = {std::as_bytes(textRuns(part)), std::as_bytes(textCharacters(part))};
      return (fields.textFlags & (text_flag::kExtensionRuns | text_flag::kOutlineRecords)) == 0;
    }
    case PartType::kLine: {
      const LineFields& fields = part.fields.line;
      content.values[2] =
          u64{static_cast<u32>(fields.lineKind)} << 32 | static_cast<u32>(fields.lineStyle);
      content.values[3] = u64{static_cast<u32>(fields.width)} << 32 | fields.colour;
      content.values[4] = static_cast<u64>(fields.overprint << 8 | fields.tint);
      content.stretches[0] = std::as_bytes(linePoints(part));
      return true;
    }
    case PartType::kRect:
    case PartType::kJust1Line:
      content.stretches[0] = std::as_bytes(std::span(part.fields.words));
      return true;
    default:
      return false;
  }
}

u64 digestOf(const PlainContent& content) {
  Digest digest;
  for (const u64 value : content.values) {
    digest.add(value);
  }
  for (const std::span<const std::byte> bytes : content.stretches) {
    digest.addBytes(bytes);
  }
  return digest.value();
}

u64 digestOfFields(const DrawPart& part) {
  DigestVisitor visitor(part.type);
  forEachField(part, visitor);
  return visitor.value();
}

bool isSame(const PlainContent& a, const PlainContent& b) {
  return a.values == b.values && sameBytes(a.stretches[0], b.stretches[0]) &&
         sameBytes(a.stretches[1], b.stretches[1]);
}

}  // namespace

u64 digestOf(const DrawPart& part) {
  PlainContent plain;
  return getPlainContent(part, plain) ? digestOf(plain) : digestOfFields(part);
}

std::vector<u64> digestsOf(const DrawList& list) {
  std::vector<u64> digests;
  digests.reserve(list.parts().size());
  for (const DrawPart& part : list.parts()) {
    digests.push_back(digestOf(part));
  }
  return digests;
}

std::vector<u64> digestsOf(const DrawList& list, const DrawList& similar,
                           std::span<const u64> digestsOfSimilar) {
  std::vector<u64> digests;
  digests.reserve(list.parts().size());
  PlainContent plain, other;
  for (std::size_t i = 0; i < list.parts().size(); ++i) {
    const DrawPart& part = list.parts()[i];
    if (!getPlainContent(part, plain)) {
      digests.push_back(digestOfFields(part));
    } else if (i < digestsOfSimilar.size() && getPlainContent(similar.parts()[i], other) &&
               isSame(plain, other)) {
      digests.push_back(digestsOfSimilar[i]);
    } else {
      digests.push_back(digestOf(plain));
    }
  }
  return digests;
}

u64 shapeDigestOf(const DrawPart& part) {
  ShapeVisitor visitor(part, placeOf(part).value_or(Place()));
  forEachField(part, visitor);
  return visitor.value();
}

u64 placeDigestOf(const DrawPart& part) {
  PlaceVisitor visitor(part);
  forEachField(part, visitor);
  return visitor.value();
}

}  // namespace rvf::inspect
