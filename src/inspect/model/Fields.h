#pragma once

#include <bit>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "base/Integers.h"
#include "inspect/model/Digest.h"
#include "pagemodel/FieldVisitor.h"

namespace rvf::inspect {

/// A packed colour: four bytes that only the engine interprets.
struct Colour {
  u32 packed = 0;
  bool operator==(const Colour&) const = default;
};

/// Byte data, represented by its length and digests.
struct ByteDigest {
  i64 length = 0;
  u64 shown = 0;  // the same in every process
  u64 exact = 0;  // equal only for equal bytes
  bool operator==(const ByteDigest&) const = default;
};

/// The value of a field; empty if an object does not have the field.
using FieldValue = std::variant<std::monostate, i64, f64, Colour, std::u16string, ByteDigest>;

/// A field under its full name, such as `info.left` or `runs[0].x`.
struct Field {
  std::string name;
  FieldValue value;
};

struct FieldChange {
  std::string name;
  FieldValue from;
  FieldValue to;
};

/// Collects the fields that it is shown. Array elements after the first kMostElements are combined
/// into one field, with their digest, so that a long array takes no more memory than its page.
class FieldCollector final : public FieldVisitor {
 public:
  static constexpr i32 kMostElements = 2048;

  void number(std::string_view name, i64 value) override { add(name, value); }
  void floating(std::string_view name, f64 value) override { add(name, value); }
  void colour(std::string_view name, u32 packed) override { add(name, Colour{packed}); }
  void text(std::string_view name, std::u16string_view value) override;
  void bytes(std::string_view name, std::span<const std::byte> value) override;
  void enter(std::string_view name, i32 index) override;
  void leave() override;

  [[nodiscard]] std::vector<Field> take() { return std::move(fields_); }

 private:
  void add(std::string_view name, FieldValue value);
  void fold(std::string_view name, const FieldValue& value);

  std::vector<Field> fields_;
  std::string prefix_;                    // ends with a dot unless it is empty
  std::vector<std::size_t> prefixSizes_;  // before each open enter
  int foldedDepth_ = 0;                   // enters inside a folded element
};

/// The fields of a part, list or shared object.
template <class Object>
[[nodiscard]] std::vector<Field> fieldsOf(const Object& object) {
  FieldCollector collector;
  forEachField(object, collector);
  return collector.take();
}

/// Notes the fields that it is shown, to compare them with those of another object. What two
/// objects have in common, usually nearly everything, costs little. What it notes is valid as long
/// as the object.
class FieldRecording final : public FieldVisitor {
 public:
  /// Two empty ones, which are used again with the next call.
  [[nodiscard]] static std::pair<FieldRecording&, FieldRecording&> takeTwo();

  void number(std::string_view name, i64 value) override { add({Kind::kNumber, name, value}); }
  void floating(std::string_view name, f64 value) override {
    add({Kind::kFloating, name, std::bit_cast<i64>(value)});
  }
  void colour(std::string_view name, u32 packed) override { add({Kind::kColour, name, packed}); }
  void text(std::string_view name, std::u16string_view value) override {
    add({Kind::kText, name, 0, std::as_bytes(std::span(value))});
  }
  void bytes(std::string_view name, std::span<const std::byte> value) override {
    add({Kind::kBytes, name, 0, value});
  }
  void enter(std::string_view name, i32 index) override;
  void leave() override { add({Kind::kLeave}); }

  /// The fields that differ, if both objects have fields with the same names and no array is so
  /// long that its elements are combined.
  [[nodiscard]] std::optional<std::vector<FieldChange>> changesTo(
      const FieldRecording& other) const;

 private:
  enum class Kind { kNumber, kFloating, kColour, kText, kBytes, kEnter, kLeave };
  struct Entry {
    Kind kind;
    std::string_view name{};
    i64 value = 0;  // the index of kEnter
    std::span<const std::byte> data{};
  };

  void add(const Entry& entry) {
    if (!hasLongArray_) {
      entries_.push_back(entry);
    }
  }
  [[nodiscard]] static bool isSameField(const Entry& a, const Entry& b);
  [[nodiscard]] static bool isSameValue(const Entry& a, const Entry& b);
  [[nodiscard]] static FieldValue valueOf(const Entry& entry);

  std::vector<Entry> entries_;
  bool hasLongArray_ = false;
};

/// Fields with the same name that differ, and those that only one side has, in the order of the
/// first side.
[[nodiscard]] std::vector<FieldChange> changedFields(const std::vector<Field>& first,
                                                     const std::vector<Field>& second);

/// The same for two objects.
template <class Object>
[[nodiscard]] std::vector<FieldChange> changesOfFields(const Object& first, const Object& second) {
  const auto [a, b] = FieldRecording::takeTwo();
  forEachField(first, a);
  forEachField(second, b);
  if (std::optional<std::vector<FieldChange>> changes = a.changesTo(b)) {
    return *std::move(changes);
  }
  return changedFields(fieldsOf(first), fieldsOf(second));
}

/// A name without the numbers of its elements: `runs[].x`.
[[nodiscard]] std::string withoutIndexes(std::string_view name);

[[nodiscard]] u64 digestOf(const FieldValue& value);
[[nodiscard]] ByteDigest digestOf(std::span<const std::byte> bytes);

}  // namespace rvf::inspect
