#include "storage/HyperlinkInfo.h"

#include <gtest/gtest.h>

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
  for (const bool wide : {false, true}) {
    for (const int tag : {100, 101, 102, -102, -100, 0, 99}) {
      for (const std::u16string text : {u"", u"http://\u00E9"}) {
        ByteWriter w(wide);
        writeLink(w, {.tag = tag, .text = text});
        LoadedBytes file(w.bytes, wide);
        HyperlinkInfo link;
        link.read(file.archive);
        EXPECT_TRUE(!file.archive.failed() && file.archive.BytesLeft() == 0) << tag;
        EXPECT_TRUE(link.linkValue1 == 31 && link.linkValue2 == 32 && link.linkValue3 == 33);
        EXPECT_TRUE(link.textLength == text.size() && link.textCapacity == text.size() + 1);
        EXPECT_EQ(textOf(link), text.empty() ? u"(none)" : text);
        EXPECT_EQ(link.firstLabel.view(), tag == 102 ? u"first" : u"");
        EXPECT_EQ(link.secondLabel.view(), tag == 102 ? u"second" : u"");
        w.bytes.back() ^= 1;  // in the end mark, where there is one
        LoadedBytes damaged(w.bytes, wide);
        link.read(damaged.archive);
        EXPECT_EQ(damaged.archive.failed(), std::abs(tag) > 100);
      }
    }
  }
}

TEST(HyperlinkInfo, NewerTagsEndTheProcess) {
  const test::CatchProcessEnd catching;
  HyperlinkInfo link;
  for (const int tag : {103, -103, std::numeric_limits<int>::min()}) {
    test::HeldMessages messages;
    LoadedBytes file(ByteWriter().i32(tag).bytes);
    EXPECT_THROW(link.read(file.archive), test::ProcessEnded);
    EXPECT_EQ(messages.take(), std::vector{"2564 HYPERLINKINFO|" + std::to_string(tag) + "|102"});
  }
  LoadedBytes cut("\x67");  // the file ends in front of a tag: damage, not too new
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
  const std::u16string longText(5000, u'x');
  const Row rows[] = {
      {133, u"http://a", 9, u"http://a"},
      {137, u"http://a", 100, u"http://a"},
      {133, u"http://a", 4, u"http"},  // cut at the capacity of the file
      {133, u"http://a", 0, u"(none)"},
      {133, u"", 5, u"(none)"},
      {132, u"AB", 3, u"A"},  // quirk: two-byte text ends at its first zero byte
      {132, u"\u4241\u4443", 9, u"AB"},
      {-132, u"AB", 3, u"A"},
      {133, longText, 5001, longText},
  };
  for (const Row& row : rows) {
    ByteWriter w;
    writeOldLink(w, {.text = row.text, .capacity = row.capacity}, row.version);
    LoadedBytes file(w.bytes);
    HyperlinkInfo link;
    link.readOldForm(file.archive, row.version);
    EXPECT_TRUE(!file.archive.failed() && file.archive.BytesLeft() == 0);
    EXPECT_EQ(textOf(link), row.expected) << row.version;
    EXPECT_EQ(link.linkValue3, 33);
  }
}

TEST(HyperlinkInfo, StoredBytes) {
  ByteWriter expected(true);
  writeLink(expected, {});
  LoadedBytes file(expected.bytes, true);
  HyperlinkInfo link;
  link.read(file.archive);
  const HyperlinkInfo copy = link;
  EXPECT_NE(copy.text.get(), link.text.get());
  eMemFile target(16);
  eArchive archive(target, eArchive::Mode::kStore, 64);
  HyperlinkInfo(copy).read(archive);
  link.readOldForm(archive, 133);  // never stores
  archive.Close();
  EXPECT_EQ(std::string(reinterpret_cast<const char*>(target.data()), expected.bytes.size()),
            expected.bytes);
  EXPECT_EQ(target.Tell(), expected.size());
}

}  // namespace
}  // namespace rvf
