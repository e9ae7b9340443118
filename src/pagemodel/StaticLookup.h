#pragma once

#include "base/Integers.h"

namespace rvf {

struct DrawStatic;

/// The static objects of a file, in which a static reference finds the one that it names.
class StaticLookup {
 public:
  virtual ~StaticLookup() = default;
  /// Null for an object that the file does not have. The object stays the file's.
  [[nodiscard]] virtual const DrawStatic* FindStatic(i32 objectType, i32 index) const = 0;
};

}  // namespace rvf
