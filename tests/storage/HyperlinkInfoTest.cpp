#include "storage/HyperlinkInfo.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

#include "storage/MemFile.h"
#include "support/LoadedBytes.h"
#include "support/Parts.h"
#include "support/Reporting.h"

namespace rvf {
namespace {

using test::ByteWriter;
using test::LoadedBytes;

std::u16string textOf(const HyperlinkInfo& link) {
  return link.text == nullptr ? u"(none)" : std::u16string(link.text.get());
}

TEST(HyperlinkInfo, TaggedForms) {
  struct Row {
    int tag;
    bool hasLabels, hasMark;
  };
  const std::vector<Row> rows = {{100, false, false}, {101, false, true},   {102, true, true},
                                 {-102, false, true}, {-100, false, false}, {0, false, false},
                                 {99, false, false}};
  for (const bool wide : {false, true}) {
    for (const Row& row : rows) {
      for (const std::u16string text : {u"", u"http://\u00E9"}) {
        ByteWriter w(wide);
        writeLink(w, {.tag = row.tag, .text = text});
        LoadedBytes file(w.bytes, wide);
        HyperlinkInfo link;
        link.read(file.archive);
        EXPECT_FALSE(file.archive.failed()) << row.tag;
        EXPECT_EQ(file.archive.BytesLeft(), 0);
        EXPECT_TRUE(link.linkValue1 == 31 && link.linkValue2 == 32 && link.linkValue3 == 33);
        EXPECT_EQ(link.textLength, text.size());
        EXPECT_EQ(link.textCapacity, text.size() + 1);
        EXPECT_EQ(textOf(link), text.empty() ? u"(none)" : text);
        EXPECT_EQ(link.firstLabel.view(), row.hasLabels ? u"first" : u"");
        EXPECT_EQ(link.secondLabel.view(), row.hasLabels ? u"second" : u"");
        // A mark that is not there, or is not read, would show here.
        w.bytes.back() ^= 1;
        LoadedBytes damaged(w.bytes, wide);
        link.read(damaged.archive);
        EXPECT_EQ(damaged.archive.failed(), row.hasMark);
      }
    }
  }
}

TEST(HyperlinkInfo, NewerTagsEndTheProcess) {
  const test::CatchProcessEnd catching;
  for (const int tag : {103, -103, std::numeric_limits<int>::min()}) {
    test::HeldMessages messages;
    HyperlinkInfo link;
    LoadedBytes file(ByteWriter().i32(tag).bytes);
    EXPECT_THROW(link.read(file.archive), test::ProcessEnded);
    EXPECT_EQ(messages.take(), std::vector{"2564 HYPERLINKINFO|" + std::to_string(tag) + "|102"});
  }
  LoadedBytes cut("\x67");  // the file ends in front of a tag: damage, not too new
  HyperlinkInfo link;
  link.read(cut.archive);
  EXPECT_TRUE(cut.archive.failed());
}

TEST(HyperlinkInfo, OldForms) {
  struct Row {
    int version;
    std::u16string text;
    int capacity;
    std::u16string expected;
  };
  const std::vector<Row> rows = {
      {133, u"http://a", 9, u"http://a"},
      {137, u"http://a", 100, u"http://a"},
      {133, u"http://a", 4, u"http"},  // cut at the capacity of the file
      {133, u"http://a", 0, u"(none)"},
      {133, u"", 5, u"(none)"},
      {132, u"AB", 3, u"A"},  // quirk: two-byte text ends at its first zero byte
      {132, u"\u4241\u4443", 9, u"AB"},
      {115, u"AB", 3, u"A"},
      {-132, u"AB", 3, u"A"},
      {133, std::u16string(5000, u'x'), 5001, std::u16string(5000, u'x')},
  };
  for (const Row& row : rows) {
    ByteWriter w;
    writeOldLink(w, {.text = row.text, .capacity = row.capacity}, row.version);
    LoadedBytes file(w.bytes);
    HyperlinkInfo link;
    link.readOldForm(file.archive, row.version);
    EXPECT_FALSE(file.archive.failed());
    EXPECT_EQ(file.archive.BytesLeft(), 0);
    EXPECT_EQ(textOf(link), row.expected) << row.version;
    EXPECT_EQ(link.linkValue3, 33);
    EXPECT_TRUE(link.firstLabel.isEmpty());
  }
}

TEST(HyperlinkInfo, StoredBytesComeBackAndCopiesAreTheirOwn) {
  ByteWriter expected(true);
  writeLink(expected, {});
  HyperlinkInfo link;
  LoadedBytes file(expected.bytes, true);
  link.read(file.archive);
  link.reservedA = 5;
  const HyperlinkInfo copy = link;
  EXPECT_NE(copy.text.get(), link.text.get());
  link = HyperlinkInfo();
  EXPECT_EQ(textOf(link), u"(none)");
  EXPECT_EQ(link.linkValue1 + link.textLength + link.reservedA, 0);
  link = copy;
  link = *&link;
  EXPECT_EQ(link.reservedA, 5);

  eMemFile target(16);
  eArchive archive(target, eArchive::Mode::kStore, 64);
  link.read(archive);
  link.readOldForm(archive, 133);  // never stores
  archive.Close();
  EXPECT_EQ(std::string(reinterpret_cast<const char*>(target.data()),
                        static_cast<std::size_t>(target.Tell())),
            expected.bytes);
}

}  // namespace
}  // namespace rvf
