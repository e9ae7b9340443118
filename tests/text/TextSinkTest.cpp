#include "text/TextSink.h"

#include <gtest/gtest.h>

#include <cerrno>

#include "storage/DiskFile.h"
#include "support/Reporting.h"
#include "support/TempFolder.h"

namespace rvf {
namespace {

using namespace std::string_literals;

TEST(TextSink, IndentsLineEndsAndMarkup) {
  enum Mode { kPlain, kRaw, kBare, kXml };
  struct Row {
    std::u16string text;
    i32 indent;
    Mode mode;
    std::string bytes;
  };
  const Row rows[] = {
      {u"ab", 3, kPlain, "   ab\r\n"},
      {u"ab", -3, kBare, "ab\n"},
      {u"a", 5000, kPlain, std::string(5000, ' ') + "a\r\n"},
      {u"ab", 14, kRaw, "ab"},
      {u"\u00E9\u20AC&\0b"s, 0, kPlain, "\xC3\xA9\xE2\x82\xAC&\0b\r\n"s},
      {u"a&b<c>d\"e'f", 0, kXml, "a&amp;b&lt;c&gt;d&quot;e&apos;f\r\n"},
      {u"<![CDATA[a<b&c]]>&<", 0, kXml, "<![CDATA[a<b&c]]>&amp;&lt;\r\n"},
      {u"&<![CDATA[]]>]]><![cdata[", 0, kXml, "&amp;<![CDATA[]]>]]&gt;&lt;![cdata[\r\n"}};
  for (const Row& row : rows) {
    MemorySink sink;
    sink.setRawMode(row.mode == kRaw);
    sink.setBareLineFeed(row.mode == kBare);
    sink.setXmlMode(row.mode == kXml);
    const auto count = static_cast<i32>(row.text.size());
    EXPECT_EQ(sink.WriteIndented(row.text.data(), count, row.indent, true),
              static_cast<i32>(row.bytes.size()));
    EXPECT_EQ(sink.bytes(), row.bytes);
  }
  MemorySink sink;  // a section may span lines
  sink.setXmlMode(true);
  sink.WriteLine(u"<![CDATA[a<", false);
  sink.WriteLine(u"b<]]>c<", false);
  EXPECT_EQ(sink.bytes(), "<![CDATA[a<b<]]>c&lt;");
}

TEST(FileSink, MarksAndEncodings) {
  struct Row {
    i32 encoding;
    bool hasMark;
    std::string mark, bytes;
  };
  const Row rows[] = {{20, true, "\xFF\xFE", "A\0\xE9\0\r\0\n\0"s},
                      {12, true, "\xFF\xFE", "A\0\xE9\0\r\0\n\0"s},
                      {21, true, "\xFE\xFF", "\0A\0\xE9\0\r\0\n"s},
                      {20, false, "", "A\0\xE9\0\r\0\n\0"s},
                      {11, true, "", "A\xC3\xA9\r\n"},
                      {2, true, "", "\xC1\x51\x0D\x25"}};
  for (const Row& row : rows) {
    const test::TempFolder folder;
    test::HeldMessages messages;
    eDiskFile file;
    FileSink sink(file, fromNative(folder.write("report", "what was there before")));
    ASSERT_TRUE(sink.openFile(row.encoding, row.hasMark) && sink.connect());
    EXPECT_EQ(sink.WriteLine(u"A\u00E9", true), static_cast<i32>(row.bytes.size()));
    sink.Close();
    EXPECT_FALSE(file.isOpen());
    sink.Close();  // no message about a file that is not open
    EXPECT_TRUE(messages.take().empty());
    EXPECT_EQ(folder.read("report"), row.mark + row.bytes) << row.encoding;
  }
}

TEST(FileSink, TroubleIsToldAsItsOwnerWants) {
  const test::TempFolder folder;
  test::HeldMessages messages;
  for (const std::string& path : {folder.path("none/report"), ""s}) {
    eDiskFile file;
    FileSink sink(file, fromNative(path));
    EXPECT_FALSE(sink.openFile(11, true));
    EXPECT_EQ(errno, ENOENT);  // that is the caller's to tell
    EXPECT_EQ(sink.WriteLine(u"a", true), 0);
  }
  EXPECT_TRUE(messages.take().empty());
  eDiskFile file;
  FileSink sink(file, fromNative(folder.path("report")));
  EXPECT_TRUE(sink.openFile(28, true) && !sink.connect());
  EXPECT_EQ(messages.takeNumbers(), std::vector{9045});
  eDiskFile full;
  FileSink lost(full, u"/dev/full");
  ASSERT_TRUE(lost.openFile(11, true) && lost.connect());
  EXPECT_EQ(lost.WriteLine(u"lost", true) + lost.WriteLine(u"lost too", true), 0);
  lost.Flush();
  EXPECT_EQ(messages.take(), std::vector{"1806 /dev/full|No space left on device"s});
}

}  // namespace
}  // namespace rvf
