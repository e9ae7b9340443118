#include "capture/RvfReader.h"

#include "compare/CompareFixture.h"

namespace rvf::test {
namespace {

using namespace std::string_literals;

/// All that a reader has loaded.
std::string shown(const LoadedCapture& file) {
  const RvfReader& r = file.reader;
  if (!r.valid()) return "  not valid\n";
  std::string text = Shown::row("  file", r.version, r.resolution, file.context.doubleByteText,
                                r.pageCount, r.firstPagePosition) +
                     ", tables";
  for (const i32 type : {20, 21, 22, 23, 24, 100, 175, 176}) {
    i32 count = 0;
    while (file.context.FindStatic(type, count) != nullptr) count += 1;
    text += Shown::row("", count);
  }
  text += Shown::row(", label", r.fileLabel, r.firstDate.value, r.firstDate.status,
                     r.secondDate.value, r.secondDate.status);
  for (const CustomerRecord& c : r.customers) {
    text += Shown::row("\n  customer", c.id, c.leadValue, c.pageCount);
    for (const PageRecord& p : c.pages) {
      text += Shown::row(", page", p.name, p.leadValue, p.filePosition, p.tailValue);
    }
  }
  return text + "\n";
}

std::vector<std::pair<std::string, CaptureFields>> captures() {
  std::vector<std::pair<std::string, CaptureFields>> cases;
  for (const int magic : {kNarrowMagic, kWideMagic, kTrailerMagic, kNarrowMagic + 1, 0}) {
    for (const int version : {-1, 0, 1, 2, 3, 4}) {
      for (const bool wide : {false, true}) {
        CaptureFields f{.magic = magic, .version = version, .resolution = 600};
        f.wide = version < 3 ? wide : magic == kWideMagic;
        f.statics24.resize(3);
        f.statics23.resize(1);
        f.statics175.resize(2);
        cases.emplace_back(Shown::row("magic", magic, version, wide), f);
      }
    }
  }
  for (const int customerTag : {kNoTag, -101, -102, -103}) {
    for (const int pageTag : {kNoTag, -101, -102, -104}) {
      CaptureFields f{.label = u"label", .firstDate = 1.5, .secondStatus = 0};
      f.customers.push_back({.id = u"", .pages = {}});
      CustomerFields& c = f.customers[0] = {.leadValue = -100, .tag = customerTag};
      c.pages = {{.tailValue = -100, .tag = pageTag},
                 {.name = u"P2", .filePosition = 77, .leadValue = 6, .tailValue = 8}};
      if (customerTag == -103) c.sections = {"four"};
      if (pageTag == -104) c.pages[0].sections = {"", "xyz"};
      cases.emplace_back(Shown::row("tags", customerTag, pageTag), f);
    }
  }
  // Text of the other byte order is known by the low byte of the id's first character alone, which
  // an empty id does not have and U+3000 has by chance.
  for (const std::u16string& id :
       {u"\u4300\u3100"s, u""s, u"\u3000a"s, u"C1"s, u"C\0D"s, u"\u4300\0\u3100"s}) {
    CaptureFields f{.magic = kWideMagic};
    f.customers[0].id = id;
    f.customers[0].pages = {{.name = u"\u5000"}, {.name = u"P\0Q"s}, {.name = u""}};
    cases.emplace_back("byte order", f);
  }
  // No room is made for a count alone. A customer with a page makes it a file.
  for (const int count : {0x7FFFFFFF, 2, -1}) {
    cases.push_back({Shown::row("customers", count), {.customerCount = count}});
    cases.push_back({Shown::row("pages", count), {.customers = {{.pageCount = count}}}});
  }
  const CustomerFields none{.pages = {}}, negative{.pages = {}, .pageCount = -5};
  cases.push_back({"no page", {.customers = {none, negative}}});
  cases.push_back({"one page", {.customers = {none, negative, {}}}});
  return cases;
}

TEST(RvfReader, LoadsWhatTheFilesHold) {
  std::string text;
  for (const auto& [name, fields] : captures()) {
    const std::string bytes = writeCapture(fields).bytes;
    // A file of version 3 tells itself how its texts are stored.
    const bool dbcsMode = fields.version < 3 ? *fields.wide : fields.magic != kWideMagic;
    LoadedCapture file(bytes, dbcsMode);
    text += name + "\n" + shown(file);
    if (file.reader.valid()) file.reader.loadCurrentPage();  // the first customer may have none
    for (std::size_t length = 0; length < bytes.size(); ++length) {
      const LoadedCapture shorter(bytes.substr(0, length), dbcsMode);
      ASSERT_FALSE(shorter.reader.valid()) << name << ' ' << length;
      ASSERT_LE(shorter.reader.customers.capacity(), 4U);
    }
  }
  expectFrozen("captures.txt", text);
}

TEST(RvfReader, SmallestFileAndItsDamage) {
  const std::string smallest = smallestCapture(false);
  EXPECT_EQ(shown(LoadedCapture(smallestCapture(true))), shown(LoadedCapture(smallest)));
  const auto isValid = [&smallest](std::size_t offset, int word) {
    std::string bytes = smallest;
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
  EXPECT_FALSE(isValid(smallest.size() - 4, 0));  // the end mark
}

}  // namespace
}  // namespace rvf::test
