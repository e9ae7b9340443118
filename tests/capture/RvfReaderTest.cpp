#include "capture/RvfReader.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "storage/MemFile.h"
#include "support/Capture.h"
#include "support/Reporting.h"

namespace rvf {
namespace {

using test::ByteWriter;
using test::kNarrowMagic;
using test::kNoTag;
using test::kTrailerMagic;
using test::kWideMagic;
using namespace std::string_literals;

/// A file in memory and what a reader makes of it.
class Loaded {
 public:
  explicit Loaded(std::string bytes, bool dbcsMode = false)
      : reader(context, dbcsMode),
        bytes_(std::move(bytes)),
        file_(reinterpret_cast<std::byte*>(bytes_.data()), static_cast<i32>(bytes_.size()), 0) {
    reader.load(file_);
  }
  CompareContext context;
  RvfReader reader;

 private:
  std::string bytes_;
  eMemFile file_;
};

// The complete file of the format's description, byte by byte.
const std::string kWorkedExample =
    "\x20\0\0\0\x4F\x61\xBC\0\x03\0\0\0\x2C\x01\0\0"
    "\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0"
    "\0\0\0\0\0\0\0\0\0\x02\0\0\0\0\0\0"
    "\0\0\0\0\0\x02\0\0\0\x01\0\0\0\x9A\xFF\xFF"
    "\xFF\x01\0\0\0\x02\x43\x31\x01\0\0\0\x01\0\0\0"
    "\x02P1\xFF\xFF\xFF\xFF\x9A\xFF\xFF\xFF\0\0\0\0\x57"
    "\x07\xF0\x42\x57\x07\xF0\x42"s;

TEST(RvfReader, WorkedExample) {
  ASSERT_EQ(kWorkedExample.size(), 104U - 1);
  std::string withTrailer = kWorkedExample + "\x20\0\0\0\x4F\x61\xBC\0"s;
  withTrailer.replace(0, 8, "\0\0\0\0\xB1\x7F\x39\x05"s);
  EXPECT_EQ(test::smallestCapture(false), kWorkedExample);
  EXPECT_EQ(test::smallestCapture(true), withTrailer);
  for (const std::string& bytes : {kWorkedExample, withTrailer}) {
    const Loaded file(bytes);
    const RvfReader& reader = file.reader;
    ASSERT_TRUE(reader.valid());
    EXPECT_EQ(reader.version, 3);
    EXPECT_EQ(reader.resolution, 300);
    EXPECT_FALSE(file.context.doubleByteText);
    EXPECT_TRUE(reader.fileLabel.isEmpty());
    EXPECT_EQ(reader.firstDate.status, 2);
    ASSERT_EQ(reader.customerCount, 1);
    EXPECT_EQ(reader.pageCount, 1);
    EXPECT_EQ(reader.firstPagePosition, -1);
    EXPECT_EQ(reader.customers[0].id, eString(u"C1"));
    ASSERT_EQ(reader.customers[0].pages.size(), 1U);
    EXPECT_EQ(reader.customers[0].pages[0].name, eString(u"P1"));
    EXPECT_EQ(reader.customers[0].pages[0].leadValue, 1);
    EXPECT_EQ(reader.customers[0].pages[0].filePosition, -1);
  }
}

TEST(RvfReader, MagicsAndVersions) {
  struct Row {
    int magic, version;
    bool isValid, dbcsMode, isWide;
  };
  const std::vector<Row> rows = {
      {kNarrowMagic, 3, true, false, false},  {kNarrowMagic, 3, true, true, false},
      {kWideMagic, 3, true, false, true},     {kTrailerMagic, 3, true, true, false},
      {kNarrowMagic, 1, true, false, false},  {kNarrowMagic, 2, true, true, true},
      {kWideMagic, 2, true, false, false},    {kWideMagic, 1, true, true, true},
      {kTrailerMagic, 2, true, true, true},   {12345678, 3, false, false, false},
      {12345680, 3, false, false, false},     {0, 3, false, false, false},
      {0x4F61BC00, 3, false, false, false},   {kNarrowMagic, 0, false, false, false},
      {kNarrowMagic, 4, false, false, false}, {kTrailerMagic, -1, false, false, false},
  };
  for (const Row& row : rows) {
    test::CaptureFields fields{.magic = row.magic, .version = row.version, .resolution = 600};
    fields.wide = row.isWide;
    fields.statics23 = {{}};
    fields.statics175 = {{}, {}};
    fields.customers[0].id = u"Zo\u00EB";
    test::HeldMessages messages;
    const Loaded file(writeCapture(fields).bytes, row.dbcsMode);
    ASSERT_EQ(file.reader.valid(), row.isValid) << row.magic << ' ' << row.version;
    EXPECT_TRUE(messages.take().empty());  // a refusal is the run's to tell
    if (!row.isValid) continue;
    EXPECT_EQ(file.context.doubleByteText, row.isWide);
    EXPECT_EQ(file.reader.resolution, 600);
    EXPECT_EQ(file.reader.customers[0].id, eString(u"Zo\u00EB"));
    EXPECT_EQ(file.context.FindStatic(175, 1) != nullptr, row.version >= 2);
  }
  std::string wrongTrailer = test::smallestCapture(true);
  wrongTrailer.replace(wrongTrailer.size() - 4, 4, ByteWriter().i32(kWideMagic).bytes);
  EXPECT_FALSE(Loaded(wrongTrailer).reader.valid());
}

TEST(RvfReader, RecordsOfTheIndexInEveryForm) {
  for (const int customerTag : {kNoTag, -101, -102, -103}) {
    for (const int pageTag : {kNoTag, -101, -102, -104}) {
      test::CustomerFields customer{.leadValue = -100, .tag = customerTag};
      if (customerTag == -103) customer.sections = {"four"};
      customer.pages[0].tailValue = -100;
      customer.pages[0].tag = pageTag;
      if (pageTag == -104) customer.pages[0].sections = {"", "xyz"};
      customer.pages.push_back({.name = u"P2", .filePosition = 77, .tailValue = 8});
      const test::CaptureFields fields{.label = u"label",
                                       .firstDate = 1.5,
                                       .secondStatus = 0,
                                       .customers = {customer, {.id = u"", .pages = {}}}};
      const Loaded file(writeCapture(fields).bytes);
      ASSERT_TRUE(file.reader.valid()) << customerTag << ' ' << pageTag;
      EXPECT_EQ(file.reader.fileLabel, eString(u"label"));
      EXPECT_EQ(file.reader.firstDate.value, 1.5);
      EXPECT_EQ(file.reader.secondDate.status, 0);
      EXPECT_EQ(file.reader.customerCount, 2);
      EXPECT_EQ(file.reader.pageCount, 2);
      EXPECT_EQ(file.reader.firstPagePosition, -1);
      const CustomerRecord& found = file.reader.customers[0];
      EXPECT_EQ(found.leadValue, -100);
      EXPECT_EQ(found.pages[0].tailValue, -100);
      EXPECT_EQ(found.pages[1].filePosition, 77);
      EXPECT_EQ(found.pages[1].tailValue, 8);
    }
  }
}

TEST(RvfReader, TextOfTheOtherByteOrder) {
  struct Row {
    std::u16string id, page, expectedId, expectedPage;
  };
  const std::vector<Row> rows = {
      {u"\u4300\u3100", u"\u5000", u"C1", u"P"},  // swapped in the file
      {u"", u"\u5000", u"", u"P"},                // quirk: an empty id counts as swapped
      {u"\u3000a", u"P", u"0\u6100", u"\u5000"},  // quirk: so does a low byte of 0
      {u"C1", u"\u5000", u"C1", u"\u5000"},
      {u"C1", u"P\0Q"s, u"C1", u"P"},  // a name ends at its first zero character
      {u"\u4300\0\u3100"s, u"", u"C", u""},
  };
  for (const Row& row : rows) {
    test::CaptureFields fields{.magic = kWideMagic};
    fields.customers[0].id = row.id;
    fields.customers[0].pages[0].name = row.page;
    const Loaded file(writeCapture(fields).bytes);
    ASSERT_TRUE(file.reader.valid());
    EXPECT_EQ(file.reader.customers[0].id.view(), row.expectedId);
    EXPECT_EQ(file.reader.customers[0].pages[0].name.view(), row.expectedPage);
  }
  // An id that was not swapped keeps what is behind a zero character.
  test::CaptureFields fields{.magic = kWideMagic};
  fields.customers[0].id = u"C\0D"s;
  EXPECT_EQ(Loaded(writeCapture(fields).bytes).reader.customers[0].id.length(), 3);
}

TEST(RvfReader, EveryShorterFileIsInvalid) {
  test::CaptureFields fields = test::captureOf({test::page({test::text(), test::rect()})});
  fields.statics21 = {{.second = test::ListFields{.parts = {test::line()}}}};
  for (const int magic : {kNarrowMagic, kWideMagic, kTrailerMagic}) {
    fields.magic = magic;
    const std::string bytes = writeCapture(fields).bytes;
    ASSERT_TRUE(Loaded(bytes).reader.valid());
    for (std::size_t length = 0; length < bytes.size(); ++length) {
      ASSERT_FALSE(Loaded(bytes.substr(0, length)).reader.valid()) << length;
    }
  }
}

TEST(RvfReader, DamagedIndexes) {
  test::CaptureFields fields;
  fields.customerCount = 0x7FFFFFFF;
  EXPECT_FALSE(Loaded(writeCapture(fields).bytes).reader.valid());
  fields.customerCount = -1;
  EXPECT_FALSE(Loaded(writeCapture(fields).bytes).reader.valid());
  fields.customerCount.reset();
  for (const int pageCount : {0x7FFFFFFF, 2}) {
    fields.customers[0].pageCount = pageCount;
    const Loaded file(writeCapture(fields).bytes);
    EXPECT_FALSE(file.reader.valid());
    EXPECT_LE(file.reader.customers[0].pages.size(), 2U);  // no room is made for a count alone
  }
  const std::string tables = "\xFF\xFF\xFF\x7F"s;
  for (const std::size_t offset : {16U, 20U, 24U, 28U}) {
    std::string bytes = test::smallestCapture(false);
    bytes.replace(offset, 4, tables);
    EXPECT_FALSE(Loaded(bytes).reader.valid()) << offset;
    bytes.replace(offset, 4, "\xFF\xFF\xFF\xFF");  // a negative count counts as none
    EXPECT_TRUE(Loaded(bytes).reader.valid()) << offset;
  }
  for (const int position : {-1, -0x7FFFFFFF, 0x7FFFFFFF, 103, 102}) {
    std::string bytes = test::smallestCapture(false);
    bytes.replace(0, 4, ByteWriter().i32(position).bytes);
    EXPECT_FALSE(Loaded(bytes).reader.valid()) << position;
  }
  std::string wrongMark = test::smallestCapture(false);
  wrongMark.back() = 0;
  EXPECT_FALSE(Loaded(wrongMark).reader.valid());
  // A customer without pages and with a negative count of them; one with a page makes it a file.
  fields.customers = {{.pages = {}}, {.pages = {}, .pageCount = -5}};
  EXPECT_FALSE(Loaded(writeCapture(fields).bytes).reader.valid());
  fields.customers.push_back({});
  Loaded file(writeCapture(fields).bytes);
  ASSERT_TRUE(file.reader.valid());
  EXPECT_EQ(file.reader.customers[1].pageCount, -5);
  for (const i32 customer : {0, 1}) {
    file.reader.currentCustomer = customer;
    file.reader.loadCurrentPage();  // no page
    EXPECT_EQ(file.context.pageList.count, 0);
  }
}

TEST(CustomerRecord, StoredBytesComeBack) {
  const test::CustomerFields fields{.pages = {{.tailValue = 3}, {.name = u"P2"}}, .leadValue = 9};
  ByteWriter expected(true);
  writeCustomer(expected, fields, {-1, 500});
  eMemFile source(reinterpret_cast<std::byte*>(expected.bytes.data()), expected.size(), 0);
  eArchive loading(source, eArchive::Mode::kLoad, 64);
  CustomerRecord customer;
  customer.read(loading);
  EXPECT_FALSE(loading.failed());
  eMemFile target(16);
  eArchive storing(target, eArchive::Mode::kStore, 64);
  customer.read(storing);
  storing.Close();
  EXPECT_EQ(std::string(reinterpret_cast<const char*>(target.data()),
                        static_cast<std::size_t>(target.Tell())),
            expected.bytes);
}

}  // namespace
}  // namespace rvf
