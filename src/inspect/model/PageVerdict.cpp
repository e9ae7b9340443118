#include "inspect/model/PageVerdict.h"

#include <algorithm>
#include <set>
#include <utility>

#include "base/Wrapping.h"
#include "compare/DrawListMatch.h"
#include "inspect/model/ListExplanation.h"
#include "pagemodel/ReferenceParts.h"

namespace rvf::inspect {

namespace {

constexpr DiffFlags kListsDiffer = diff::kContent | diff::kDrawOrder;
constexpr DiffFlags kPlacementDiffers = diff::kContent | diff::kPosition;

std::string_view nameOf(PairedBy by) {
  switch (by) {
    case PairedBy::kElsewhere:
      return "elsewhere";
    case PairedBy::kLeftOver:
      return "left over";
    case PairedBy::kGroupWithoutPartner:
      return "group";
    default:
      return "place";
  }
}

/// Listens to the matcher and keeps the pairs that first set a bit.
class ReasonCollector final : public PairingObserver {
 public:
  ReasonCollector(PageVerdict& verdict, ChildListResults& childLists)
      : verdict_(verdict), childLists_(childLists) {}

  void compare(const DrawList& a, const DrawList& b, const std::string& name) {
    if (listsEqual(a, b, &childLists_)) {
      return;
    }
    lists_.push_back({&a, &b, name});
    verdict_.bits |= matchLists(a, b, childLists_, this);
    lists_.pop_back();
  }

  void add(DiffFlags bits, std::string_view by, const std::string& list, i32 first, i32 second) {
    verdict_.bits |= bits;
    keep({bits, by, list, first, second, {}, {}, {}, {}});
  }

  void paired(const Pairing& pairing) override {
    if ((pairing.reasons & ~explained_) == 0) {
      return;
    }
    const Lists& lists = lists_.back();
    VerdictReason reason{pairing.reasons,
                         nameOf(pairing.by),
                         lists.name,
                         pairing.first,
                         pairing.second,
                         {},
                         {},
                         {},
                         {}};
    if (pairing.first != Pairing::kNone) {
      reason.firstType = typeName((*lists.first)[pairing.first].type);
      reason.firstText = textOf((*lists.first)[pairing.first]);
    }
    if (pairing.second != Pairing::kNone) {
      reason.secondType = typeName((*lists.second)[pairing.second].type);
      reason.secondText = textOf((*lists.second)[pairing.second]);
    }
    keep(std::move(reason));
  }

  // A pair of shared lists is entered only once, however often a page refers to it.
  bool enterGroup(i32 first, i32 second) override {
    const DrawPart& a = (*lists_.back().first)[first];
    const DrawPart& b = (*lists_.back().second)[second];
    const std::pair children(childList(a), childList(b));
    if (!entered_.insert(children).second) {
      return false;
    }
    const StaticRefFields& fields = a.fields.staticRef;
    lists_.push_back({children.first, children.second,
                      objectListName(fields.objectType, fields.staticIndex, listNamedBy(fields))});
    return true;
  }
  void leaveGroup() override { lists_.pop_back(); }

 private:
  struct Lists {
    const DrawList* first;
    const DrawList* second;
    std::string name;
  };

  void keep(VerdictReason reason) {
    reason.bits &= ~explained_;
    explained_ |= reason.bits;
    if (reason.bits != 0) {
      verdict_.why.push_back(std::move(reason));
    }
  }

  PageVerdict& verdict_;
  ChildListResults& childLists_;
  DiffFlags explained_ = 0;
  std::vector<Lists> lists_;
  std::set<std::pair<const DrawList*, const DrawList*>> entered_;
};

}  // namespace

std::string objectListName(i32 objectType, i32 index, ObjectList list) {
  return "object " + std::to_string(objectType) + "/" + std::to_string(index) +
         (list == ObjectList::kSecond ? "/second" : "/first");
}

PageVerdict judgePages(const CompareContext& first, const CompareContext& second,
                       ChildListResults& childLists) {
  PageVerdict verdict;
  ReasonCollector reasons(verdict, childLists);
  reasons.compare(first.pageList, second.pageList, "page");
  if (first.staticCount != second.staticCount) {
    reasons.add(kListsDiffer, "lists", "", kNone, kNone);
  }
  const i32 common = std::min(first.staticCount, second.staticCount);
  for (i32 i = 0; i < common; ++i) {
    const auto at = static_cast<std::size_t>(i);
    const DrawList& a = first.staticList(i);
    const DrawList& b = second.staticList(i);
    const std::string name = "placed " + std::to_string(i);
    const bool isSamePlace = wrappingSum(a.originX, first.staticPlacementX[at]) ==
                                 wrappingSum(b.originX, second.staticPlacementX[at]) &&
                             wrappingSum(a.originY, first.staticPlacementY[at]) ==
                                 wrappingSum(b.originY, second.staticPlacementY[at]);
    if (!isSamePlace) {
      reasons.add(kPlacementDiffers, "placement", name, i, i);
    }
    reasons.compare(a, b, name);
  }
  return verdict;
}

}  // namespace rvf::inspect
