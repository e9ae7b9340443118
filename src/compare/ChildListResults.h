#pragma once

#include <cstdint>
#include <unordered_map>

#include "compare/DiffFlags.h"
#include "compare/SeededHash.h"
#include "compare/Tolerances.h"
#include "pagemodel/DrawList.h"

namespace rvf {

/// Caches the results of comparing child lists. Pages refer to the same lists in the static tables
/// of the files again and again, so each pair is compared only once. The lists must not change
/// during the lifetime of this object.
///
/// Equality is tested only for references to the same entry of the tables, so there are at most two
/// such results per entry, one for each order. The other results are discarded when there are too
/// many.
class ChildListResults {
 public:
  explicit ChildListResults(const Tolerances& tolerances) : tolerances_(tolerances) {}

  [[nodiscard]] const Tolerances& tolerances() const { return tolerances_; }

  /// listsEqual.
  [[nodiscard]] bool areEqual(const DrawList& a, const DrawList& b);
  /// matchLists.
  [[nodiscard]] DiffFlags matched(const DrawList& a, const DrawList& b);
  /// leftOverChildBits.
  [[nodiscard]] DiffFlags leftOver(const DrawList* list);

 private:
  struct Pair {
    const DrawList* a;
    const DrawList* b;
    bool operator==(const Pair&) const = default;
  };
  struct PairHash {
    std::size_t operator()(const Pair& pair) const {
      SeededHash hash;
      hash.addAll(reinterpret_cast<std::uintptr_t>(pair.a),
                  reinterpret_cast<std::uintptr_t>(pair.b));
      return static_cast<std::size_t>(hash.value());
    }
  };
  static constexpr std::size_t kMostBits = 1 << 16;

  DiffFlags keep(const Pair& pair, DiffFlags bits);

  Tolerances tolerances_;
  std::unordered_map<Pair, bool, PairHash> equal_;
  std::unordered_map<Pair, DiffFlags, PairHash> bits_;  // left-over lists have no second list
};

}  // namespace rvf
