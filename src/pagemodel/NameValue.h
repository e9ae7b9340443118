#pragma once

#include <memory>
#include <vector>

#include "base/Integers.h"
#include "storage/Archive.h"
#include "text/eString.h"

namespace rvf {

/// One named value that a part carries.
struct NameValue {
  eString name;
  u32 reservedWord = 0;
  eString value;
  i32 number = 0;  // only images store it
  i32 hasValue = 1;
  i32 reservedTail = 0;
};

using NameValues = std::vector<NameValue>;

/// Null stands for a list without entries.
[[nodiscard]] std::unique_ptr<NameValues> copyOf(const std::unique_ptr<NameValues>& values);

/// Bytes that the shortest entry has on disk, without and with its number.
constexpr i32 kSmallestNameValue = 5;
constexpr i32 kSmallestNumberedNameValue = 9;

enum class NameValueForm { kPlain, kNumbered };

/// An entry is its name, its number in the numbered form, hasValue, and the value if that is
/// nonzero.
[[nodiscard]] NameValue readNameValue(eArchive& archive, NameValueForm form);

/// Reads `stored` entries, stops at a failure, and keeps the first `kept` of them.
[[nodiscard]] std::unique_ptr<NameValues> readNameValues(eArchive& archive, i32 stored, i32 kept,
                                                         NameValueForm form);

}  // namespace rvf
