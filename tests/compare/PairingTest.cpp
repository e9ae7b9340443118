#include <array>
#include <map>
#include <random>

#include "base/Wrapping.h"
#include "compare/CompareFixture.h"
#include "compare/DrawListMatch.h"
#include "compare/PageOverlay.h"
#include "compare/PartComparison.h"
#include "pagemodel/PartOperations.h"
#include "pagemodel/ReferenceParts.h"

namespace rvf::test {
namespace {

/// Everything that an observer receives, as text, and the sum of the reasons.
struct Told : PairingObserver {
  void paired(const Pairing& p) override {
    text += Shown::row(" |", p.first, p.second, p.reasons, static_cast<int>(p.by));
    bits |= p.reasons;
  }
  bool enterGroup(i32 first, i32 second) override {
    text += Shown::row(" (", first, second);
    return entersGroups;
  }
  void leaveGroup() override { text += " )"; }

  std::string text;
  DiffFlags bits = 0;
  bool entersGroups = true;
};

/// A reference implementation of the matching, without index or cache, and of its overlay.
struct PlainMatcher {
  const Tolerances& tolerances;
  const bool build;
  const i32 dx = 3, dy = -4;
  Told told{};
  DiffFlags bits = 0;
  DrawList overlay{};

  // Null for an item of the other side, whose slot stays blank.
  void addSlot(const DrawPart* part, i32 x, i32 y) {
    DrawPart& slot = appendSlot(overlay);
    if (part != nullptr) copyPart(slot, *part);
    if (part != nullptr) shiftPart(slot, x, y);
  }

  DiffFlags spill(const DrawList* list, i32 x, i32 y) {
    static const std::map<int, DiffFlags> earned = {{1, 2048}, {2, 16384}, {3, 32768}, {4, 32768},
                                                    {5, 4096}, {7, 4096},  {30, 1024}, {31, 1024}};
    if (list == nullptr) return 0;
    DiffFlags sum = 0;
    overlay.contentTally += build ? list->contentTally : 0;
    for (const DrawPart& part : list->parts()) {
      addSlot(build ? &part : nullptr, x, y);
      if (part.type == PartType::kClickArea) return 0;
      const auto found = earned.find(static_cast<int>(part.type));
      sum |= found == earned.end() ? 0 : found->second;
    }
    return sum;
  }

  void match(const DrawList& a, const DrawList& b) {
    const bool swapped = a.count > b.count;
    const DrawList &shorter = swapped ? b : a, &longer = swapped ? a : b;
    std::vector<bool> taken(longer.slots.size());
    const auto tell = [&](i32 i, i32 j, DiffFlags reasons, PairedBy by) {
      told.paired({swapped ? j : i, swapped ? i : j, reasons, by});
      bits |= reasons;
    };
    for (i32 i = 0; i < shorter.count; ++i) {
      const DrawPart& s = shorter[i];
      if (partsEqual(s, longer[i])) {
        taken[static_cast<std::size_t>(i)] = true;
        tell(i, i, 0, PairedBy::kSamePlace);
        continue;
      }
      i32 j = 0;
      while (j < longer.count &&
             (taken[static_cast<std::size_t>(j)] || classifyParts(s, longer[j], tolerances) != 0)) {
        ++j;
      }
      const bool isFound = j < longer.count;
      if (isFound) {
        taken[static_cast<std::size_t>(j)] = true;
        tell(i, j, 129, PairedBy::kElsewhere);
      } else {
        j = i;
      }
      const bool isGroup = s.type == PartType::kStaticRef;
      const bool areGroups = isGroup && longer[j].type == PartType::kStaticRef &&
                             childList(s) != nullptr && childList(longer[j]) != nullptr;
      if (!isFound && !isGroup) {
        tell(i, j, classifyParts(s, longer[j], tolerances) | 128, PairedBy::kSamePlace);
        if (build) addSlot(swapped ? nullptr : &s, dx, dy);
      } else if (!isFound) {
        tell(i, j, areGroups ? 0 : 129,
             areGroups ? PairedBy::kSamePlace : PairedBy::kGroupWithoutPartner);
      }
      if (areGroups) {
        static_cast<void>(told.enterGroup(swapped ? j : i, swapped ? i : j));
        const DrawPart &first = swapped ? longer[j] : s, &second = swapped ? s : longer[j];
        match(*childList(first), *childList(second));
        told.leaveGroup();
      }
    }
    for (i32 j = 0; j < longer.count; ++j) {
      if (taken[static_cast<std::size_t>(j)]) continue;
      const DrawPart& u = longer[j];
      const bool isCopied = build && swapped;
      addSlot(isCopied ? &u : nullptr, dx, dy);
      DiffFlags reasons = 128 | (u.type == PartType::kImage && !isCopied ? 4096 : 0);
      if (u.type == PartType::kStaticRef) {
        if (isCopied)
          shiftPart(overlay.slots[static_cast<std::size_t>(overlay.count - 1)], -dx, -dy);
        reasons |= spill(childList(u), isCopied ? dx : 0, isCopied ? dy : 0);
      }
      tell(-1, j, reasons, PairedBy::kLeftOver);
    }
  }
};

/// Everything in an overlay's list.
std::string shown(const DrawList& list) {
  std::string text = Shown::row("tally", list.contentTally);
  for (const DrawPart& part : list.parts()) {
    text += Shown::row(" |", static_cast<int>(part.type));
    for (const u32 word : part.fields.words) text += Shown::row("", word);
    const bool isPlain = part.type == PartType::kText || part.type == PartType::kLine;
    if (isPlain) text.append(part.payload.at<char>(0), part.payload.size());
  }
  return text;
}

/// Lists of parts that differ only in some bits of a few bytes, with `children` as child lists.
class RandomLists {
 public:
  RandomLists(unsigned seed, const std::vector<std::string>& records) : random_(seed) {
    // In two lists out of three, all parts are of one kind, or of two neighbouring ones, and differ
    // in the same few bytes.
    const bool areAlike = seed % 3 > 0;
    for (auto kinds = areAlike ? 1 : 8U; kinds > 0; --kinds) {
      const auto kind = random_() % (records.size() - (seed % 4 == 0 ? 0 : kAbsorbing));
      kinds_.push_back(records[kind]);
      if (areAlike && seed % 2 == 0) kinds_.push_back(records[kind == 0 ? 1 : kind - 1]);
    }
    for (auto bytes = areAlike ? 1 + random_() % 6 : 0; bytes > 0; --bytes) {
      places_.push_back(kFirstField + random_() % (kinds_[0].size() - kFirstField));
    }
  }

