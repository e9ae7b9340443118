#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "capture/CompareContext.h"
#include "compare/ChildListResults.h"
#include "compare/DiffFlags.h"
#include "inspect/model/Change.h"
#include "pagemodel/ReferenceParts.h"

namespace rvf::inspect {

/// The comparison that first set a bit of a page.
struct VerdictReason {
  DiffFlags bits = 0;   // those not set by an earlier comparison
  std::string_view by;  // "place", "elsewhere", "left over", "group", "lists", "placement"
  std::string list;     // as in Change
  i32 first = kNone;
  i32 second = kNone;
  std::string firstType, secondType;  // of the parts; empty if there is none
  std::u16string firstText, secondText;
};

/// What a run reports for two pages, and why.
struct PageVerdict {
  DiffFlags bits = 0;
  std::vector<VerdictReason> why;  // at most one per bit
};

/// Compares the pages in two contexts as a run does. As in a run, `childLists` is shared by all
/// pages of the two files.
[[nodiscard]] PageVerdict judgePages(const CompareContext& first, const CompareContext& second,
                                     ChildListResults& childLists);

/// "object 21/0/first": the list that a reference refers to.
[[nodiscard]] std::string objectListName(i32 objectType, i32 index, ObjectList list);

}  // namespace rvf::inspect
