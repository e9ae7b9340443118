#include "text/TextSink.h"

#include <gtest/gtest.h>

#include <array>
#include <cerrno>
#include <sstream>
#include <string>

#include "messages/MessageReporter.h"
#include "storage/DiskFile.h"
#include "support/TempFolder.h"
#include "text/NativeText.h"

namespace rvf {
namespace {

using namespace std::string_literals;

TEST(TextSink, IndentsAndLineEnds) {
  struct Row {
    std::u16string text;
    i32 indent;
    bool newline, raw, bare;
    std::string bytes;
  };
  const Row rows[] = {
      {u"ab", 0, true, false, false, "ab\r\n"},
      {u"ab", 0, false, false, false, "ab"},
      {u"ab", 0, true, false, true, "ab\n"},
      {u"ab", 3, true, false, false, "   ab\r\n"},
      {u"ab", -3, true, false, false, "ab\r\n"},
      {u"a", 40, false, false, false, std::string(40, ' ') + "a"},
      {u"a", 41, false, false, false, std::string(41, ' ') + "a"},
      {u"a", 5000, false, false, false, std::string(5000, ' ') + "a"},
      {u"ab", 14, true, true, false, "ab"},
      {u"\u00E9\u20AC", 1, true, false, false, " \xC3\xA9\xE2\x82\xAC\r\n"},
      {u"a\0b"s, 0, false, false, false, "a\0b"s},
  };
  for (const Row& row : rows) {
    MemorySink sink;
    sink.setRawMode(row.raw);
    sink.setBareLineFeed(row.bare);
    const i32 written = sink.WriteIndented(row.text.data(), static_cast<i32>(row.text.size()),
                                           row.indent, row.newline);
    EXPECT_EQ(sink.bytes(), row.bytes);
    EXPECT_EQ(written, static_cast<i32>(row.bytes.size()));
  }
}

TEST(TextSink, XmlModeEscapesContentButNotMarkup) {
  struct Row {
    const char16_t* text;
    const char* bytes;
  };
  const Row rows[] = {
      {u"a&b<c>d\"e'f", "a&amp;b&lt;c&gt;d&quot;e&apos;f"},
      {u"<![CDATA[a<b&c]]>&<", "<![CDATA[a<b&c]]>&amp;&lt;"},
      {u"&<![CDATA[a]]><![CDATA[<]]>", "&amp;<![CDATA[a]]><![CDATA[<]]>"},
      {u"<![CDATA[]]>]]>", "<![CDATA[]]>]]&gt;"},
      {u"<![cdata[a", "&lt;![cdata[a"},
  };
  for (const Row& row : rows) {
    MemorySink sink;
    EXPECT_GT(sink.WriteLine(row.text, false), 0);
    EXPECT_EQ(sink.take(), toNative(row.text));
    sink.setXmlMode(true);
    EXPECT_EQ(sink.WriteLine(row.text, false), static_cast<i32>(std::string(row.bytes).size()));
    EXPECT_EQ(sink.bytes(), row.bytes);
  }
}

TEST(TextSink, CDataSectionMaySpanLines) {
  MemorySink sink;
  sink.setXmlMode(true);
  sink.WriteLine(u"<![CDATA[a<", false);
  sink.WriteLine(u"b<]]>c<", false);
  EXPECT_EQ(sink.bytes(), "<![CDATA[a<b<]]>c&lt;");
}

TEST(FileSink, MarksAndEncodings) {
  struct Row {
    i32 encoding;
    bool mark;
    std::string bytes;
  };
  const Row rows[] = {
      {20, true,
       "\xFF\xFE"
       "A\0\xE9\0\r\0\n\0"s},
      {12, true,
       "\xFF\xFE"
       "A\0\xE9\0\r\0\n\0"s},
      {21, true, "\xFE\xFF\0A\0\xE9\0\r\0\n"s},
      {20, false, "A\0\xE9\0\r\0\n\0"s},
      {11, true, "A\xC3\xA9\r\n"},
      {30, true, "A\xE9\r\n"},
      {2, true, "\xC1\x51\x0D\x25"},  // the line end is in the encoding too
  };
  for (const Row& row : rows) {
    const test::TempFolder folder;
    const eString path = fromNative(folder.write("report", "what was there before"));
    eDiskFile file;
    FileSink sink(file, path);
    ASSERT_TRUE(sink.openFile(row.encoding, row.mark));
    ASSERT_TRUE(sink.connect());
    const auto mark = row.mark && isUtf16(row.encoding) ? 2U : 0U;
    EXPECT_EQ(sink.WriteLine(u"A\u00E9", true), static_cast<i32>(row.bytes.size() - mark));
    sink.Close();
    EXPECT_FALSE(file.isOpen());
    const std::size_t before = messageReporter.pending().size();
    sink.Close();  // no message about a file that is not open
    EXPECT_EQ(messageReporter.pending().size(), before);
    EXPECT_EQ(folder.read("report"), row.bytes) << row.encoding;
  }
}

TEST(FileSink, TwoWaysNotToOpen) {
  const test::TempFolder folder;
  const std::size_t before = messageReporter.pending().size();
  for (const std::string name : {"none/report", ""}) {
    eDiskFile file;
    FileSink sink(file, name.empty() ? eString(u"") : fromNative(folder.path(name)));
    errno = 0;
    EXPECT_FALSE(sink.openFile(11, true));
    EXPECT_EQ(errno, ENOENT);
    EXPECT_FALSE(file.isOpen());
    EXPECT_EQ(sink.WriteLine(u"a", true), 0);
  }
  EXPECT_EQ(messageReporter.pending().size(), before);  // that is the caller's to tell

  eDiskFile file;
  FileSink sink(file, fromNative(folder.path("report")));
  EXPECT_TRUE(sink.openFile(28, true));
  EXPECT_FALSE(sink.connect());
  EXPECT_TRUE(file.isOpen());
  EXPECT_EQ(messageReporter.pending().back().number, MessageNumber::kConverterNotOpened);
}

TEST(FileSink, LostBytesAreToldByOneMessage) {
  const std::size_t before = messageReporter.pending().size();
  eDiskFile file;
  FileSink sink(file, u"/dev/full");
  ASSERT_TRUE(sink.openFile(11, true));
  ASSERT_TRUE(sink.connect());
  sink.WriteLine(u"lost", true);
  sink.Flush();
  ASSERT_EQ(messageReporter.pending().size(), before + 1);
  const MessageEntry& entry = messageReporter.pending().back();
  EXPECT_EQ(entry.number, MessageNumber::kSinkWriteFailed);
  EXPECT_EQ(entry.arguments[0].view(), u"/dev/full");
  EXPECT_EQ(entry.arguments[1].view(), u"No space left on device");
  EXPECT_EQ(sink.WriteLine(u"lost too", true), 0);
}

}  // namespace
}  // namespace rvf
