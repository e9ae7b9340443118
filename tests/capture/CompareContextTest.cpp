#include "capture/CompareContext.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "capture/RvfReader.h"
#include "pagemodel/ReferenceParts.h"
#include "storage/MemFile.h"
#include "support/Capture.h"
#include "support/Reporting.h"

namespace rvf {
namespace {

using test::HeldMessages;

/// A file in memory whose pages are fetched; each fetch may tell of damage.
class Pages {
 public:
  explicit Pages(test::Capture capture)
      : capture_(std::move(capture)),
        file_(reinterpret_cast<std::byte*>(capture_.bytes.data()),
              static_cast<i32>(capture_.bytes.size()), 0),
        reader_(context, false) {
    reader_.load(file_);
  }
  bool isValid() const { return reader_.valid(); }
  int bodyOffset(std::size_t page) const { return capture_.bodyOffsets[page]; }
  std::vector<int> fetch(int customer, int position) {
    HeldMessages messages;
    context.FetchPage(customer, position);
    return messages.takeNumbers();
  }
  /// Makes the bytes of the file unlike what they were, so that a read shows.
  void scramble(int offset) {
    capture_.bytes[static_cast<std::size_t>(offset)] ^= 0x55;
    file_.contentChanged();
  }

 private:
  test::Capture capture_;
  eMemFile file_;

 public:
  CompareContext context;

