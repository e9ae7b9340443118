#include "compare/CustomerWalk.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "compare/CompareFixture.h"
#include "text/NativeText.h"

namespace rvf {
namespace {

using namespace test;

/// A difference file, built from its description.
struct ExpectedCustomer {
  std::u16string id;
  int firstPages, secondPages;
  std::vector<DiffFlags> pageBits;
  DiffFlags bits;
};
struct ExpectedFile {
  int customerCount = 0;
  std::vector<ExpectedCustomer> customers{};
  bool hasTrailer = true;
  DiffFlags bits = 0;
  int differingPages = 0, pageCountDelta = 0;
};

std::string bytesOf(const ExpectedFile& f) {
  ByteWriter w;
  w.wideString(u"first.rvf").wideString(u"second.rvf").i32(f.customerCount);
  for (std::size_t i = 0; i < f.customers.size(); ++i) {
    const ExpectedCustomer& c = f.customers[i];
    w.i32(i).wideString(c.id).i32(c.firstPages, c.secondPages);
    for (const DiffFlags bits : c.pageBits) w.u32(bits);
    w.u32(c.bits);
  }
  if (f.hasTrailer) w.u32(f.bits).i32(f.differingPages, f.pageCountDelta);
  return w.bytes;
}

/// One walk and what it leaves in the file and in the reader of the first file.
class Walk {
 public:
  Walk(const CaptureFields& a, const CaptureFields& b, bool stop = true, bool usesShortCut = false,
       WalkObserver* observer = nullptr)
      : first_(a), second_(b), file_(64) {
    const WalkOutput output{file_, u"first.rvf", u"second.rvf", observer, usesShortCut};
    status = walkCustomers(first_.reader, second_.reader, stop, output);
    bytes.assign(reinterpret_cast<const char*>(file_.data()),
                 static_cast<std::size_t>(file_.Tell()));
  }

  [[nodiscard]] const RvfReader& first() const { return first_.reader; }
  [[nodiscard]] const std::vector<PageRecord>& pages() const {
    return first_.reader.customers[0].pages;
  }

  DiffFlags status = 0;
  std::string bytes;

