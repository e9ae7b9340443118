#include "storage/HyperlinkInfo.h"

#include <gtest/gtest.h>

#include "support/LoadedBytes.h"
#include "support/Parts.h"
#include "support/Reporting.h"

namespace rvf {
namespace {

using test::ByteWriter;
using test::LoadedBytes;

TEST(HyperlinkInfo, TaggedForms) {
  const test::CatchProcessEnd catching;
  HyperlinkInfo link;
  for (const int tag : {100, 101, 102, -102, -100, 0, 99}) {
    ByteWriter w;
    writeLink(w, {.tag = tag, .text = u"http://\u00E9"});
    LoadedBytes file(w.bytes);
    link.read(file.archive);
    EXPECT_TRUE(!file.archive.failed() && file.archive.BytesLeft() == 0) << tag;
    EXPECT_TRUE(link.text.get() == std::u16string_view(u"http://\u00E9") && link.textCapacity == 9);
    EXPECT_EQ(link.secondLabel.view(), tag == 102 ? u"second" : u"");
  }
  for (const int tag : {103, -103, std::numeric_limits<int>::min()}) {
    LoadedBytes newer(ByteWriter().i32(tag).bytes);
    EXPECT_THROW(link.read(newer.archive), test::ProcessEnded);
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
    std::u16string_view expected;
  };
  const Row rows[] = {
      {133, u"http://a", 100, u"http://a"},
      {133, u"http://a", 4, u"http"},  // cut at the capacity of the file
      {133, u"http://a", 0, u""},
      {133, u"", 5, u""},
      {132, u"AB", 3, u"A"},  // quirk: two-byte text ends at its first zero byte
      {132, u"\u4241\u4443", 9, u"AB"},
  };
  for (const Row& row : rows) {
    ByteWriter w;
    writeOldLink(w, {.text = row.text, .capacity = row.capacity}, row.version);
    LoadedBytes file(w.bytes);
    HyperlinkInfo link;
    link.readOldForm(file.archive, row.version);
    EXPECT_TRUE(!file.archive.failed() && file.archive.BytesLeft() == 0);
    EXPECT_EQ(link.text == nullptr, row.expected.empty());
    EXPECT_TRUE(link.text == nullptr || link.text.get() == row.expected) << row.version;
  }
}

}  // namespace
}  // namespace rvf
