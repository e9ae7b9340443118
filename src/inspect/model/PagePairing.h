#pragma once

#include <functional>
#include <map>
#include <string_view>
#include <vector>

#include "base/Integers.h"
#include "inspect/model/Change.h"
#include "inspect/model/FileBytes.h"
#include "inspect/model/PageExplanation.h"

namespace rvf::inspect {

/// Which page of one customer became which of the other; kNone on one side means added or removed.
struct PagePair {
  i32 first = kNone;
  i32 second = kNone;
  bool hasSameBytes = false;
};

/// One of two customers whose pages are paired. `load` loads a page into its context.
struct CustomerPages {
  FileBytes& bytes;
  std::span<const PageRecord> pages;
  std::function<const CompareContext&(i32 page)> load;
  std::map<i32, PageDigests> digests{};  // of the pages that had to be loaded
};

/// The most parts on pages without an equal one that are compared to find the most similar pages of
/// two customers; with more, pages are paired by position. The help states this number.
constexpr i64 kMostParts = 1000000;

/// Whether three quarters of the parts of two pages are the same before and after the difference.
[[nodiscard]] bool areNearlyEqual(const PageDigests& first, const PageDigests& second);

/// Pairs pages from index `start` of both sides on by their content: those of equal bytes in
/// sequence; between them those of one number that are nearly equal, and the most similar that
/// share at least half of their parts. A part at the same place that was changed counts half. Pages
/// of one name at one number that are left pair too, however different. In the order of the pages.
[[nodiscard]] std::vector<PagePair> pairPages(CustomerPages& first, CustomerPages& second,
                                              i32 start);

}  // namespace rvf::inspect
