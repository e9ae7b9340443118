#include "capture/CompareContext.h"

#include "compare/CompareFixture.h"
#include "pagemodel/ReferenceParts.h"

namespace rvf::test {
namespace {

const std::vector<int> kSilent = {};
const std::vector<int> kDamaged = {9042};

/// A file in memory whose pages are fetched; each fetch may tell of damage.
struct Pages : LoadedCapture {
  explicit Pages(const Capture& capture)
      : LoadedCapture(capture.bytes), bodyOffsets(capture.bodyOffsets) {}
  std::vector<int> fetch(int customer, int position) {
    HeldMessages messages;
    context.FetchPage(customer, position);
    EXPECT_EQ(currentContext, nullptr);
    EXPECT_EQ(context.staticPlacementX.size(), static_cast<std::size_t>(context.staticCount));
    return messages.takeNumbers();
  }
  std::vector<int> fetch(std::size_t page) { return fetch(0, bodyOffsets.at(page)); }

  std::vector<int> bodyOffsets;
};

PageFields pageWith(PageBody body) { return {.body = std::move(body)}; }

TEST(CompareContext, PagesAndTheirPlacedLists) {
  PageBody body{.list = {.parts = {rect(), text()}, .originX = 3}};
  body.placed = {{.list = {.parts = {line()}}, .x = 5, .y = -6},
                 {.list = {.version = 100}, .x = 7, .y = 8}};
  // Counts alone take no memory.
  PageBody manyParts{.list = {.parts = {rect()}, .count = 0x7FFFFFFF}};
  PageBody manyLists{.list = {.parts = {rect()}}, .staticCount = 0x7FFFFFFF};
  PageBody negative{.staticCount = -3};
  Pages pages(writeCapture(
      captureOf({pageWith(manyParts), pageWith(body), pageWith(manyLists), pageWith(negative)})));
  const CompareContext& c = pages.context;
  EXPECT_EQ(pages.fetch(0), kDamaged);
  EXPECT_EQ(c.pageList.capacity(), 0);
  EXPECT_EQ(pages.fetch(1), kSilent);
  EXPECT_EQ(c.pageExtentA, 8);
  EXPECT_EQ(c.pageExtentB, 9);
  EXPECT_EQ(c.pageList.count, 2);
  EXPECT_EQ(c.pageList.originX, 3);
  EXPECT_EQ(c.staticPlacementX, (std::vector<i32>{5, 7}));
  EXPECT_EQ(c.staticPlacementY, (std::vector<i32>{-6, 8}));
  EXPECT_EQ(c.staticList(0).count, 1);
  EXPECT_EQ(c.staticList(1).count, 0);
  EXPECT_EQ(pages.fetch(2), kDamaged);
  EXPECT_EQ(c.pageList.count, 1);
  EXPECT_EQ(c.staticCount, 0);
  EXPECT_EQ(pages.fetch(3), kSilent);
  EXPECT_EQ(c.pageList.count + c.staticCount, 0);
}

TEST(CompareContext, APageThatIsInMemoryIsNotReadAgain) {
  Pages pages(writeCapture(captureOf({page({rect()}), page({})})));
  CompareContext& c = pages.context;
  EXPECT_EQ(c.cachedPagePosition, -1);
  EXPECT_EQ(c.cachedCustomer, -1);
  const int body = pages.bodyOffsets[0];
  EXPECT_EQ(pages.fetch(0, body), kSilent);
  pages.scramble(body);  // the extent, which shows whether it was read
  pages.fetch(0, body);
  EXPECT_EQ(c.pageExtentA, 8);
  pages.fetch(1, body);  // the same page of another customer
  EXPECT_EQ(c.pageExtentA, 8);
  EXPECT_EQ(c.cachedCustomer, 1);
  pages.fetch(2, -7);
  EXPECT_EQ(c.pageList.count + c.staticCount, 0);
  EXPECT_EQ(c.cachedPagePosition, -7);
  pages.fetch(2, body);
  EXPECT_EQ(c.pageExtentA, 8 ^ 0x55);
  EXPECT_EQ(c.pageList.count, 1);
}

TEST(CompareContext, DamagedBodiesLeaveWhatWasReadBefore) {
  PageBody body{.list = {.parts = {rect(), text()}}};
  body.placed = {{.list = {.parts = {line()}}}, {.list = {.parts = {line()}}}};
  const Capture whole = writeCapture(captureOf({pageWith(body)}));
  const int start = whole.bodyOffsets[0], end = whole.indexOffset;
  ByteWriter placed;
  writeList(placed, body.placed[0].list);
  const int placedSize = placed.size() + 8;
  for (int cut = start; cut < end; ++cut) {
    const std::string bytes = whole.bytes.substr(0, static_cast<std::size_t>(cut));
    Pages pages({.bytes = bytes, .bodyOffsets = {start}});  // the index is gone
    const CompareContext& c = pages.context;
    pages.context.doubleByteText = false;
    ASSERT_EQ(pages.fetch(0), kDamaged) << cut;  // once
    const int missing = end - cut;
    ASSERT_EQ(c.staticCount, missing <= placedSize ? 1 : 0) << missing;
    ASSERT_LE(c.pageList.count, 2);
    if (missing <= 2 * placedSize + 4) {
      ASSERT_EQ(c.pageList.count, 2);
    }
  }
  Pages pages(whole);
  EXPECT_EQ(pages.fetch(0), kSilent);
  EXPECT_EQ(pages.fetch(0, static_cast<int>(whole.bytes.size())), kDamaged);
  EXPECT_EQ(pages.context.pageList.count + pages.context.staticCount, 0);  // never the page before
  EXPECT_EQ(pages.fetch(0, 0x7FFFFFFF), kDamaged);
}

TEST(CompareContext, StaticTablesAndReferencesToThem) {
  const auto named = [](int count, int valueA) {
    return std::vector<StaticFields>(static_cast<std::size_t>(count), {.valueA = valueA});
  };
  for (const int version : {1, 2, 3}) {
    CaptureFields fields{.version = version};
    fields.statics21 = named(1, 21);
    fields.statics24 = named(5, 24);
    fields.statics23 = named(2, 23);
    fields.statics175 = named(1, 175);
    fields.statics21[0].first.parts = {staticRef({.objectType = 24}), rect()};
    const auto reference = [](int useSecond, int isHidden) {
      return staticRef(
          {.objectType = 24, .staticIndex = 4, .useSecond = useSecond, .secondIsHidden = isHidden});
    };
    const std::vector<Part> references = {staticRef(),     reference(0, 0),
                                          reference(0, 1), reference(1, 0),
                                          reference(1, 1), staticRef({.staticIndex = 1})};
    const std::vector<int> partVersions = {100, 106, 117, 157};
    fields.customers[0].pages.clear();
    for (const int v : partVersions) fields.customers[0].pages.push_back(page(references, v));
    Pages pages(writeCapture(fields));
    const CompareContext& c = pages.context;
    const int rows[][3] = {{21, 0, 21}, {21, 1, 0},
                           {24, 4, 24}, {24, 5, 0},
                           {23, 1, 23}, {23, 2, 0},
                           {22, 0, 0},  {20, 0, 0},
                           {-1, 0, 0},  {176, 0, 0},
                           {100, 0, 0}, {21, -1, 0},
                           {175, 1, 0}, {175, 0, version >= 2 ? 175 : 0}};
    for (const auto& [type, index, expected] : rows) {
      const DrawStatic* found = c.FindStatic(type, index);
      EXPECT_EQ(found == nullptr ? 0 : found->valueA, expected) << type << ' ' << index;
    }
    const DrawStatic &only = *c.FindStatic(21, 0), &last = *c.FindStatic(24, 4);
    const std::vector<const DrawList*> expected = {&only.firstList, &last.firstList,
                                                   &last.firstList, &last.secondList,
                                                   &last.firstList, nullptr};
    for (std::size_t v = 0; v < partVersions.size(); ++v) {
      EXPECT_EQ(pages.fetch(v), kSilent);
      std::vector<const DrawList*> found;
      for (const DrawPart& part : c.pageList.parts()) found.push_back(childList(part));
      EXPECT_EQ(found, expected) << partVersions[v];
    }
    // A reference within an object has no list, so that nothing nests without end.
    EXPECT_EQ(childList(only.firstList[0]), nullptr);
  }
}

}  // namespace
}  // namespace rvf::test
