#pragma once

#include <string>
#include <string_view>

#include "base/Integers.h"
#include "text/NativeText.h"

namespace rvf::inspect {

/// A selection of customers, as given on the command line: an id, or # and a number from 1; all
/// customers if empty.
class SelectedCustomer {
 public:
  explicit SelectedCustomer(const std::string& choice) : id_(fromNative(choice)) {}

  [[nodiscard]] bool isAny() const { return id_.isEmpty(); }
  [[nodiscard]] bool includes(i32 index, std::u16string_view id) const {
    if (isAny() || id == id_.view()) {
      return true;
    }
    const std::string number = "#" + std::to_string(i64{index} + 1);
    return toNative(id_.view()) == number;
  }

 private:
  eString id_;
};

}  // namespace rvf::inspect
