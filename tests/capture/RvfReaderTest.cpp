#include "capture/RvfReader.h"

#include "compare/CompareFixture.h"
#include "support/FrozenText.h"

namespace rvf::test {
namespace {

using namespace std::string_literals;

/// All that a reader has loaded.
std::string shown(const LoadedCapture& file) {
  const RvfReader& r = file.reader;
  if (!r.valid()) return "  not valid\n";
  std::ostringstream text;
  text << "  version " << r.version << ", resolution " << r.resolution << ", wide "
       << file.context.doubleByteText << ", pages " << r.pageCount << ", first "
       << r.firstPagePosition << ", tables";
  for (const i32 type : {21, 24, 23, 175}) {
    i32 count = 0;
    while (file.context.FindStatic(type, count) != nullptr) count += 1;
    text << ' ' << count;
  }
  text << "\n  label " << quoted(r.fileLabel.view()) << ", dates " << r.firstDate.value << ' '
       << r.firstDate.status << ' ' << r.secondDate.value << ' ' << r.secondDate.status << "\n";
  for (const CustomerRecord& c : r.customers) {
    text << "  customer " << quoted(c.id.view()) << ", lead " << c.leadValue << ", pages "
         << c.pageCount << "\n";
    for (const PageRecord& p : c.pages) {
      text << "    page " << quoted(p.name.view()) << ", lead " << p.leadValue << ", at "
           << p.filePosition << ", tail " << p.tailValue << "\n";
    }
  }
  return text.str();
}

struct Case {
  std::string name;
  CaptureFields fields;
  bool dbcsMode = false;
};

std::vector<Case> captures() {
  std::vector<Case> cases;
  for (const int magic : {kNarrowMagic, kWideMagic, kTrailerMagic, kNarrowMagic + 1, 0}) {
    for (const int version : {-1, 0, 1, 2, 3, 4}) {
      for (const bool dbcs : {false, true}) {
        CaptureFields f{.magic = magic, .version = version, .resolution = 600};
        f.wide = version < 3 ? dbcs : magic == kWideMagic;
        f.statics23 = {{}};
        f.statics175 = {{}, {}};
        f.customers[0].id = u"Zo";
        cases.push_back(
            {"magic " + std::to_string(magic) + (dbcs ? ", double bytes" : ""), f, dbcs});
      }
    }
  }
  for (const int customerTag : {kNoTag, -101, -102, -103}) {
    for (const int pageTag : {kNoTag, -101, -102, -104}) {
      PageFields first{.tailValue = -100, .tag = pageTag};
      if (pageTag == -104) first.sections = {"", "xyz"};
      const PageFields second{.name = u"P2", .filePosition = 77, .leadValue = 6, .tailValue = 8};
      CustomerFields customer{.pages = {first, second}, .leadValue = -100, .tag = customerTag};
      if (customerTag == -103) customer.sections = {"four"};
      CaptureFields f{.label = u"label", .firstDate = 1.5, .secondStatus = 0};
      f.customers = {customer, {.id = u"", .pages = {}}};
      cases.push_back({"tags " + std::to_string(customerTag) + ' ' + std::to_string(pageTag), f});
    }
  }
  // Text of the other byte order is known by the low byte of the id's first character alone, which
  // an empty id does not have and U+3000 has by chance.
  for (const std::u16string& id :
       {u"\u4300\u3100"s, u""s, u"\u3000a"s, u"C1"s, u"C\0D"s, u"\u4300\0\u3100"s}) {
    CaptureFields f{.magic = kWideMagic};
    f.customers[0].id = id;
    f.customers[0].pages = {{.name = u"\u5000"}, {.name = u"P\0Q"s}, {.name = u""}};
    cases.push_back({"byte order", f});
  }
  CaptureFields f;
  for (const int count : {0x7FFFFFFF, -1}) {
    f.customerCount = count;
    cases.push_back({"customers " + std::to_string(count), f});
  }
  f.customerCount.reset();
  for (const int count : {0x7FFFFFFF, 2}) {
    f.customers[0].pageCount = count;
    cases.push_back({"pages " + std::to_string(count), f});
  }
  // A customer without pages and with a negative count of them; one with a page makes it a file.
  f.customers = {{.pages = {}}, {.pages = {}, .pageCount = -5}};
  cases.push_back({"no page", f});
  f.customers.push_back({});
  cases.push_back({"one page", f});
  return cases;
}

TEST(RvfReader, LoadsWhatTheFilesHold) {
  std::string text;
  for (const Case& c : captures()) {
    HeldMessages messages;
    LoadedCapture file(writeCapture(c.fields).bytes, c.dbcsMode);
    text += c.name + ", version " + std::to_string(c.fields.version) + "\n" + shown(file);
    for (const CustomerRecord& customer : file.reader.customers) {
      EXPECT_LE(customer.pages.size(), 3U);  // no room is made for a count alone
    }
    if (c.name == "one page") file.reader.loadCurrentPage();  // of the first customer: none
  }
  expectFrozen("captures.txt", text);
}

// The complete file of the format's description, byte by byte.
const std::string kWorkedExample =
    "\x20\0\0\0\x4F\x61\xBC\0\x03\0\0\0\x2C\x01\0\0"
    "\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0"
    "\0\0\0\0\0\0\0\0\0\x02\0\0\0\0\0\0"
    "\0\0\0\0\0\x02\0\0\0\x01\0\0\0\x9A\xFF\xFF"
    "\xFF\x01\0\0\0\x02\x43\x31\x01\0\0\0\x01\0\0\0"
    "\x02P1\xFF\xFF\xFF\xFF\x9A\xFF\xFF\xFF\0\0\0\0\x57"
    "\x07\xF0\x42\x57\x07\xF0\x42"s;

TEST(RvfReader, WorkedExampleAndItsDamage) {
  EXPECT_EQ(smallestCapture(false), kWorkedExample);
  std::string withTrailer = kWorkedExample + "\x20\0\0\0\x4F\x61\xBC\0"s;
  withTrailer.replace(0, 8, "\0\0\0\0\xB1\x7F\x39\x05"s);
  EXPECT_EQ(smallestCapture(true), withTrailer);
  EXPECT_EQ(shown(LoadedCapture(withTrailer)), shown(LoadedCapture(kWorkedExample)));
  withTrailer.back() = 1;
  EXPECT_FALSE(LoadedCapture(withTrailer).reader.valid());
  const auto isValid = [](std::size_t offset, int word) {
    std::string bytes = kWorkedExample;
    bytes.replace(offset, 4, ByteWriter().i32(word).bytes);
    return LoadedCapture(bytes).reader.valid();
  };
  for (const std::size_t tableCount : {16U, 20U, 24U, 28U}) {
    EXPECT_FALSE(isValid(tableCount, 0x7FFFFFFF)) << tableCount;
    EXPECT_TRUE(isValid(tableCount, -1)) << tableCount;  // counts as none
  }
  for (const int position : {-1, -0x7FFFFFFF, 0x7FFFFFFF, 103, 102}) {
    EXPECT_FALSE(isValid(0, position)) << position;
  }
  EXPECT_FALSE(isValid(kWorkedExample.size() - 4, 0));  // the end mark
}

TEST(RvfReader, EveryShorterFileIsInvalid) {
  CaptureFields fields = captureOf({page({text(), rect()})});
  fields.statics21 = {{.second = ListFields{.parts = {line()}}}};
  for (const int magic : {kNarrowMagic, kWideMagic, kTrailerMagic}) {
    fields.magic = magic;
    const std::string bytes = writeCapture(fields).bytes;
    ASSERT_TRUE(LoadedCapture(bytes).reader.valid());
    for (std::size_t length = 0; length < bytes.size(); ++length) {
      ASSERT_FALSE(LoadedCapture(bytes.substr(0, length)).reader.valid()) << length;
    }
  }
}

TEST(CustomerRecord, StoredBytesComeBack) {
  const CustomerFields fields{.pages = {{.tailValue = 3}, {.name = u"P2"}}, .leadValue = 9};
  ByteWriter expected(true);
  writeCustomer(expected, fields, {-1, 500});
  LoadedBytes loading(expected.bytes);
  CustomerRecord customer;
  customer.read(loading.archive);
  EXPECT_FALSE(loading.archive.failed());
  eMemFile target(16);
  eArchive storing(target, eArchive::Mode::kStore, 64);
  customer.read(storing);
  storing.Close();
  const auto* start = reinterpret_cast<const char*>(target.data());
  EXPECT_EQ(std::string(start, static_cast<std::size_t>(target.Tell())), expected.bytes);
}

}  // namespace
}  // namespace rvf::test
