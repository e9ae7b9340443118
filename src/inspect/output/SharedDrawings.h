#pragma once

#include <functional>
#include <string>
#include <unordered_map>
#include <vector>

#include "base/Integers.h"

namespace rvf::inspect {

/// A drawing whose shared objects and images are replaced by references to stored ones:
/// `data-stored="N"` on the element whose content or image is missing.
struct SplitDrawing {
  std::string svg;
  std::vector<i32> stored;  // the numbers it refers to, each once, ascending
  std::string viewBox;
};

/// Extracts what many drawings have in common, so that it is stored once.
class SharedDrawings {
 public:
  /// Receives each stored item once: the content of a group as SVG, or an image's address.
  using Store = std::function<void(i32 number, const std::string& content)>;

  explicit SharedDrawings(Store store) : store_(std::move(store)) {}

  /// `svg` is a drawing as drawPage delivers it.
  [[nodiscard]] SplitDrawing split(const std::string& svg);

 private:
  i32 numberOf(const std::string& content);

  Store store_;
  std::unordered_map<u64, i32> numbers_;  // by digest
};

}  // namespace rvf::inspect
