#pragma once

#include <cstddef>
#include <span>
#include <string_view>

#include "base/Integers.h"

namespace rvf {

struct DrawList;
struct DrawPart;
struct DrawStatic;

/// Receives the fields of an object with their names, in the order of its record.
///
/// A field inside a member or an element of an array comes between `enter` and `leave`, so that its
/// full name is `info.left` or `runs[0].x`. An element that is a plain value has an empty name of
/// its own: the second of a part's `offsets` is enter("offsets", 1), number("", 70), leave().
///
/// Names live as long as the program; texts and bytes only as long as the object that holds them.
class FieldVisitor {
 public:
  virtual ~FieldVisitor() = default;

  virtual void number(std::string_view name, i64 value) = 0;
  /// By default, passed on as the eight bytes of the value.
  virtual void floating(std::string_view name, f64 value);
  /// A packed colour: four bytes that only the engine interprets.
  virtual void colour(std::string_view name, u32 packed) = 0;
  /// All characters that are stored, zero characters included.
  virtual void text(std::string_view name, std::u16string_view value) = 0;
  virtual void bytes(std::string_view name, std::span<const std::byte> value) = 0;
  /// `index` is that of an element, or kSingle.
  virtual void enter(std::string_view name, i32 index) = 0;
  virtual void leave() = 0;

  static constexpr i32 kSingle = -1;
};

/// Shows every field that a record can hold, whether it is compared or not. A field that the
/// version of the record does not have is shown with the value that reading gives it. What an
/// absent member would hold (a link, a gradient, a rectangle of an old signature field) is not
/// shown.
void forEachField(const DrawPart& part, FieldVisitor& visitor);
/// The list's own fields, without its parts.
void forEachField(const DrawList& list, FieldVisitor& visitor);
/// The object's own fields, without its lists.
void forEachField(const DrawStatic& object, FieldVisitor& visitor);

}  // namespace rvf
