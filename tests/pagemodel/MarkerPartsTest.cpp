#include "pagemodel/MarkerParts.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "pagemodel/PartSweep.h"
#include "pagemodel/PayloadText.h"
#include "support/Reporting.h"

namespace rvf {
namespace {

using test::readFresh;
using test::since;
using test::Values;

// The zero-terminated texts that lie one behind the other from `offset` of the payload on.
std::vector<std::u16string> textsFrom(const DrawPart& part, std::size_t offset) {
  std::vector<std::u16string> texts;
  while (offset < part.payload.size()) {
    texts.emplace_back(terminatedText(part.payload, offset));
    offset += 2 * (texts.back().size() + 1);
  }
  return texts;
}

TEST(MarkerParts, StartEndOfEveryVersion) {
  test::forEveryVersion(6, true, [](DrawPart& part, int v, bool) {
    const StartEndFields& f = part.fields.startEnd;
    const MarkerInfo& info = markerInfo(part);
    EXPECT_EQ((Values{f.left, f.top, f.right, f.bottom, f.markerKind, f.markerId}),
              (Values{100, 200, 300, 400, 1, 2}));
    EXPECT_EQ(info.hasHyperlinkFlag, v >= 137);
    EXPECT_EQ(info.nameValueCount, since(136, v, 2));
    ASSERT_EQ(info.pairs.size(), v < 145 ? 0U : 3U);
    EXPECT_TRUE(v < 145 || info.pairs[2] == (std::pair<i32, i32>{5, 6}));
    ASSERT_EQ(info.nameValues != nullptr, v >= 136);
    if (v >= 136) {
      EXPECT_EQ(info.nameValues->at(0).value.view(), u"value");
      EXPECT_EQ(info.nameValues->at(0).number, 0);  // only images store it
      EXPECT_EQ(info.nameValues->at(1).name.view(), u"bare");
    }
    ASSERT_EQ(info.hyperlink != nullptr, v >= 115);
    if (v < 115) return;
    EXPECT_EQ(std::u16string(info.hyperlink->text.get()), v < 133 ? u"h" : u"http://a");
    EXPECT_EQ(info.hyperlink->secondLabel.view(), v < 138 ? u"" : u"second");
  });
}

TEST(MarkerParts, MoreNameValuesThanAPartCounts) {
  for (const int count : {65535, 65536, 70000}) {
    test::HeldMessages messages;
    const std::vector<test::NameValueFields> entries(static_cast<std::size_t>(count),
                                                     {.name = u"n"});
    const DrawPart part = readFresh(test::startEnd({.nameValues = entries, .pairs = {{7, 8}}}));
    const MarkerInfo& info = markerInfo(part);
    EXPECT_EQ(info.nameValueCount, count % 65536);
    EXPECT_EQ(info.nameValues == nullptr ? 0 : info.nameValues->size(), info.nameValueCount);
    EXPECT_EQ(info.pairs.size(), 1U);  // the entries that are dropped are read all the same
    const std::string warning =
        "9048 You have more than 65535 metadata objects saved. The last 2147418112 will be ignored";
    EXPECT_EQ(messages.take(), std::vector(count > 65535 ? 1U : 0U, warning));
  }
}

TEST(MarkerParts, PlainMarkersOfEveryVersion) {
  for (const int type : {23, 34}) {
    test::forEveryVersion(type, true, [type](DrawPart& part, int v, bool) {
      const IgnoreMarkerFields& f = part.fields.ignoreMarker;
      EXPECT_EQ((Values{f.markerValue, f.markerKind, f.markerFlag}),
                (Values{1, 2, type == 23 ? since(154, v, 4) : 0}));
    });
  }
  for (const int type : {36, 37}) {
    test::forEveryVersion(type, true, [type](DrawPart& part, int, bool) {
      const StateMarkerFields& f = part.fields.stateMarker;
      EXPECT_EQ((Values{f.markerValue, f.markerState, f.markerFlag}),
                (Values{1, 3, type == 36 ? 4 : 0}));
    });
  }
}

TEST(MarkerParts, TaggedObjectOfEveryVersion) {
  test::forEveryVersion(42, true, [](DrawPart& part, int v, bool) {
    const TaggedObjectFields& f = part.fields.taggedObject;
    EXPECT_EQ((Values{f.markerState, f.tagKind, f.tagId}), (Values{1, 2, 5}));
    EXPECT_EQ((Values{f.tagText, f.altText, f.actualText}), (Values{1, 1, since(148, v, 1)}));
    EXPECT_EQ(std::u16string(taggedTexts(part).language), v < 131 ? u"default" : u"nl");
    std::vector<std::u16string> texts = {u"tag", u"other"};
    if (v >= 148) texts.push_back(u"actual");
    EXPECT_EQ(textsFrom(part, sizeof(TaggedTexts)), texts);
  });
  const DrawPart bare = readFresh(test::taggedObject({.tagText = u"", .altText = u""}));
  EXPECT_EQ(bare.fields.taggedObject.tagText + bare.fields.taggedObject.altText, kNullPointer);
  EXPECT_EQ(textsFrom(bare, sizeof(TaggedTexts)), (std::vector<std::u16string>{u"actual"}));
}

TEST(MarkerParts, TagIdsAndLanguages) {
  const int rows[][4] = {{0, 0, 10000, 40000},     {9999, 9999, 19999, 49999},
                         {10000, 0, 10000, 40000}, {39999, 29999, 39999, 4463},
                         {40001, 1, 10001, 40001}, {65535, 25535, 35535, 65535}};
  for (const auto& [id, low, middle, top] : rows) {
    const auto folded = [id = id](u8 band) { return foldedTagId(static_cast<u16>(id), band); };
    EXPECT_EQ((Values{folded(0), folded(1), folded(2)}), (Values{low, middle, top})) << id;
    EXPECT_EQ(readFresh(test::taggedObject({.tagId = id})).fields.taggedObject.tagId, low);
  }
  for (const auto& [index, tag] : {std::pair{0, u"default"},
                                   {8, u"en-US"},
                                   {30, u"hmn"},
                                   {60, u"no"},
                                   {61, u"default"},
                                   {-1, u"default"}}) {
    const DrawPart part = readFresh(test::taggedObject({.language = index}));
    EXPECT_EQ(std::u16string(taggedTexts(part).language), tag);
  }
}

TEST(MarkerParts, BookmarkAndSearchKeyOfEveryVersion) {
  test::forEveryVersion(43, false, [](DrawPart& part, int, bool) {
    const BookmarkFields& f = part.fields.bookmark;
    EXPECT_EQ((Values{f.bookmarkId, f.bookmarkLevel, f.title}), (Values{1, 2, 1}));
    EXPECT_EQ(textsFrom(part, 0), (std::vector<std::u16string>{u"title"}));
  });
  test::forEveryVersion(15, false, [](DrawPart& part, int v, bool) {
    const LocSearchKeyFields& f = part.fields.locSearchKey;
    EXPECT_EQ((Values{f.keyValue, f.keyText, f.keySecondText, f.keyFlagA, f.keyFlagB}),
              (Values{1, 1, since(119, v, 1), 7, since(119, v, 8)}));
    std::vector<std::u16string> texts = {u"key"};
    if (v >= 119) texts.push_back(u"second");
    EXPECT_EQ(textsFrom(part, 0), texts);
  });
  EXPECT_EQ(readFresh(test::bookmark({.title = u""})).fields.bookmark.title, kNullPointer);
}

TEST(MarkerParts, SubscribeOfEveryVersion) {
  test::forEveryVersion(41, false, [](DrawPart& part, int, bool) {
    const SubscribeEntries& entries = subscribeEntries(part);
    ASSERT_EQ(entries.size(), 2U);
    EXPECT_EQ((Values{part.fields.subscribe.subscriberId, entries[0].entryId, entries[1].entryId,
                      entries[1].entryValue}),
              (Values{6, 1, 4, 5}));  // the second one in the old form
    EXPECT_EQ(entries[1].entryName.view(), u"entry");
  });
  using Entry = test::SubscribeEntryFields;
  const Entry newer{.version = 500, .entryId = 7, .sections = {"one", "two"}};
  const Entry old{.version = {}, .entryId = 100}, negative{.version = {}, .entryId = -7};
  const DrawPart part = readFresh(test::subscribe({.entries = {newer, old, negative}}));
  const SubscribeEntries& entries = subscribeEntries(part);
  EXPECT_EQ((Values{entries[0].entryId, entries[1].entryId, entries[2].entryId}),
            (Values{7, 100, 0xFFFFFFF9}));
  EXPECT_EQ(readFresh(test::subscribe({.entries = {}})).fields.subscribe.entries, kNullPointer);
}

}  // namespace
}  // namespace rvf