 private:
  LoadedCapture first_, second_;
  eMemFile file_;
};

void expectWalk(const CaptureFields& a, const CaptureFields& b, DiffFlags status,
                const ExpectedFile& expected) {
  for (const bool usesShortCut : {false, true}) {
    const Walk walk(a, b, true, usesShortCut);
    EXPECT_EQ(walk.status, status);
    EXPECT_EQ(walk.bytes, bytesOf(expected));
    EXPECT_EQ(walk.first().compareResult, status);
  }
}

CaptureFields customers(std::vector<CustomerFields> list) {
  return {.magic = kWideMagic, .customers = std::move(list)};
}

CustomerFields customer(std::u16string id, int pages, const Part& part = text()) {
  return {.id = std::move(id),
          .pages = std::vector<PageFields>(static_cast<std::size_t>(pages), page({part}))};
}

TEST(CustomerWalk, FilesWithoutAPairToCompareLeaveAnEmptyFile) {
  CaptureFields a = customers({customer(u"C", 1)}), b = a;
  b.resolution = 600;
  const CaptureFields more = customers({customer(u"C", 1), customer(u"D", 1)});
  for (const bool stop : {true, false}) {
    const Walk walk(a, b, stop);
    EXPECT_EQ(walk.status, 2097152U);
    EXPECT_EQ(walk.bytes, "");
  }
  for (const auto& [first, second] : {std::pair(a, more), std::pair(more, a)}) {
    const Walk stopped(first, second);
    EXPECT_EQ(stopped.status, 1048576U);
    EXPECT_EQ(stopped.bytes, "");
    // The other mode compares the customers that both have.
    const Walk walk(first, second, false);
    EXPECT_EQ(walk.status, 1048576U);
    EXPECT_EQ(walk.bytes, bytesOf({1, {{u"C", 1, 1, {0}, 0}}, true, 1048576, 0, 0}));
  }
}

TEST(CustomerWalk, CustomersArePairedByPlaceAndId) {
  expectWalk(customers({}), customers({}), 0, {});
  const std::u16string longId(300, u'i');
  expectWalk(customers({customer(longId, 1), customer(u"", 0)}),
             customers({customer(longId, 1), customer(u"", 0)}), 0,
             {2, {{longId, 1, 1, {0}, 0}, {u"", 0, 0, {}, 0}}});
  // The first one with another id ends the walk, and nothing tells of what is behind it.
  expectWalk(customers({customer(u"ID", 1), customer(u"C", 1)}),
             customers({customer(u"Id", 1), customer(u"C", 2)}), 1048576, {2, {}, false});
  expectWalk(customers({customer(u"C", 2), customer(u"D", 1), customer(u"E", 1)}),
             customers({customer(u"C", 1, line()), customer(u"X", 1), customer(u"E", 1, line())}),
             1048576 + 524288 + 128, {3, {{u"C", 2, 1, {128}, 524288 + 128}}, false});
}

TEST(CustomerWalk, PagesWithoutAPartnerAreCounted) {
  const auto count = [](int first, int second, std::vector<DiffFlags> pageBits, int delta) {
    SCOPED_TRACE(std::to_string(first) + " and " + std::to_string(second));
    expectWalk(customers({customer(u"C", first), customer(u"D", 1)}),
               customers({customer(u"C", second), customer(u"D", 1)}), 524288,
               {2,
                {{u"C", first, second, pageBits, 524288}, {u"D", 1, 1, {0}, 0}},
                true,
                524288,
                0,
                delta});
  };
  count(3, 5, {0, 0, 0}, 2);
  count(5, 3, {0, 0, 0}, 2);
  count(0, 2, {}, 2);
  count(2, 0, {}, 2);

  // The sum is that of all customers. A negative count stands as it was read and is no page.
  CustomerFields negative = customer(u"N", 0);
  negative.pageCount = -3;
  expectWalk(
      customers({customer(u"C", 1, line()), customer(u"D", 2), negative}),
      customers({customer(u"C", 4), customer(u"D", 1), customer(u"N", 2)}), 524288 + 128,
      {3,
       {{u"C", 1, 4, {128}, 524288 + 128}, {u"D", 2, 1, {0}, 524288}, {u"N", -3, 2, {}, 524288}},
       true,
       524288 + 128,
       1,
       3 + 1 + 5});
}

TEST(CustomerWalk, FirstRecordsTellOfBothFiles) {
  const auto named = [](const std::vector<std::u16string>& names, const Part& second) {
    CustomerFields c = customer(u"C", static_cast<int>(names.size()));
    c.pages[1] = page({second});
    for (std::size_t i = 0; i < names.size(); ++i) c.pages[i].name = names[i];
    return customers({c});
  };
  const auto a = named({u"P1", u"P2"}, text()), b = named({u"P1", u"Q2", u"P3", u"P4"}, line());
  {
    const Walk walk(a, b);
    EXPECT_EQ(walk.status, 524288U + 128);
    EXPECT_EQ(walk.first().customers[0].diffBits, 524288U + 128);
    EXPECT_EQ(walk.first().customers[0].pageCount, 2);
    ASSERT_EQ(walk.pages().size(), 4U);
    const char* names[] = {"P1", "Page name mismatch: P2 / Q2", "P3", "P4"};
    for (std::size_t i = 0; i < 4; ++i) {
      EXPECT_EQ(toNative(walk.pages()[i].name.view()), names[i]);
      EXPECT_EQ(walk.pages()[i].unpaired, i > 0);
      EXPECT_EQ(walk.pages()[i].diffBits, i == 1 ? 128U : 0U);
    }
    EXPECT_EQ(walk.pages()[3].filePosition, 0);
  }
  const Walk walk(b, a);
  ASSERT_EQ(walk.pages().size(), 4U);
  for (std::size_t i = 0; i < 4; ++i) EXPECT_EQ(walk.pages()[i].unpaired, i > 0);
  // The name alone is no difference.
  expectWalk(named({u"P1", u"P2"}, text()), named({u"P1", u"Q2"}, text()), 0,
             {1, {{u"C", 2, 2, {0, 0}, 0}}});
}

TEST(CustomerWalk, PlacedListsAreComparedByPlaceAndContent) {
  const auto withLists = [](std::vector<PlacedList> lists, const Part& part = text()) {
    PageFields fields = page({part});
    fields.body->placed = std::move(lists);
    return captureOf({fields});
  };
  const auto placed = [](int originX, int originY, int x, int y, const Part& part = text()) {
    return PlacedList{
        .list = {.parts = {part}, .originX = originX, .originY = originY}, .x = x, .y = y};
  };
  const PlacedList base = placed(1, 2, 10, 20);
  PlacedList withImage = base;
  withImage.list.parts.push_back(image());
  constexpr int kHighest = 2147483647, kLowest = -kHighest - 1;
  struct Case {
    std::vector<PlacedList> a, b;
    DiffFlags bits;
  };
  const Case cases[] = {
      {{base}, {base}, 0},
      {{base}, {withImage}, 4096 + 128},
      {{base}, {placed(1, 2, 10, 21)}, 160},
      {{base}, {placed(1, 2, 9, 20)}, 160},
      {{base}, {placed(1, 3, 10, 20)}, 160},
      {{base}, {placed(0, 2, 10, 20)}, 160},
      {{base}, {placed(4, 4, 7, 18)}, 0},
      {{placed(kHighest, 0, 1, 0)}, {placed(0, kLowest, kLowest, kLowest)}, 0},
      {{base}, {placed(1, 2, 10, 20, text({.fontId = 9}))}, 8192 + 128},
      {{base}, {placed(1, 2, 10, 21, text({.fontId = 9}))}, 8192 + 160},
      {{base, base}, {base, placed(0, 0, 0, 0, rect())}, 160},
      {{base}, {base, placed(0, 0, 0, 0, rect())}, 129},
      {{base, base, placed(0, 0, 0, 0, image())}, {base, placed(1, 2, 10, 20, rect())}, 129},
      {{}, {base}, 129},
      {{}, {}, 0},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(&c - cases);
    for (const i32 tolerance : {0, 1000}) {
      const WithTolerances tolerances(tolerance, tolerance);
      const ExpectedFile file{
          1, {{u"C1", 1, 1, {c.bits}, c.bits}}, true, c.bits, c.bits != 0 ? 1 : 0};
      expectWalk(withLists(c.a), withLists(c.b), c.bits, file);
      expectWalk(withLists(c.b), withLists(c.a), c.bits, file);
    }
  }
  // The bits of the page's own list come together with those of all others.
  const Walk walk(withLists({base, base}),
                  withLists({placed(1, 2, 10, 21), placed(1, 2, 10, 20, text({.fontId = 9})), base},
                            text({.tint = 9})));
  EXPECT_EQ(walk.status, 256U + 8192 + 161);
}

TEST(CustomerWalk, PagesAreLoadedAfreshAndTold) {
  struct Observer final : WalkObserver {
    std::string calls;
    void pagesCompared(i32 done, i32 count, i64 compared, i32 differing) override {
      for (const i64 n : {i64{done}, i64{count}, compared, i64{differing}}) {
        calls += std::to_string(n) + " ";
      }
    }
  };
  const PageFields same = page({text()}), other = page({line()});
  for (const bool isFirst : {true, false}) {
    LoadedCapture a(captureOf({same, other, other})), b(captureOf({same, same, same}));
    // A page in memory from before the walk is not taken for the first one, though it is that.
    LoadedCapture& loaded = isFirst ? a : b;
    loaded.reader.loadCurrentPage();
    resetList(loaded.context.pageList);
    Observer observer;
    eMemFile file(64);
    const WalkOutput output{file, u"first.rvf", u"second.rvf", &observer, false};
    EXPECT_EQ(walkCustomers(a.reader, b.reader, true, output), 128U);
    EXPECT_EQ(a.reader.customers[0].pages[0].diffBits, 0U);
    EXPECT_EQ(observer.calls, "0 1 1 0 0 1 2 1 0 1 3 2 1 1 3 2 ");
    // The blank slots of one page are gone before the next.
    EXPECT_EQ(a.context.overlayFirst.list.count, 1);
  }
}

}  // namespace
}  // namespace rvf
