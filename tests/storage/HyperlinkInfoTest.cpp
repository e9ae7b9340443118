#include "storage/HyperlinkInfo.h"

#include <gtest/gtest.h>

#include "support/LoadedBytes.h"
#include "support/Parts.h"
#include "support/Reporting.h"

namespace rvf {
namespace {

using test::ByteWriter;
using test::LoadedBytes;

TEST(HyperlinkInfo, NewerTagsAreLeftToTheCaller) {
  HyperlinkInfo link;
  for (const int tag : {103, -103, std::numeric_limits<int>::min()}) {
    LoadedBytes newer(ByteWriter().i32(tag).bytes);
    link.read(newer.archive);
    ASSERT_TRUE(newer.archive.failed() && newer.archive.newerRecord());
    EXPECT_EQ(newer.archive.newerRecord()->version, tag);
  }
  LoadedBytes cut("\x67");  // the file ends before a tag: damaged, not too new
  link.read(cut.archive);
  EXPECT_TRUE(cut.archive.failed() && !cut.archive.newerRecord());
}

TEST(HyperlinkInfo, OldForms) {
  struct Row {
    int version, capacity;
    std::u16string text;
    std::u16string_view expected;
  };
  const Row rows[] = {{133, 100, u"http://a", u"http://a"},
                      {133, 5, u"", u""},
                      {133, 0, u"http://a", u""},
                      {133, 4, u"http://a", u"http"},  // cut at the capacity of the file
                      {132, 3, u"AB", u"A"},  // quirk: two-byte text ends at its first zero byte
                      {132, 9, u"\u4241\u4443", u"AB"}};
  for (const Row& row : rows) {
    ByteWriter w;
    writeOldLink(w, {.text = row.text, .capacity = row.capacity}, row.version);
    LoadedBytes file(w.bytes);
    HyperlinkInfo link;
    link.readOldForm(file.archive, row.version);
    EXPECT_TRUE(!file.archive.failed() && file.archive.bytesLeft() == 0);
    EXPECT_EQ(link.text == nullptr, row.expected.empty());
    EXPECT_TRUE(link.text == nullptr || link.text.get() == row.expected) << row.version;
  }
}

}  // namespace
}  // namespace rvf
