#include "compare/DrawListMatch.h"

#include <array>
#include <memory_resource>
#include <utility>
#include <vector>

#include "compare/MatchCandidates.h"
#include "compare/PartComparison.h"
#include "pagemodel/ReferenceParts.h"

namespace rvf {

namespace {

// The bits for an item that was found at another index, or at its own within tolerance, and for a
// group without a counterpart.
constexpr DiffFlags kFoundElsewhere = diff::kContent | diff::kDrawOrder;

/// One call of matchLists.
class DrawListMatcher {
 public:
  DrawListMatcher(const DrawList& a, const DrawList& b, ChildListResults& childLists,
                  PairingObserver* observer)
      : isSwapped_(a.count > b.count),
        shorter_(isSwapped_ ? b : a),
        longer_(isSwapped_ ? a : b),
        childLists_(childLists),
        observer_(observer),
        consumed_(static_cast<std::size_t>(longer_.count), false, &memory_),
        candidates_(longer_, consumed_, childLists) {}

  DiffFlags match() {
    for (i32 i = 0; i < shorter_.count; ++i) {
      matchShorter(i);
    }
    for (i32 j = 0; j < longer_.count; ++j) {
      if (!isConsumed(j)) {
        accountForLonger(j);
      }
    }
    return bits_;
  }

 private:
  static constexpr i32 kNotFound = MatchCandidates::kNotFound;
  // In bytes: one bit for each of 8,192 items, more than almost any page has.
  static constexpr std::size_t kUsualSize = 1024;

  [[nodiscard]] bool isConsumed(i32 index) const {
    return consumed_[static_cast<std::size_t>(index)];
  }
  void consume(i32 index) { consumed_[static_cast<std::size_t>(index)] = true; }

  void matchShorter(i32 i) {
    const DrawPart& s = shorter_[i];
    // It does not matter whether an earlier search has already taken the item at this index.
    if (partsEqual(s, longer_[i], &childLists_)) {
      consume(i);
      add(i, i, 0, PairedBy::kSamePlace);
      return;
    }
    const i32 found = candidates_.firstFree(s);
    if (found != kNotFound) {
      consume(found);
      add(i, found, kFoundElsewhere, PairedBy::kElsewhere);
    }
    if (s.type == PartType::kStaticRef) {
      matchGroups(i, found);
    } else if (found == kNotFound) {
      accountForShorter(i);
    }
  }

  // A group is matched with the item at its index even if the search finds nothing.
  void matchGroups(i32 i, i32 found) {
    const i32 j = found == kNotFound ? i : found;
    const DrawPart& partner = longer_[j];
    const DrawList* own = childList(shorter_[i]);
    const DrawList* other = partner.type == PartType::kStaticRef ? childList(partner) : nullptr;
    const bool haveChildren = own != nullptr && other != nullptr;
    if (found == kNotFound) {
      if (haveChildren) {
        add(i, j, 0, PairedBy::kSamePlace);
      } else {
        add(i, j, kFoundElsewhere, PairedBy::kGroupWithoutPartner);
      }
    }
    if (haveChildren) {
      matchChildren(i, j, *own, *other);
    }
  }

  void matchChildren(i32 i, i32 j, const DrawList& own, const DrawList& other) {
    const DrawList& first = isSwapped_ ? other : own;
    const DrawList& second = isSwapped_ ? own : other;
    PairingObserver* observer = observer_;
    if (observer != nullptr && !observer->enterGroup(firstOf(i, j), secondOf(i, j))) {
      observer = nullptr;
    }
    if (observer == nullptr) {
      bits_ |= childLists_.matched(first, second);
    } else {
      bits_ |= matchLists(first, second, childLists_, observer);
      observer->leaveGroup();
    }
  }

  // The item at the same index stays free and comes up again among those of the longer list.
  void accountForShorter(i32 i) {
    const DiffFlags reasons =
        classifyParts(shorter_[i], longer_[i], childLists_.tolerances(), &childLists_);
    // Quirk that stays: Content depends on all bits found so far. The result is the same: an item
    // at the same index that does not differ would have been found by the search, unless an earlier
    // search had taken it and left its bits.
    const bool anyBits = (bits_ | reasons) != 0;
    add(i, i, reasons | (anyBits ? diff::kContent : 0), PairedBy::kSamePlace);
  }

  void accountForLonger(i32 j) {
    const DrawPart& u = longer_[j];
    DiffFlags reasons = diff::kContent;
    if (u.type == PartType::kStaticRef) {
      reasons |= childLists_.leftOver(childList(u));
    } else if (u.type == PartType::kImage) {
      reasons |= diff::kImages;
    }
    add(Pairing::kNone, j, reasons, PairedBy::kLeftOver);
  }

  /// `i` and `j` are indexes into the shorter and the longer list.
  void add(i32 i, i32 j, DiffFlags reasons, PairedBy by) {
    bits_ |= reasons;
    if (observer_ != nullptr) {
      observer_->paired({firstOf(i, j), secondOf(i, j), reasons, by});
    }
  }
  [[nodiscard]] i32 firstOf(i32 i, i32 j) const { return isSwapped_ ? j : i; }
  [[nodiscard]] i32 secondOf(i32 i, i32 j) const { return isSwapped_ ? i : j; }

  const bool isSwapped_;
  const DrawList& shorter_;
  const DrawList& longer_;
  ChildListResults& childLists_;
  PairingObserver* const observer_;
  std::array<std::byte, kUsualSize> usualMemory_{};  // so that most pages need none from the heap
  std::pmr::monotonic_buffer_resource memory_{usualMemory_.data(), usualMemory_.size()};
  std::pmr::vector<bool> consumed_;  // items of the longer list that have a partner
  MatchCandidates candidates_;
  DiffFlags bits_ = 0;
};

DiffFlags leftOverBits(PartType type) {
  switch (type) {
    case PartType::kText:
      return diff::kText;
    case PartType::kLine:
      return diff::kLines;
    case PartType::kRect:
    case PartType::kPoly:
      return diff::kShapes;
    case PartType::kImage:
    case PartType::kTextProp:
      return diff::kImages;
    case PartType::kJust1Line:
    case PartType::kLineSet:
      return diff::kBorderLines;
    default:
      return 0;
  }
}

}  // namespace

bool listsEqual(const DrawList& a, const DrawList& b, ChildListResults* childLists) {
  if (a.count != b.count) {
    return false;
  }
  for (i32 i = 0; i < a.count; ++i) {
    // Groups are equal only if their child lists are.
    if (!partsEqual(a[i], b[i], childLists)) {
      return false;
    }
  }
  return true;
}

DiffFlags matchLists(const DrawList& a, const DrawList& b, const Tolerances& tolerances,
                     PairingObserver* observer) {
  ChildListResults childLists(tolerances);
  return matchLists(a, b, childLists, observer);
}

DiffFlags matchLists(const DrawList& a, const DrawList& b, ChildListResults& childLists,
                     PairingObserver* observer) {
  return DrawListMatcher(a, b, childLists, observer).match();
}

bool endsLeftOverChildren(const DrawPart& child) { return child.type == PartType::kClickArea; }

DiffFlags leftOverChildBits(const DrawList* list) {
  if (list == nullptr) {
    return 0;
  }
  DiffFlags bits = 0;
  for (const DrawPart& part : list->parts()) {
    // Quirk that stays: a click area ends the accounting, and the bits found so far are dropped.
    // Existing results depend on this.
    if (endsLeftOverChildren(part)) {
      return 0;
    }
    bits |= leftOverBits(part.type);
  }
  return bits;
}

}  // namespace rvf
