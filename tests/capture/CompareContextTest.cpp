#include "capture/CompareContext.h"

#include "compare/CompareFixture.h"

namespace rvf::test {
namespace {

/// What a fetch reports, and the page that it leaves.
std::string fetched(CompareContext& c, int customer, int position) {
  HeldMessages messages;
  c.FetchPage(customer, position);
  std::string text = messages.takeNumbers() == std::vector{9042} ? "damaged" : "";
  text += contentOf(c.pageList) + ", x" + Shown::of(c.staticPlacementX);
  text += ", y" + Shown::of(c.staticPlacementY);
  for (i32 i = 0; i < c.staticCount; ++i) text += ", list" + contentOf(c.staticList(i));
  return text;
}

TEST(CompareContext, PagesAndTheirPlacedLists) {
  std::vector<PageFields> pages(4, page({rect()}));
  pages[0].body->list.count = 0x7FFFFFFF;
  pages[1].body->placed = {{.list = {.parts = {empty(0)}}, .x = 5, .y = -6},
                           {.list = {.version = 100}, .x = 7, .y = 8}};
  pages[2].body->staticCount = 0x7FFFFFFF;
  pages[3].body->staticCount = -3;
  const Capture capture = writeCapture(captureOf(pages));
  const std::vector<int>& offsets = capture.bodyOffsets;
  LoadedCapture file(capture.bytes);
  CompareContext& c = file.context;
  const std::string none = ", x( ), y( )", body = " 3, x( 5 7 ), y( -6 8 ), list 0, list";
  EXPECT_EQ(fetched(c, 0, offsets[0]), "damaged" + none);
  EXPECT_EQ(c.pageList.capacity(), 0);  // a count by itself takes no memory
  EXPECT_EQ(fetched(c, 0, offsets[1]), body);
  // A page that is in memory is not read again, not even for another customer.
  file.bytes[static_cast<std::size_t>(offsets[1])] = 77;
  file.file.contentChanged();
  EXPECT_EQ(fetched(c, 1, offsets[1]), body);
  EXPECT_EQ(c.pageExtentA, 8);
  EXPECT_EQ(fetched(c, 1, -7), none);
  EXPECT_EQ(fetched(c, 1, offsets[1]), body);
  EXPECT_EQ(c.pageExtentA, 77);
  EXPECT_EQ(fetched(c, 2, offsets[2]), "damaged 3" + none);
  EXPECT_EQ(fetched(c, 2, offsets[3]), " 3" + none);
  EXPECT_EQ(c.cachedCustomer, 2);
  EXPECT_EQ(fetched(c, 2, static_cast<int>(capture.bytes.size())), "damaged" + none);
}

TEST(CompareContext, WhatIsWrongWithAPageIsKept) {
  std::vector<PageFields> pages(13, page({}));
  for (PageFields& field : pages) field.body->list.count = 0x7FFFFFFF;
  pages[12].body->list.version = kNewestList + 1;
  const Capture capture = writeCapture(captureOf(pages));
  LoadedCapture file(capture.bytes);
  HeldMessages messages;
  for (int i = 0; i < 26; ++i) {
    file.reader.currentPage = i / 2;  // the second time it is there already
    file.reader.loadCurrentPage();
    ASSERT_TRUE(file.context.pageFailure());
    ASSERT_EQ(file.context.newerRecord() != nullptr, i / 2 == 12);
  }
  const DamageRecord& damage = file.reader.damage();
  EXPECT_EQ(damage.count, 12);
  ASSERT_EQ(damage.places.size(), 10U);
  EXPECT_EQ(damage.places[9].page, 9);
  EXPECT_EQ(damage.places[9].offset, capture.bodyOffsets[9] + 8 + 16);  // after the count
  EXPECT_EQ(messages.takeNumbers(), std::vector(12, 9042));
  file.context.FetchPage(0, -1);
  EXPECT_FALSE(file.context.pageFailure());
}

TEST(CompareContext, DamagedBodiesLeaveWhatWasReadBefore) {
  constexpr int kTail = 15 + 4, kRoomForAll = 8 + 16 + 45 * 5;  // the smallest part has 5 bytes
  for (const int v : {157, 131, 105}) {
    PageBody body{.list = {.partVersion = v}};
    std::vector<int> partEnds, listEnds;
    const auto size = [&body] { return static_cast<int>(bytesOf(writePageBody, body).size()); };
    for (const Part& part : allParts()) {
      body.list.parts.push_back(part);
      partEnds.push_back(size() - kTail);
    }
    for (int i = 0; i < 2; ++i) {
      body.placed.push_back({.list = {.parts = {line()}}});
      listEnds.push_back(size());
    }
    const std::string bytes = bytesOf(writePageBody, body);
    for (int length = 0; length < size(); ++length) {
      LoadedCapture file(bytes.substr(0, static_cast<std::size_t>(length)));
      CompareContext& c = file.context;
      c.doubleByteText = false;
      ASSERT_TRUE(fetched(c, 0, 0).starts_with("damaged")) << length;
      const auto parts = std::ranges::upper_bound(partEnds, length) - partEnds.begin();
      ASSERT_EQ(c.pageList.count, length < kRoomForAll ? 0 : parts) << length;
      ASSERT_EQ(c.staticCount, length < listEnds[0] ? 0 : 1) << length;
    }
  }
}

}  // namespace
}  // namespace rvf::test
