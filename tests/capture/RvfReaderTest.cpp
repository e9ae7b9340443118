#include "capture/RvfReader.h"

#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "compare/CompareFixture.h"
#include "storage/DiskFile.h"
#include "support/TempFolder.h"

namespace rvf::test {
namespace {

using namespace std::string_literals;

std::string pagesOf(const CustomerRecord& c) {
  std::string text;
  for (const PageRecord& p : c.pages) {
    text += Shown::row(", page", p.name.text(), p.leadValue, p.filePosition, p.tailValue);
  }
  return text;
}

/// A stored customer reads back the same, unless its id is taken as swapped.
void expectStored(const CustomerRecord& c) {
  if ((c.id.c_str()[0] & 0xFF) == 0) return;
  eMemFile file(16);
  eArchive out(file, eArchive::Mode::kStore, 64);
  c.store(out);
  out.Close();
  file.Seek(0, SeekOrigin::kStart);
  eArchive in(file, eArchive::Mode::kLoad, 64);
  IndexMemory memory;
  PageNames names(memory);
  CustomerRecord again(memory);
  again.read(in, names);
  EXPECT_TRUE(!in.failed() && in.bytesLeft() == 0 && again.id == c.id);
  EXPECT_EQ(pagesOf(again), pagesOf(c));
}

/// Everything that a reader has loaded.
std::string shown(const LoadedCapture& file) {
  const RvfReader& r = file.reader;
  const LoadResult& result = r.loadResult();
  const std::string newer = result.newer ? Shown::row(",", eString(result.newer->label)) : "";
  if (!r.valid())
    return Shown::row("  not valid", static_cast<int>(result.state), result.offset) + newer + "\n";
  std::string text = Shown::row("  file", r.version, r.resolution, file.context.doubleByteText,
                                r.pageCount, r.firstPagePosition) +
                     ", tables";
  for (const i32 type : {20, 21, 22, 23, 24, 100, 175, 176}) {
    i32 count = 0;
    while (file.context.FindStatic(type, count) != nullptr) count += 1;
    EXPECT_EQ(file.context.staticObjectCount(type), count);
    text += Shown::row("", count);
  }
  text += Shown::row(", label", r.fileLabel, r.firstDate.value, r.firstDate.status,
                     r.secondDate.value, r.secondDate.status);
  for (const CustomerRecord& c : r.customers) {
    text += Shown::row("\n  customer", c.id, c.leadValue, c.pageCount);
    text += pagesOf(c);
    expectStored(c);
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
  // Text of the other byte order is recognised only by the low byte of the id's first character,
  // which an empty id lacks and which is 0 in U+3000 by chance.
  for (const std::u16string& id :
       {u"\u4300\u3100"s, u""s, u"\u3000a"s, u"C1"s, u"C\0D"s, u"\u4300\0\u3100"s}) {
    CaptureFields f{.magic = kWideMagic};
    f.customers[0].id = id;
    f.customers[0].pages = {{.name = u"\u5000"}, {.name = u"P\0Q"s}, {.name = u""}};
    cases.emplace_back("byte order", f);
  }
  // A count by itself reserves no memory. A customer with a page makes the file valid.
  for (const int count : {0x7FFFFFFF, 2, -1}) {
    cases.push_back({Shown::row("customers", count), {.customerCount = count}});
    cases.push_back({Shown::row("pages", count), {.customers = {{.pageCount = count}}}});
  }
  cases.push_back({"newer", {.statics21 = {{.version = kNewestStatic + 1}}}});
  const CustomerFields none{.pages = {}}, negative{.pages = {}, .pageCount = -5};
  cases.push_back({"no page", {.customers = {none, negative}}});
  cases.push_back({"one page", {.customers = {none, negative, {}}}});
  return cases;
}

TEST(RvfReader, LoadsWhatTheFilesHold) {
  std::string text;
  for (const auto& [name, fields] : captures()) {
    const std::string bytes = writeCapture(fields).bytes;
    // A file of version 3 specifies how its texts are stored.
    const bool dbcsMode = fields.version < 3 ? *fields.wide : fields.magic != kWideMagic;
    LoadedCapture file(bytes, dbcsMode);
    text += name + "\n" + shown(file);
    if (file.reader.valid()) file.reader.loadCurrentPage();  // the first customer may have no page
    for (std::size_t length = 0; length < bytes.size(); ++length) {
      const LoadedCapture shorter(bytes.substr(0, length), dbcsMode);
      ASSERT_FALSE(shorter.reader.valid()) << name << ' ' << length;
      ASSERT_LE(shorter.reader.customers.size(), 4U);
    }
  }
  expectFrozen("captures.txt", text);
}

TEST(PageNames, OfEveryLengthAndForm) {
  IndexMemory memory;
  PageNames names(memory);
  for (const std::size_t length : {0U, 1U, 126U, 127U, 254U, 255U, 70000U}) {
    for (const char16_t last : {u'a', u'\xFF', u'\x100'}) {
      std::u16string text(length, u'b');
      if (length > 0) text.back() = last;
      for (const bool wide : {false, true}) {
        if (!wide && last > 0xFF) continue;
        for (const i32 bufferSize : {64, 1 << 18}) {
          // After a byte that has filled the buffer.
          LoadedBytes file("v" + ByteWriter(wide).string(text).bytes + "w", wide, bufferSize);
          EXPECT_EQ(file.archive.ReadU8(), 'v');
          const PageName name = names.read(file.archive, CharacterOrder::kNative);
          EXPECT_TRUE(name.text() == eString(text) && name == names.keep(text)) << length;
          EXPECT_EQ(name == names.keep(text + u"c"), false);
          EXPECT_EQ(file.archive.ReadU8(), 'w') << length;
        }
      }
    }
  }
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
    EXPECT_TRUE(isValid(tableCount, -1)) << tableCount;  // counts as 0
  }
  for (const int position : {-1, -0x7FFFFFFF, 0x7FFFFFFF, 103, 102}) {
    EXPECT_FALSE(isValid(0, position)) << position;
  }
  EXPECT_FALSE(isValid(smallest.size() - 4, 0));  // the end mark
}

TEST(RvfReader, LargestFileAndBeyond) {
  const TempFolder folder;
  const std::string path = folder.path("sparse.rvf");
  const std::string body = bytesOf(writePageBody, PageBody{.placed = {{.y = 77}}});
  for (const bool trailer : {false, true}) {
    constexpr i64 kTrailerSize = 8;
    const auto at = kLongestFile - (trailer ? kTrailerSize : 0) - static_cast<i64>(body.size());
    const CaptureFields fields{.magic = trailer ? kTrailerMagic : kWideMagic,
                               .customers = {{.pages = {{.filePosition = static_cast<int>(at)}}}}};
    const std::string index = writeCapture(fields).bytes;
    std::ofstream out(path, std::ios::binary);
    out << index;
    out.seekp(at) << body << (trailer ? index.substr(index.size() - kTrailerSize) : "");
    out.close();

    HeldMessages messages;
    eDiskFile file;
    ASSERT_TRUE(file.Open(fromNative(path), open_flags::kRead, FileContent::kBinary));
    CompareContext context, grown;
    RvfReader reader(context, false), late(grown, false);
    reader.load(file);
    ASSERT_TRUE(reader.valid());
    EXPECT_TRUE(context.hasBytesAt(static_cast<i32>(at), std::as_bytes(std::span(body))));
    reader.loadCurrentPage();
    EXPECT_EQ(context.staticPlacementY, std::vector{77});
    EXPECT_EQ(context.bodyBytes().size(), body.size());
    EXPECT_TRUE(messages.take().empty());
    // Later bytes have no offsets.
    std::filesystem::resize_file(path, kLongestFile + 100);
    EXPECT_TRUE(!eDiskFile().Open(fromNative(path), open_flags::kRead, FileContent::kBinary));
    context.FetchPage(0, kLongestFile - 3);
    EXPECT_EQ(context.bodyBytes().size(), 0U);
    file.contentChanged();
    file.Seek(0, SeekOrigin::kStart);
    late.load(file);
    EXPECT_EQ(late.loadResult().state, LoadState::kTooLarge);
    EXPECT_EQ(messages.takeNumbers(), std::vector{9042});
    // A refused seek is reported once for a page, and not at all while looking ahead.
    ::close(fileno(file.stream()));
    EXPECT_FALSE(context.hasBytesAt(1 << 20, std::as_bytes(std::span(body))));
    EXPECT_TRUE(messages.take().empty());
    context.FetchPage(0, 1 << 20);
    EXPECT_EQ(messages.takeNumbers(), (std::vector{1911, 9042}));
  }
}

}  // namespace
}  // namespace rvf::test