  static constexpr std::size_t kAbsorbing = 4;  // the last records

  void fill(DrawList& list, unsigned most, std::vector<DrawList>* children) {
    list.contentTally = static_cast<i32>(random_() % 9);
    for (auto count = random_() % most; count > 0; --count) {
      const std::string& record = kinds_[random_() % kinds_.size()];
      std::string changed = record;
      std::vector<std::size_t> places = places_;
      if (places.empty()) places.push_back(kFirstField + random_() % (record.size() - kFirstField));
      for (const std::size_t at : places) {
        if (at >= changed.size()) continue;
        const auto bits = static_cast<int>((random_() % 2) * (random_() % 16));
        changed[at] = static_cast<char>(changed[at] ^ bits);
      }
      DrawPart& part = appendSlot(list);
      EXPECT_TRUE(readRecord(part, changed) || readRecord(part, record));
      shiftPart(part, -11, -21);  // positions on both sides of zero
      if (part.type == PartType::kStaticRef && children != nullptr && random_() % 4 > 0) {
        setChildList(part, &(*children)[part.fields.staticRef.staticIndex % children->size()]);
      }
    }
  }

 private:
  static constexpr std::size_t kFirstField = 5;
  std::mt19937 random_;
  std::vector<std::string> kinds_;
  std::vector<std::size_t> places_;
};

std::vector<std::string> variedRecords() {
  const std::vector<Part> all = allParts();
  std::vector<Part> parts = {text({.runs = {}}),
                             image({.link = LinkFields()}),
                             textProp({.texts = {u"ab", u"", u"", u""}}),
                             line({.points = {}}),
                             poly({.points = {{10, 20}, {30, 40}}}),
                             poly(),  // one point more
                             staticRef({.layerByteA = 128}),
                             staticRef({.layerByteA = 1})};
  for (const std::size_t i : {1U, 2U, 3U, 5U, 7U, 8U, 9U, 30U, 31U, 44U, 0U, 6U, 14U, 40U}) {
    parts.push_back(all[i]);
  }
  std::vector<std::string> records;
  for (const Part& part : parts) records.push_back(recordOf(part));
  return records;
}

TEST(Pairing, IsThatOfThePlainAlgorithm) {
  const std::vector<std::string> records = variedRecords();
  std::size_t elsewhere = 0, groups = 0;
  for (unsigned seed = 0; seed < 1500; ++seed) {
    const Tolerances tolerances{std::array{0, 1, 3, 100, -1, 2147483647}[seed % 6],
                                std::array{0, 3, -1}[seed / 6 % 3]};
    RandomLists lists(seed, records);
    std::vector<DrawList> children(2), otherChildren(2);
    for (DrawList& list : children) lists.fill(list, 5, nullptr);
    for (DrawList& list : otherChildren) lists.fill(list, 5, nullptr);
    DrawList a, b;
    lists.fill(a, seed % 5 == 0 ? 120 : 30, &children);
    lists.fill(b, seed % 5 == 0 ? 120 : 30, &otherChildren);
    ChildListResults childLists(tolerances);
    for (const auto& [first, second] : {std::pair(&a, &b), std::pair(&b, &a)}) {
      PlainMatcher plain{tolerances, false}, built{tolerances, true};
      plain.match(*first, *second);
      built.match(*first, *second);
      Told told, outside;
      outside.entersGroups = false;
      DrawList blank, overlay;
      EXPECT_EQ(matchLists(*first, *second, childLists, &told), plain.bits);
      ASSERT_EQ(told.text, plain.told.text) << "seed " << seed;
      EXPECT_EQ(matchLists(*first, *second, childLists, &outside), plain.bits);
      EXPECT_EQ(outside.text.find(')'), std::string::npos);
      EXPECT_EQ(matchLists(*first, *second, tolerances), plain.bits) << "seed " << seed;
      EXPECT_EQ(listsEqual(*first, *second, &childLists), listsEqual(*first, *second));
      EXPECT_EQ(matchDrawLists(blank, *first, *second, false, 3, -4, tolerances), plain.bits);
      EXPECT_EQ(matchDrawLists(overlay, *first, *second, true, 3, -4, tolerances), built.bits);
      ASSERT_EQ(shown(blank), shown(plain.overlay));
      ASSERT_EQ(shown(overlay), shown(built.overlay)) << "seed " << seed;
      elsewhere += static_cast<std::size_t>(std::ranges::count(told.text, '|'));
      groups += static_cast<std::size_t>(std::ranges::count(told.text, ')'));
    }
  }
  EXPECT_GT(elsewhere, 40000U);
  EXPECT_GT(groups, 500U);
}

/// The bits that an observer receives for a page, combined with those of lists and placements.
DiffFlags observedBits(const CompareContext& a, const CompareContext& b, ChildListResults& known) {
  Told told;
  const auto observe = [&](const DrawList& first, const DrawList& second) {
    if (!listsEqual(first, second)) static_cast<void>(matchLists(first, second, known, &told));
  };
  observe(a.pageList, b.pageList);
  told.bits |= a.staticCount == b.staticCount ? 0 : 129;
  for (i32 i = 0; i < std::min(a.staticCount, b.staticCount); ++i) {
    const auto at = static_cast<std::size_t>(i);
    const DrawList &first = a.staticList(i), &second = b.staticList(i);
    const bool isMoved = wrappingSum(first.originX, a.staticPlacementX[at]) !=
                             wrappingSum(second.originX, b.staticPlacementX[at]) ||
                         wrappingSum(first.originY, a.staticPlacementY[at]) !=
                             wrappingSum(second.originY, b.staticPlacementY[at]);
    told.bits |= isMoved ? 160 : 0;
    observe(first, second);
  }
  return told.bits;
}

/// Compares these bits with those of the walk on every page that it reached. Returns the number of
/// pages.
int checkPages(LoadedCapture& a, LoadedCapture& b, const Tolerances& tolerances) {
  int pages = 0;
  ChildListResults known(tolerances);
  for (i32 c = 0; c < std::min(a.reader.customerCount, b.reader.customerCount); ++c) {
    const CustomerRecord& mine = a.reader.customers[static_cast<std::size_t>(c)];
    const CustomerRecord& other = b.reader.customers[static_cast<std::size_t>(c)];
    if (mine.id != other.id) break;
    for (i32 p = 0; p < std::min(mine.pageCount, other.pageCount); ++p, ++pages) {
      for (LoadedCapture* file : {&a, &b}) {
        file->reader.currentCustomer = c;
        file->reader.currentPage = p;
        file->reader.loadCurrentPage();
        if (file->context.newerRecord() != nullptr) return pages;
      }
      EXPECT_EQ(observedBits(a.context, b.context, known),
                mine.pages[static_cast<std::size_t>(p)].diffBits);
    }
  }
  return pages;
}

TEST(Pairing, ReasonsAddUpToTheBitsOfEveryReferencePage) {
  int pages = 0;
  for (const auto& [name, files] : referenceFiles()) {
    SCOPED_TRACE(name);
    for (const i32 tolerance : {0, 2, -1}) {
      const Tolerances tolerances{tolerance, tolerance};
      LoadedCapture a(files[0]), b(files[1]);
      if (!a.reader.valid() || !b.reader.valid()) continue;
      const Walk walk(a.reader, b.reader, false, true, nullptr, tolerances);
      if (walk.status != diff::kResolution) pages += checkPages(a, b, tolerances);
    }
  }
  EXPECT_GT(pages, 300);
}

}  // namespace
}  // namespace rvf::test
