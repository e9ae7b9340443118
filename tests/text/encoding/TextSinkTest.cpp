#include "text/encoding/TextSink.h"

#include <gtest/gtest.h>

#include <sstream>

#include "storage/DiskFile.h"
#include "support/Reporting.h"
#include "support/TempFolder.h"
#include "text/NativeText.h"

namespace rvf {
namespace {

using namespace std::string_literals;

/// The number that a step returns, followed by what it writes into a sink.
template <class Step>
std::string written(TextSink& sink, Step step) {
  const i32 count = step(sink);
  return std::to_string(count) + " " + sink.takeBytes();
}

TEST(TextSink, LinesWithIndentAndLineEnd) {
  constexpr LineEnd kEnd = LineEnd::kWritten, kNone = LineEnd::kNone;
  const std::string wide(41, ' ');
  const std::tuple<i32 (*)(TextSink&), std::string, std::string, std::string> rows[] = {
      // what is written, by default, in raw mode and with bare line feeds
      {[](TextSink& s) { return s.WriteLine(u"a\u00E9", kEnd); }, "5 a\xC3\xA9\r\n", "3 a\xC3\xA9",
       "4 a\xC3\xA9\n"},
      {[](TextSink& s) { return s.WriteLine(u"", kEnd); }, "2 \r\n", "0 ", "1 \n"},
      {[](TextSink& s) { return s.WriteLine(u"", kNone); }, "0 ", "0 ", "0 "},
      {[](TextSink& s) { return s.WriteIndented(u"abc", 2, 14, kEnd); },
       "18 " + wide.substr(0, 14) + "ab\r\n", "2 ab", "17 " + wide.substr(0, 14) + "ab\n"},
      {[](TextSink& s) { return s.WriteString(u"ab", 41, kNone); }, "43 " + wide + "ab", "2 ab",
       "43 " + wide + "ab"},
      {[](TextSink& s) { return s.WriteIndented(u"abc", 0, 3, kEnd); }, "-1 ", "-1 ", "-1 "},
  };
  for (const auto& [step, plain, raw, bare] : rows) {
    MemorySink sinks[3];
    sinks[1].setRawMode(true);
    sinks[2].setBareLineFeed(true);
    EXPECT_EQ(written(sinks[0], step), plain);
    EXPECT_EQ(written(sinks[1], step), raw);
    EXPECT_EQ(written(sinks[2], step), bare);
  }
}

TEST(TextSink, XmlModeEscapesContent) {
  const auto write = [](TextSink& sink) {
    for (const char16_t* text : {u"<a&b>\"c'", u"x<![CDATA[<&", u"'>", u"]]>'<![CDATA[&]]><"}) {
      sink.WriteLine(text, LineEnd::kNone);
    }
    StartElement(&sink, u"n");
    EndElement(&sink, u"n");
  };
  StartElement(nullptr, u"n");
  EndElement(nullptr, u"n");
  MemorySink sink;
  sink.setXmlMode(true);
  write(sink);
  EXPECT_EQ(sink.bytes(),
            "&lt;a&amp;b&gt;&quot;c&apos;x<![CDATA[<&'>]]>&apos;<![CDATA[&]]>&lt;<n>\r\n</n>\r\n");
  char16_t block[80];
  WideMemorySink wide(block);
  wide.setXmlMode(true);
  write(wide);
  EXPECT_EQ(wide.wideText(), u"<a&b>\"c'x<![CDATA[<&'>]]>'<![CDATA[&]]><<n>\r\n</n>\r\n");
}

TEST(TextSink, Kinds) {
  const test::TempFolder folder;
  eDiskFile file;
  const eString path = fromNative(folder.path("file"));
  std::string text;
  for (i32 kind = 0; kind <= 6; ++kind) {
    const auto sink = OpenSink(static_cast<SinkKind>(kind), &file, path, 20);
    if (sink == nullptr) continue;
    EXPECT_EQ(sink->kind(), static_cast<SinkKind>(kind));
    const i32 count = kind == 5 ? 0 : sink->WriteLine(u"ab", LineEnd::kNone);
    text += std::to_string(kind) + ":" + std::to_string(count) + (sink->IsWide() != 0 ? "w" : "") +
            std::string(sink->bytes()) + std::to_string(sink->GetEncodingKind()) + " ";
    sink->Close();
  }
  EXPECT_EQ(text, "0:4w0 1:0w0 3:0w0 4:2ab0 5:0w0 ");
  EXPECT_FALSE(file.isOpen());
  EXPECT_EQ(folder.read("file"), "\xFF\xFE"s + "a\0b\0"s);
  EXPECT_EQ(OpenSink(SinkKind::kFile, nullptr, path), nullptr);
  EXPECT_EQ(OpenSink(SinkKind::kFile, &file, u""), nullptr);
  EXPECT_EQ(OpenSink(SinkKind::kFile, &file, fromNative(folder.path("none/file"))), nullptr);
  const test::HeldMessages messages;
  EXPECT_EQ(OpenSink(SinkKind::kFile, &file, path, 28), nullptr);  // no such converter
}

TEST(TextSink, MemoryAndItsBuffers) {
  MemorySink narrow, wide(MemoryContent::kWide);
  for (TextSink* sink : {static_cast<TextSink*>(&narrow), static_cast<TextSink*>(&wide)}) {
    for (const int lines : {66, 400}) {  // 800 and 4800 reserved bytes: nothing moves
      const auto* start = static_cast<const char*>(sink->GetBuffer());
      for (int i = 0; i < lines; ++i) start += sink->WriteLine(u"abcd", LineEnd::kWritten);
      EXPECT_EQ(sink->GetBuffer(), start);
      sink->Reserve(4000);
    }
  }
  EXPECT_EQ(narrow.IsWide() + 2 * wide.IsWide(), 2);
  EXPECT_EQ(wide.wideText().substr(0, 7), u"abcd\r\na");
  EXPECT_EQ(wide.takeWideText().size() + wide.wideText().size(), 2796U);
  EXPECT_EQ(narrow.takeBytes().size() + narrow.bytes().size(), 2796U);

  NullSink sink(SinkKind::kNothing1);
  EXPECT_EQ(sink.AppendPending(u"abcd", 4, 0), 4);
  EXPECT_EQ(sink.AppendPending(u"xyz", 2, 3), 5);
  EXPECT_EQ(std::u16string_view(static_cast<const char16_t*>(sink.GetBuffer())), u"abcxy");

  char16_t block[3];
  WideMemorySink small(block);
  EXPECT_EQ(small.WriteLine(u"ab", LineEnd::kNone), 4);
  EXPECT_EQ(small.GetBuffer(), block + 2);
  EXPECT_EQ(small.WriteLine(u"cd", LineEnd::kNone), 0);
  EXPECT_EQ(small.wideText(), u"abc");
}

TEST(TextSink, StreamsAndUnconvertedText) {
  const auto text = [](i32 encoding, Conversion conversion) {
    std::ostringstream stream;
    StreamSink sink(stream, u"stream", encoding);
    const i32 count = sink.WriteData(u"a\u00E9b", 2, LineEnd::kNone, conversion);
    return std::to_string(count) + stream.str();
  };
  const test::HeldMessages messages;
  const std::tuple<i32, std::string, std::string> rows[] = {
      // an encoding, and the bytes with and without conversion
      {11, "3a\xC3\xA9", "4a\0\xE9\0"s},  {30, "2a\xE9", "4a\0\xE9\0"s},
      {20, "4a\0\xE9\0"s, "4a\0\xE9\0"s}, {21, "4\0a\0\xE9"s, "4\0a\0\xE9"s},
      {28, "4a\0\xE9\0"s, "4a\0\xE9\0"s},  // its converter cannot be opened
  };
  for (const auto& [encoding, converted, raw] : rows) {
    EXPECT_EQ(text(encoding, Conversion::kConverted), converted) << encoding;
    EXPECT_EQ(text(encoding, Conversion::kNone), raw) << encoding;
  }
  std::ostringstream broken;
  broken.setstate(std::ios::badbit);
  EXPECT_EQ(StreamSink(broken, u"").WriteLine(u"a", LineEnd::kNone), 0);
}

TEST(FileSink, OpensLikeAnotherConverter) {
  const test::TempFolder folder;
  const eString path = fromNative(folder.path("file"));
  using Row = std::tuple<const char16_t*, i32, std::string, std::string>;
  for (const auto& [name, id, mark, text] :
       {Row{u"utf-16be", 21, "\xFE\xFF", "\0a"s}, Row{u"UTF-16", 20, "\xFF\xFE", "a\0"s},
        Row{u"UTF-8", 11, "", "a"}, Row{u"windows-1251", -1, "", "a"}}) {
    TextConverter model;
    ASSERT_TRUE(model.SetEncodingByName(name));
    eDiskFile file;
    FileSink sink(file, path);
    for (const ByteOrderMark wanted : {ByteOrderMark::kWritten, ByteOrderMark::kNone}) {
      ASSERT_TRUE(sink.openFile(model, wanted) && sink.connect());
      EXPECT_EQ(sink.encoding(), id);
      EXPECT_NE(sink.WriteLine(u"a", LineEnd::kNone), 0);
      EXPECT_EQ(folder.read("file"), wanted == ByteOrderMark::kWritten ? mark + text : text);
    }
  }
}

TEST(FileSink, FailuresAreReportedOnce) {
  test::HeldMessages messages;
  eDiskFile full;
  FileSink fullSink(full, u"/dev/full");
  EXPECT_FALSE(fullSink.openFile(20, ByteOrderMark::kWritten));
  EXPECT_EQ(fullSink.openFailure().view(), u"No space left on device");
  EXPECT_TRUE(messages.take().empty());
  EXPECT_TRUE(fullSink.openFile(11, ByteOrderMark::kWritten) && fullSink.connect());
  EXPECT_EQ(fullSink.WriteLine(u"a", LineEnd::kNone), 0);
  EXPECT_EQ(fullSink.WriteLine(u"a", LineEnd::kNone), 0);
  EXPECT_EQ(messages.take(), std::vector<std::string>{"1806 /dev/full|No space left on device"});
  FileSink unconnected(full, u"/dev/full");
  ASSERT_TRUE(unconnected.openFile(11, ByteOrderMark::kNone));
  EXPECT_EQ(unconnected.WriteLine(u"a", LineEnd::kNone), 0);
  EXPECT_EQ(messages.take(), std::vector<std::string>{"1806 /dev/full|Success"});
  FileSink nameless(full, u"");
  EXPECT_FALSE(nameless.openFile(11, ByteOrderMark::kNone));
  EXPECT_EQ(nameless.openFailure().view(), u"No such file or directory");
}

}  // namespace
}  // namespace rvf
