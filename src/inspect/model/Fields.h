#pragma once

#include <bit>
#include <optional>
#include <span>
#include <string>
#include <string_view>
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

/// Byte data, represented by its length and a digest.
struct ByteDigest {
  i64 length = 0;
  u64 digest = 0;
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

  FieldCollector() = default;
  /// Collects only the fields with these numbers, which must be in ascending order, of an object
  /// without a longer array.
  explicit FieldCollector(std::span<const std::size_t> wanted)
      : wanted_(wanted), takesAll_(false) {}

  void number(std::string_view name, i64 value) override {
    if (isWanted()) {
      add(name, value);
    }
  }
  void floating(std::string_view name, f64 value) override {
    if (isWanted()) {
      add(name, value);
    }
  }
  void colour(std::string_view name, u32 packed) override {
    if (isWanted()) {
      add(name, Colour{packed});
    }
  }
  void text(std::string_view name, std::u16string_view value) override;
  void bytes(std::string_view name, std::span<const std::byte> value) override;
  void enter(std::string_view name, i32 index) override;
  void leave() override;

  [[nodiscard]] std::vector<Field> take() { return std::move(fields_); }

 private:
  [[nodiscard]] bool isWanted() {
    if (takesAll_) {
      return true;
    }
    const bool isNext = !wanted_.empty() && wanted_.front() == count_;
    wanted_ = wanted_.subspan(isNext ? 1 : 0);
    count_ += 1;
    return isNext;
  }
  void add(std::string_view name, FieldValue value);
  void fold(std::string_view name, const FieldValue& value);

  std::span<const std::size_t> wanted_;
  bool takesAll_ = true;
  std::size_t count_ = 0;  // fields shown so far, if not all are collected
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

/// The digests of the values of an object's fields, without names.
class FieldDigests final : public FieldVisitor {
 public:
  FieldDigests() { values_.reserve(64); }

  void number(std::string_view name, i64 value) override { add(name, static_cast<u64>(value)); }
  void floating(std::string_view name, f64 value) override { add(name, std::bit_cast<u64>(value)); }
  void colour(std::string_view name, u32 packed) override { add(name, packed); }
  void text(std::string_view name, std::u16string_view value) override;
  void bytes(std::string_view name, std::span<const std::byte> value) override;
  void enter(std::string_view name, i32 index) override;
  void leave() override {}

  /// The numbers of the fields that differ, if both objects have fields with the same names and no
  /// array is so long that its elements are combined.
  [[nodiscard]] std::optional<std::vector<std::size_t>> differing(const FieldDigests& other) const;

 private:
  void add(std::string_view name, u64 value);

  std::vector<u64> values_;
  Digest names_;
  bool hasLongArray_ = false;
};

/// Fields with the same name that differ, and those that only one side has, in the order of the
/// first side.
[[nodiscard]] std::vector<FieldChange> changedFields(const std::vector<Field>& first,
                                                     const std::vector<Field>& second);

/// The same for two objects. What they have in common, usually nearly everything, takes little
/// time.
template <class Object>
[[nodiscard]] std::vector<FieldChange> changesOfFields(const Object& first, const Object& second) {
  FieldDigests a, b;
  forEachField(first, a);
  forEachField(second, b);
  const std::optional<std::vector<std::size_t>> differing = a.differing(b);
  if (!differing) {
    return changedFields(fieldsOf(first), fieldsOf(second));
  }
  if (differing->empty()) {
    return {};
  }
  FieldCollector from(*differing), to(*differing);
  forEachField(first, from);
  forEachField(second, to);
  return changedFields(from.take(), to.take());
}

/// A name without the numbers of its elements: `runs[].x`.
[[nodiscard]] std::string withoutIndexes(std::string_view name);

[[nodiscard]] u64 digestOf(const FieldValue& value);

}  // namespace rvf::inspect
