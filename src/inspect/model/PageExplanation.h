#pragma once

#include <vector>

#include "capture/CompareContext.h"
#include "capture/PageRecord.h"
#include "compare/ChildListResults.h"
#include "inspect/model/ChangeStream.h"

namespace rvf::inspect {

/// The digests of the page that a context holds.
struct PageDigests {
  std::vector<u64> pageList;
  std::vector<std::vector<u64>> placedLists;
};
[[nodiscard]] PageDigests digestsOf(const CompareContext& page);
/// The same, faster if the page is like another one whose digests are known.
[[nodiscard]] PageDigests digestsOf(const CompareContext& page, const CompareContext& similar,
                                    const PageDigests& digestsOfSimilar);

/// The fields of a page in the index: its name and the other values.
[[nodiscard]] std::vector<Field> indexFieldsOf(const PageRecord& record);

/// Adds the changes between the pages in two contexts, without those in the index.
void explainPages(const CompareContext& first, const PageDigests& firstDigests,
                  const CompareContext& second, const PageDigests& secondDigests,
                  ChildListResults& childLists, ChangeStream& changes);

/// Adds the changes between the records of two pages.
void explainIndex(const PageRecord& first, const PageRecord& second, ChangeStream& changes);

}  // namespace rvf::inspect
