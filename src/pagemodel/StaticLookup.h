#pragma once

#include "base/Integers.h"

namespace rvf {

struct DrawStatic;

/// Where the reader of a static reference finds the object that it names.
class StaticLookup {
 public:
  virtual ~StaticLookup() = default;
  /// Null for an object that the file does not have. The object stays the file's.
  [[nodiscard]] virtual const DrawStatic* FindStatic(i32 objectType, i32 index) const = 0;
};

/// The tables of the file whose page is being read; null at all other times, including while the
/// static objects themselves are read. So lists nest at most two deep.
inline const StaticLookup* currentContext = nullptr;

}  // namespace rvf
