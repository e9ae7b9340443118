#pragma once

#include <map>
#include <utility>
#include <vector>

#include "capture/CompareContext.h"
#include "compare/ChildListResults.h"
#include "inspect/model/Change.h"

namespace rvf::inspect {

/// The object types that a file has tables for, in order.
constexpr i32 kObjectTypes[] = {21, 24, 23, 175};

/// A shared object that is not the same in both files.
struct ObjectChanges {
  i32 objectType = 0;
  i32 first = kNone;  // its indexes in the tables
  i32 second = kNone;
  std::u16string name;
  i64 firstPages = 0;  // pages that use it, on each side
  i64 secondPages = 0;
  std::vector<Change> changes;  // none for an object that is added or removed
};

/// Pairs the shared objects of two files: equal ones in sequence, those between them by their
/// number. Returns those that differ, without the pages that use them.
[[nodiscard]] std::vector<ObjectChanges> explainObjects(const CompareContext& first,
                                                        const CompareContext& second,
                                                        ChildListResults& childLists);

/// Counts the pages of one file that refer to each of its shared objects.
class ObjectUses {
 public:
  void addPage(const CompareContext& page);
  [[nodiscard]] i64 pagesUsing(i32 objectType, i32 index) const;

 private:
  void addList(const CompareContext& page, const DrawList& list);

  struct Use {
    i64 pages = 0;
    i64 lastPage = 0;
  };
  i64 pages_ = 0;
  std::map<std::pair<i32, i32>, Use> uses_;
};

}  // namespace rvf::inspect
