#pragma once

#include "base/Integers.h"

namespace rvf {

struct DrawStatic;

/// Finds the static object of a file that a static reference names.
class StaticLookup {
 public:
  virtual ~StaticLookup() = default;
  /// Null if the file has no such object. The object belongs to the file.
  [[nodiscard]] virtual const DrawStatic* FindStatic(i32 objectType, i32 index) const = 0;
};

}  // namespace rvf
