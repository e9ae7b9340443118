#include "compare/CustomerWalk.h"

#include "compare/CompareFixture.h"
#include "text/NativeText.h"

namespace rvf::test {
namespace {

// What a walk leaves in a difference file is mostly shown by the reference pairs.

CustomerFields customer(std::u16string id, int pages, const Part& part = text()) {
  return {.id = std::move(id), .pages = std::vector(static_cast<std::size_t>(pages), page({part}))};
}

CaptureFields customers(std::vector<CustomerFields> list) { return {.customers = std::move(list)}; }

void expectWalk(const CaptureFields& a, const CaptureFields& b, bool stop, int status,
                const ByteWriter& expected) {
  for (const bool usesShortCut : {false, true}) {
    LoadedCapture first(a), second(b);
    const Walk walk(first.reader, second.reader, stop, usesShortCut);
    EXPECT_EQ(walk.status, static_cast<DiffFlags>(status));
    EXPECT_EQ(walk.bytes, expected.bytes);
    EXPECT_EQ(first.reader.compareResult, expected.size() == 0 ? 0 : walk.status);
  }
}

ByteWriter header(int count) {
  return ByteWriter().wideString(u"first.rvf").wideString(u"second.rvf").i32(count);
}

TEST(CustomerWalk, CustomersAndTheirPagesArePaired) {
  constexpr int kPages = 524288, kCustomers = 1048576, kResolution = 2097152;
  const CaptureFields one = customers({customer(u"C", 1)});
  const CaptureFields two = customers({customer(u"C", 1), customer(u"D", 1)});
  CaptureFields fine = two;
  fine.resolution = 600;
  expectWalk(two, fine, false, kResolution, ByteWriter());
  const ByteWriter common = header(1).i32(0).wideString(u"C").i32(1, 1, 0, 0).i32(kCustomers, 0, 0);
  for (const auto& [a, b] : {std::pair(one, two), std::pair(two, one)}) {
    expectWalk(a, b, true, kCustomers, ByteWriter());
    expectWalk(a, b, false, kCustomers, common);
  }
  // The first one with another id ends the walk, and nothing tells of what is behind it.
  const CaptureFields otherId = customers({customer(u"c", 1), customer(u"D", 2)});
  expectWalk(two, otherId, true, kCustomers, header(2));
  // Surplus pages are added up over all customers. A negative count stands as it was read and is no
  // page.
  CustomerFields negative = customer(u"N", 0);
  negative.pageCount = -3;
  ByteWriter file = header(3);
  file.i32(0).wideString(u"C").i32(1, 4, 128, kPages + 128);
  file.i32(1).wideString(u"D").i32(2, 1, 0, kPages);
  file.i32(2).wideString(u"N").i32(-3, 2, kPages).i32(kPages + 128, 1, 3 + 1 + 5);
  expectWalk(customers({customer(u"C", 1, line()), customer(u"D", 2), negative}),
             customers({customer(u"C", 4), customer(u"D", 1), customer(u"N", 2)}), true,
             kPages + 128, file);
}

TEST(CustomerWalk, FirstRecordsTellOfBothFiles) {
  const auto named = [](const std::vector<std::u16string>& names, const Part& second) {
    CustomerFields c = customer(u"C", static_cast<int>(names.size()));
    c.pages[1] = page({second});
    for (std::size_t i = 0; i < names.size(); ++i) c.pages[i].name = names[i];
    return customers({c});
  };
  const auto a = named({u"P1", u"P2"}, text()), b = named({u"P1", u"Q2", u"P3", u"P4"}, line());
  for (const bool isFirst : {true, false}) {
    LoadedCapture first(isFirst ? a : b), second(isFirst ? b : a);
    EXPECT_EQ(Walk(first.reader, second.reader, true, true).status, 524288U + 128);
    const CustomerRecord& customer = first.reader.customers[0];
    EXPECT_EQ(customer.diffBits, 524288U + 128);
    EXPECT_EQ(customer.pageCount, isFirst ? 2 : 4);
    ASSERT_EQ(customer.pages.size(), 4U);
    const std::string mismatch =
        std::string("Page name mismatch: ") + (isFirst ? "P2 / Q2" : "Q2 / P2");
    const std::string names[] = {"P1", mismatch, "P3", "P4"};
    for (std::size_t i = 0; i < 4; ++i) {
      EXPECT_EQ(toNative(customer.pages[i].name.view()), names[i]);
      EXPECT_EQ(customer.pages[i].unpaired, i > 0);
      EXPECT_EQ(customer.pages[i].diffBits, i == 1 ? 128U : 0U);
    }
    EXPECT_EQ(customer.pages[3].filePosition == 0, isFirst);
  }
}

TEST(CustomerWalk, PagesAreLoadedAfreshAndTold) {
  struct Observer final : WalkObserver {
    std::string calls;
    void pagesCompared(i32 done, i32 count, i64 compared, i32 differing) override {
      calls += std::to_string(done) + "/" + std::to_string(count) + " ";
      calls += std::to_string(differing) + "/" + std::to_string(compared) + ", ";
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
    EXPECT_EQ(Walk(a.reader, b.reader, true, false, &observer).status, 128U);
    EXPECT_EQ(a.reader.customers[0].pages[0].diffBits, 0U);
    EXPECT_EQ(observer.calls, "0/1 0/1, 0/1 1/2, 0/1 2/3, 1/1 2/3, ");
    // The blank slots of one page are gone before the next.
    EXPECT_EQ(a.context.overlayFirst.list.count, 1);
  }
}

}  // namespace
}  // namespace rvf::test
