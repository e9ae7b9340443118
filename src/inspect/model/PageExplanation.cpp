#include "inspect/model/PageExplanation.h"

#include <algorithm>
#include <string>
#include <utility>

#include "base/Wrapping.h"
#include "inspect/model/Digest.h"
#include "inspect/model/ListExplanation.h"
#include "inspect/model/PartDigest.h"
#include "inspect/model/SequencePairing.h"

namespace rvf::inspect {

namespace {

/// The placed lists of a page, which are paired as a whole.
class PlacedLists {
 public:
  PlacedLists(const CompareContext& page, const PageDigests& digests)
      : page_(page), digests_(digests) {}

  [[nodiscard]] i32 count() const { return page_.staticCount; }
  [[nodiscard]] DigestedList list(i32 i) const {
    return {page_.staticList(i), digests_.placedLists[static_cast<std::size_t>(i)]};
  }
  [[nodiscard]] std::vector<Field> fields(i32 i) const {
    std::vector<Field> fields = fieldsOfList(page_.staticList(i));
    fields.push_back({"placementX", i64{placementX(i)}});
    fields.push_back({"placementY", i64{placementY(i)}});
    return fields;
  }
  /// The position of the list on the page, as the verdict adds it up.
  [[nodiscard]] std::pair<i32, i32> place(i32 i) const {
    const DrawList& list = page_.staticList(i);
    return {wrappingSum(list.originX, placementX(i)), wrappingSum(list.originY, placementY(i))};
  }
  [[nodiscard]] std::vector<u64> contents() const {
    std::vector<u64> keys;
    for (i32 i = 0; i < count(); ++i) {
      Digest digest;
      for (const u64 part : list(i).digests) {
        digest.add(part);
      }
      keys.push_back(digest.value());
    }
    return keys;
  }

 private:
  [[nodiscard]] i32 placementX(i32 i) const {
    return page_.staticPlacementX[static_cast<std::size_t>(i)];
  }
  [[nodiscard]] i32 placementY(i32 i) const {
    return page_.staticPlacementY[static_cast<std::size_t>(i)];
  }

  const CompareContext& page_;
  const PageDigests& digests_;
};

std::string placedName(i32 index) { return "placed " + std::to_string(index); }

Change wholeList(ChangeKind kind, i32 index) {
  Change change;
  change.kind = kind;
  change.type = "LIST";
  change.list = placedName(index);
  (kind == ChangeKind::kAdded ? change.second : change.first) = index;
  return change;
}

void explainPlacedPair(const PlacedLists& first, i32 i, const PlacedLists& second, i32 j,
                       ChildListResults& childLists, ChangeStream& changes) {
  // The verdict compares lists by their number and by the sum of origin and placement.
  const bool countsForVerdict = i != j || first.place(i) != second.place(j);
  std::vector<FieldChange> fields = changedFields(first.fields(i), second.fields(j));
  if (i != j) {
    fields.push_back({"index", i64{i}, i64{j}});
  }
  explainFields(std::move(fields), "LIST", placedName(i),
                countsForVerdict ? std::string_view() : ignored_by::kField, changes, {i, j});
  explainParts(first.list(i), second.list(j), placedName(i), childLists, changes);
}

/// Pairs equal contents first, in sequence, and then what is between them, index by index.
void explainPlacedLists(const PlacedLists& first, const PlacedLists& second,
                        ChildListResults& childLists, ChangeStream& changes) {
  if (first.count() == 0 && second.count() == 0) {
    return;
  }
  std::vector<IndexPair> anchors = pairInSequence(first.contents(), second.contents());
  anchors.emplace_back(first.count(), second.count());
  i32 i = 0, j = 0;
  for (const auto& [anchorI, anchorJ] : anchors) {
    for (; i < anchorI && j < anchorJ; ++i, ++j) {
      explainPlacedPair(first, i, second, j, childLists, changes);
    }
    for (; i < anchorI; ++i) {
      changes.add(wholeList(ChangeKind::kRemoved, i));
    }
    for (; j < anchorJ; ++j) {
      changes.add(wholeList(ChangeKind::kAdded, j));
    }
    if (i < first.count() && j < second.count()) {
      explainPlacedPair(first, i++, second, j++, childLists, changes);
    }
  }
}

std::vector<Field> extentsOf(const CompareContext& page) {
  return {{"pageExtentA", i64{page.pageExtentA}}, {"pageExtentB", i64{page.pageExtentB}}};
}

}  // namespace

PageDigests digestsOf(const CompareContext& page) {
  PageDigests digests{digestsOf(page.pageList), {}};
  for (i32 i = 0; i < page.staticCount; ++i) {
    digests.placedLists.push_back(digestsOf(page.staticList(i)));
  }
  return digests;
}

PageDigests digestsOf(const CompareContext& page, const CompareContext& similar,
                      const PageDigests& digestsOfSimilar) {
  PageDigests digests{digestsOf(page.pageList, similar.pageList, digestsOfSimilar.pageList), {}};
  for (i32 i = 0; i < page.staticCount; ++i) {
    digests.placedLists.push_back(digestsOf(page.staticList(i)));
  }
  return digests;
}

std::vector<Field> indexFieldsOf(const PageRecord& record) {
  return {{"name", std::u16string(record.name.text().view())},
          {"leadValue", i64{record.leadValue}},
          {"tailValue", i64{record.tailValue}}};
}

void explainPages(const CompareContext& first, const PageDigests& firstDigests,
                  const CompareContext& second, const PageDigests& secondDigests,
                  ChildListResults& childLists, ChangeStream& changes) {
  const bool bothHaveBodies = first.cachedPagePosition >= 0 && second.cachedPagePosition >= 0;
  const bool sameExtents =
      first.pageExtentA == second.pageExtentA && first.pageExtentB == second.pageExtentB;
  if (bothHaveBodies && !sameExtents) {
    explainFields(changedFields(extentsOf(first), extentsOf(second)), "PAGE", "",
                  ignored_by::kField, changes);
  }
  explainFields(changesOfList(first.pageList, second.pageList), "LIST", "page", ignored_by::kField,
                changes);
  explainParts({first.pageList, firstDigests.pageList}, {second.pageList, secondDigests.pageList},
               "page", childLists, changes);
  explainPlacedLists({first, firstDigests}, {second, secondDigests}, childLists, changes);
}

void explainIndex(const PageRecord& first, const PageRecord& second, ChangeStream& changes) {
  const bool sameName = first.name == second.name;
  if (sameName && first.leadValue == second.leadValue && first.tailValue == second.tailValue) {
    return;
  }
  explainFields(changedFields(indexFieldsOf(first), indexFieldsOf(second)), "PAGE", "",
                sameName ? ignored_by::kField : ignored_by::kPageName, changes);
}

}  // namespace rvf::inspect
