#include "compare/DrawListMatch.h"

#include <array>
#include <memory_resource>
#include <vector>

#include "base/Wrapping.h"
#include "compare/MatchCandidates.h"
#include "compare/PartComparison.h"
#include "pagemodel/PartOperations.h"
#include "pagemodel/PayloadText.h"
#include "pagemodel/ReferenceParts.h"

namespace rvf {

namespace {

// An item that was found at another place, or at its place within tolerance, costs these two.
constexpr DiffFlags kFoundElsewhere = diff::kContent | diff::kDrawOrder;

/// One call of matchDrawLists.
class DrawListMatcher {
 public:
  DrawListMatcher(DrawList& overlay, const DrawList& a, const DrawList& b, bool buildOverlay,
                  i32 offsetX, i32 offsetY)
      : overlay_(overlay),
        isSwapped_(a.count > b.count),
        shorter_(isSwapped_ ? b : a),
        longer_(isSwapped_ ? a : b),
        buildOverlay_(buildOverlay),
        offsetX_(offsetX),
        offsetY_(offsetY),
        consumed_(static_cast<std::size_t>(longer_.count), false, &memory_),
        candidates_(longer_, consumed_) {}

  DiffFlags match() {
    for (i32 i = 0; i < shorter_.count; ++i) {
      matchShorter(i);
    }
    for (i32 j = 0; j < longer_.count; ++j) {
      if (!isConsumed(j)) {
        accountForLonger(longer_[j]);
      }
    }
    return bits_;
  }

 private:
  static constexpr i32 kNotFound = MatchCandidates::kNotFound;
  // In bytes: a bit for each of 8,192 items, more than almost every page has.
  static constexpr std::size_t kUsualSize = 1024;

  [[nodiscard]] bool isConsumed(i32 index) const {
    return consumed_[static_cast<std::size_t>(index)];
  }
  void consume(i32 index) { consumed_[static_cast<std::size_t>(index)] = true; }

  void matchShorter(i32 i) {
    const DrawPart& s = shorter_[i];
    // Whether the item at this place was taken by an earlier search does not count.
    if (partsEqual(s, longer_[i])) {
      consume(i);
      return;
    }
    const i32 found = candidates_.firstFree(s);
    if (found != kNotFound) {
      bits_ |= kFoundElsewhere;
      consume(found);
    }
    const DrawPart& partner = longer_[found == kNotFound ? i : found];
    if (s.type == PartType::kStaticRef) {
      matchGroups(s, partner);
    } else if (found == kNotFound) {
      accountForShorter(s, partner);
    }
  }

  // Whether the partner was found or only stands at the same place plays no part here.
  void matchGroups(const DrawPart& s, const DrawPart& partner) {
    const DrawList* own = childList(s);
    const DrawList* other = partner.type == PartType::kStaticRef ? childList(partner) : nullptr;
    if (own == nullptr || other == nullptr) {
      bits_ |= kFoundElsewhere;
      return;
    }
    const DrawList& first = isSwapped_ ? *other : *own;
    const DrawList& second = isSwapped_ ? *own : *other;
    bits_ |= matchDrawLists(overlay_, first, second, buildOverlay_, offsetX_, offsetY_);
  }

  // The item at the same place stays free and comes up again among those of the longer list.
  void accountForShorter(const DrawPart& s, const DrawPart& atSamePlace) {
    bits_ |= classifyParts(s, atSamePlace);
    if (bits_ != 0) {
      bits_ |= diff::kContent;
    }
    if (buildOverlay_) {
      DrawPart& slot = appendSlot(overlay_);
      if (!isSwapped_) {
        copyPart(slot, s);
        shiftPart(slot, offsetX_, offsetY_);
      }
    }
  }

  void accountForLonger(const DrawPart& u) {
    DrawPart& slot = appendSlot(overlay_);
    const bool isCopied = buildOverlay_ && isSwapped_;
    if (isCopied) {
      copyPart(slot, u);
    }
    if (u.type == PartType::kStaticRef) {
      const i32 dx = isCopied ? offsetX_ : 0;
      const i32 dy = isCopied ? offsetY_ : 0;
      bits_ |= spillChildList(overlay_, childList(u), dx, dy, buildOverlay_);
    } else if (isCopied) {
      shiftPart(slot, offsetX_, offsetY_);
    } else if (u.type == PartType::kImage) {
      bits_ |= diff::kImages;
    }
    bits_ |= diff::kContent;
  }

  DrawList& overlay_;
  const bool isSwapped_;
  const DrawList& shorter_;
  const DrawList& longer_;
  const bool buildOverlay_;
  const i32 offsetX_;
  const i32 offsetY_;
  std::array<std::byte, kUsualSize> usualMemory_{};  // so that most pages take none from the heap
  std::pmr::monotonic_buffer_resource memory_{usualMemory_.data(), usualMemory_.size()};
  std::pmr::vector<bool> consumed_;  // items of the longer list that have found their partner
  MatchCandidates candidates_;
  DiffFlags bits_ = 0;
};

DiffFlags spilledBits(PartType type) {
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

bool listsEqual(const DrawList& a, const DrawList& b) {
  if (a.count != b.count) {
    return false;
  }
  for (i32 i = 0; i < a.count; ++i) {
    // Groups are equal only if the children that both have are.
    if (!partsEqual(a[i], b[i])) {
      return false;
    }
  }
  return true;
}

DiffFlags matchDrawLists(DrawList& overlay, const DrawList& a, const DrawList& b, bool buildOverlay,
                         i32 offsetX, i32 offsetY) {
  return DrawListMatcher(overlay, a, b, buildOverlay, offsetX, offsetY).match();
}

DiffFlags spillChildList(DrawList& overlay, const DrawList* list, i32 offsetX, i32 offsetY,
                         bool buildOverlay) {
  if (list == nullptr) {
    return 0;
  }
  if (buildOverlay) {
    overlay.contentTally = wrappingSum(overlay.contentTally, list->contentTally);
  }
  DiffFlags bits = 0;
  for (const DrawPart& part : list->parts()) {
    DrawPart& slot = appendSlot(overlay);
    if (buildOverlay) {
      copyPart(slot, part);
    }
    if (part.type == PartType::kClickArea) {
      // Quirk that stays: a click area ends the accounting, and what was found before it is
      // dropped.
      return 0;
    }
    bits |= spilledBits(part.type);
    if (buildOverlay) {
      shiftPart(slot, offsetX, offsetY);
    }
  }
  return bits;
}

}  // namespace rvf