 private:
  RvfReader reader_;
};

const std::vector<int> kSilent = {};
const std::vector<int> kDamaged = {9042};

test::PageFields pageWith(test::PageBody body) { return {.body = std::move(body)}; }

TEST(CompareContext, PagesAndTheirPlacedLists) {
  test::PageBody body{.list = {.parts = {test::rect(), test::text()}, .originX = 3}};
  body.placed = {{.list = {.parts = {test::line()}}, .x = 5, .y = -6},
                 {.list = {.version = 100}, .x = 7, .y = 8}};
  Pages pages(writeCapture(test::captureOf({pageWith(body), test::page({test::line()})})));
  ASSERT_TRUE(pages.isValid());
  const CompareContext& c = pages.context;
  EXPECT_EQ(pages.fetch(0, pages.bodyOffset(0)), kSilent);
  EXPECT_EQ(c.pageExtentA, 8);
  EXPECT_EQ(c.pageExtentB, 9);
  EXPECT_EQ(c.pageList.count, 2);
  EXPECT_EQ(c.pageList.originX, 3);
  ASSERT_EQ(c.staticCount, 2);
  EXPECT_EQ(c.staticPlacementX, (std::vector<i32>{5, 7}));
  EXPECT_EQ(c.staticPlacementY, (std::vector<i32>{-6, 8}));
  EXPECT_EQ(c.staticList(0).count, 1);
  EXPECT_EQ(c.staticList(1).count, 0);
  EXPECT_EQ(pages.fetch(0, pages.bodyOffset(1)), kSilent);
  EXPECT_EQ(c.pageList.count, 1);
  EXPECT_EQ(c.staticCount, 0);
  EXPECT_TRUE(c.staticPlacementX.empty() && c.staticPlacementY.empty());
  EXPECT_EQ(currentContext, nullptr);
}

TEST(CompareContext, APageThatIsInMemoryIsNotReadAgain) {
  Pages pages(writeCapture(test::captureOf({test::page({test::rect()}), test::page({})})));
  CompareContext& c = pages.context;
  EXPECT_EQ(c.cachedPagePosition, -1);
  EXPECT_EQ(c.cachedCustomer, -1);
  const int body = pages.bodyOffset(0);
  EXPECT_EQ(pages.fetch(0, body), kSilent);
  pages.scramble(body);  // the extent, which shows whether it was read
  pages.fetch(0, body);
  EXPECT_EQ(c.pageExtentA, 8);
  pages.fetch(1, body);  // the same page of another customer
  EXPECT_EQ(c.pageExtentA, 8);
  EXPECT_EQ(c.cachedCustomer, 1);
  pages.fetch(2, -1);
  EXPECT_EQ(c.pageList.count + c.staticCount, 0);
  EXPECT_EQ(c.cachedPagePosition, -1);
  pages.fetch(2, body);
  EXPECT_EQ(c.pageExtentA, 8 ^ 0x55);
  EXPECT_EQ(c.pageList.count, 1);
  pages.fetch(2, -7);
  EXPECT_EQ(c.cachedPagePosition, -7);
  EXPECT_EQ(c.pageList.count, 0);
}

TEST(CompareContext, DamagedBodiesLeaveWhatWasReadBefore) {
  test::PageBody body{.list = {.parts = {test::rect(), test::text()}}};
  body.placed = {{.list = {.parts = {test::line()}}}, {.list = {.parts = {test::line()}}}};
  const test::Capture whole = writeCapture(test::captureOf({pageWith(body)}));
  const auto start = static_cast<std::size_t>(whole.bodyOffsets[0]);
  const auto end = static_cast<std::size_t>(whole.indexOffset);
  test::ByteWriter placed;
  writeList(placed, body.placed[0].list);
  const std::size_t placedSize = static_cast<std::size_t>(placed.size()) + 8;
  std::string bytes = whole.bytes;
  for (std::size_t cut = start; cut < end; ++cut) {
    Pages pages({.bytes = bytes.substr(0, cut), .bodyOffsets = {}});  // the index is gone
    pages.context.doubleByteText = false;
    CompareContext& c = pages.context;
    ASSERT_EQ(pages.fetch(0, static_cast<int>(start)), kDamaged) << cut;  // once
    const std::size_t missing = end - cut;
    ASSERT_EQ(c.staticCount, missing <= placedSize ? 1 : 0) << missing;
    ASSERT_EQ(c.staticPlacementX.size(), static_cast<std::size_t>(c.staticCount));
    ASSERT_EQ(c.pageList.count, missing <= 2 * placedSize + 4 ? 2 : c.pageList.count);
    ASSERT_LE(c.pageList.count, 2);
    EXPECT_EQ(currentContext, nullptr);
  }
  Pages pages(whole);
  EXPECT_EQ(pages.fetch(0, whole.bodyOffsets[0]), kSilent);
  EXPECT_EQ(pages.fetch(0, static_cast<int>(whole.bytes.size())), kDamaged);
  EXPECT_EQ(pages.context.pageList.count + pages.context.staticCount, 0);  // never the page before
  EXPECT_EQ(pages.fetch(0, 0x7FFFFFFF), kDamaged);
}

TEST(CompareContext, CountsInBodiesTakeNoMemory) {
  test::PageBody list{.list = {.parts = {test::rect()}, .count = 0x7FFFFFFF}};
  test::PageBody placed{.list = {.parts = {test::rect()}}, .staticCount = 0x7FFFFFFF};
  test::PageBody negative{.staticCount = -3};
  Pages pages(
      writeCapture(test::captureOf({pageWith(list), pageWith(placed), pageWith(negative)})));
  EXPECT_EQ(pages.fetch(0, pages.bodyOffset(0)), kDamaged);
  EXPECT_EQ(pages.context.pageList.capacity(), 0);
  EXPECT_EQ(pages.fetch(0, pages.bodyOffset(1)), kDamaged);
  EXPECT_EQ(pages.context.pageList.count, 1);
  EXPECT_EQ(pages.context.staticCount, 0);
  EXPECT_EQ(pages.fetch(0, pages.bodyOffset(2)), kSilent);
  EXPECT_EQ(pages.context.staticCount, 0);
}

TEST(CompareContext, StaticTables) {
  const auto named = [](int count, int valueA) {
    return std::vector<test::StaticFields>(static_cast<std::size_t>(count), {.valueA = valueA});
  };
  for (const int version : {1, 2, 3}) {
    test::CaptureFields fields{.version = version};
    fields.statics21 = named(1, 21);
    fields.statics24 = named(5, 24);
    fields.statics23 = named(2, 23);
    fields.statics175 = named(1, 175);
    fields.statics21[0].first.parts = {test::staticRef({.objectType = 24}), test::rect()};
    fields.statics24[4].second = test::ListFields{.parts = {test::rect()}};
    fields.customers[0].pages = {
        test::page({test::staticRef({.objectType = 21}),
                    test::staticRef({.objectType = 24, .staticIndex = 4, .useSecond = 1})})};
    Pages pages(writeCapture(fields));
    ASSERT_TRUE(pages.isValid());
    const CompareContext& c = pages.context;
    const int rows[][3] = {{21, 0, 21},
                           {21, 1, 0},
                           {24, 4, 24},
                           {24, 5, 0},
                           {23, 1, 23},
                           {23, 2, 0},
                           {22, 0, 0},
                           {20, 0, 0},
                           {176, 0, 0},
                           {-1, 0, 0},
                           {21, -1, 0},
                           {100, 0, 0},
                           {175, 0, version >= 2 ? 175 : 0},
                           {175, 1, 0}};
    for (const auto& [type, index, expected] : rows) {
      const DrawStatic* found = c.FindStatic(type, index);
      EXPECT_EQ(found == nullptr ? 0 : found->valueA, expected) << type << ' ' << index;
    }
    // A reference on a page finds its object; one within an object has no list, so that nothing
    // nests without end.
    EXPECT_EQ(pages.fetch(0, pages.bodyOffset(0)), kSilent);
    EXPECT_EQ(childList(c.pageList[0]), &c.FindStatic(21, 0)->firstList);
    EXPECT_EQ(childList(c.pageList[1]), &c.FindStatic(24, 4)->secondList);
    EXPECT_EQ(childList(c.FindStatic(21, 0)->firstList[0]), nullptr);
  }
}

}  // namespace
}  // namespace rvf
