#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "capture/CompareContext.h"
#include "compare/ChildListResults.h"
#include "compare/DiffFlags.h"
#include "inspect/model/Change.h"

namespace rvf::inspect {

/// The comparison that set a bit of a page first.
struct VerdictReason {
  DiffFlags bits = 0;   // those that no comparison before it had set
  std::string_view by;  // "place", "elsewhere", "left over", "group", "lists", "placement"
  std::string list;     // as in Change
  i32 first = kNone;
  i32 second = kNone;
  std::string firstType, secondType;  // of the parts; empty where there is none
  std::u16string firstText, secondText;
};

/// What a run says of two pages, and why.
struct PageVerdict {
  DiffFlags bits = 0;
  std::vector<VerdictReason> why;  // no more than there are bits
};

/// Compares the pages that two contexts hold as a run does, which keeps `childLists` for all pages
/// of the two files.
[[nodiscard]] PageVerdict judgePages(const CompareContext& first, const CompareContext& second,
                                     ChildListResults& childLists);

/// "object 21/0/first": the list that a reference leads to.
[[nodiscard]] std::string objectListName(i32 objectType, i32 index, bool isSecond);

}  // namespace rvf::inspect
