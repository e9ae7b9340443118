#pragma once

#include <cstddef>

#include "base/Integers.h"

namespace rvf {

/// A count or an index that cannot be negative.
[[nodiscard]] constexpr std::size_t asSize(i64 count) { return static_cast<std::size_t>(count); }

}  // namespace rvf
