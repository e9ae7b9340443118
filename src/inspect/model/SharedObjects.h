#pragma once

#include <map>
#include <utility>
#include <vector>

#include "capture/CompareContext.h"
#include "compare/ChildListResults.h"
#include "inspect/model/ChangeStream.h"

namespace rvf::inspect {

/// The object types that a file has tables for, in order.
constexpr i32 kObjectTypes[] = {21, 24, 23, 175};

/// A shared object that is not the same in both files. One with very many changes is told several
/// times, each time with the next ones.
struct ObjectChanges {
  i32 objectType = 0;
  i32 first = kNone;  // its indexes in the tables
  i32 second = kNone;
  std::u16string name;
  i64 firstPages = 0;  // pages that use it, on each side
  i64 secondPages = 0;
  std::vector<Change> changes;
  bool isFirst = true;  // of the times that it is told
  bool isLast = true;
};

/// Indexes of a shared object in the tables of both files; kNone on a side that lacks it.
struct ObjectPair {
  i32 objectType = 0;
  i32 first = kNone;
  i32 second = kNone;
};

/// Pairs the shared objects of two files: equal ones in sequence, those between them by their
/// number. Returns those that differ.
[[nodiscard]] std::vector<ObjectPair> differingObjects(const CompareContext& first,
                                                       const CompareContext& second);

/// Adds what changed in an object, which may also be added or removed.
void explainObject(const CompareContext& first, const CompareContext& second,
                   const ObjectPair& pair, ChildListResults& childLists, ChangeStream& changes);

/// Its name, in the first file if both have it.
[[nodiscard]] std::u16string nameOf(const CompareContext& first, const CompareContext& second,
                                    const ObjectPair& pair);

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
