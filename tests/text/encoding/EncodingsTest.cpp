#include <gtest/gtest.h>

#include "storage/DiskFile.h"
#include "support/FrozenText.h"
#include "support/Reporting.h"
#include "support/TempFolder.h"
#include "text/encoding/RecordReader.h"
#include "text/encoding/TextSink.h"

namespace rvf {
namespace {

TEST(NativeText, EveryByteStringComesBack) {
  for (int pair = 0; pair < 0x10000; ++pair) {
    for (const std::string rest : {"", "\x80", "\xBF\xBF", "a"}) {
      const std::string bytes{static_cast<char>(pair >> 8), static_cast<char>(pair)};
      ASSERT_EQ(toNative(fromNative(bytes + rest).view()), bytes + rest);
    }
  }
  EXPECT_EQ(toNative(u"a\xD83D"), "a\xED\xA0\xBD");  // half a surrogate pair at the end
}

/// Bytes as they are, except for those that are not ASCII.
std::string quotedBytes(std::string_view bytes) {
  std::u16string text;
  for (const char byte : bytes) text += static_cast<u8>(byte);
  return test::quoted(text);
}

/// The content of a file that was written in one encoding, and what is read from it.
std::string writtenAndRead(i32 id, ByteOrderMark mark) {
  const test::TempFolder folder;
  eDiskFile file;
  FileSink sink(file, fromNative(folder.write("report", "what was there before")));
  if (!sink.openFile(id, mark) || !sink.connect()) return " no converter";
  sink.WriteLine(u"Az09[]\u00E9\u0141\u20AC\u00A5\u2014\u65E5\uFF71\U0001F600", LineEnd::kWritten);
  sink.WriteLine(u"\u65E5", LineEnd::kNone);
  sink.Close();
  RecordReader reader;
  EXPECT_TRUE(
      file.Open(fromNative(folder.path("report")), open_flags::kRead, FileContent::kBinary));
  reader.Attach(&file);
  EXPECT_TRUE(reader.Open(u"", id, 100));
  std::string text = " " + quotedBytes(folder.read("report"));
  const char16_t* record = nullptr;
  for (i32 length = 0; reader.ReadRecord(record, length) >= 0;) text += " " + test::quoted(record);
  return text;
}

// Each encoding with its names, the id of its name, and the bytes of a text, which are read back.
TEST(FileSink, WritesAndReadsEveryEncoding) {
  std::string text;
  for (i32 id = 0; id <= 40; ++id) {
    eString name, shown;
    GetEncodingName(id, NameUse::kConverter, name);
    GetEncodingName(id, NameUse::kDisplay, shown);
    i32 idOfName = 7;
    GetEncodingId(name, idOfName);
    text += std::to_string(id) + " " + toNative(name.view()) + ", " + toNative(shown.view()) +
            ", " + std::to_string(idOfName) + ":" + writtenAndRead(id, ByteOrderMark::kWritten) +
            "\n";
  }
  for (const i32 id : {20, 21})
    text += "no mark:" + writtenAndRead(id, ByteOrderMark::kNone) + "\n";
  test::expectFrozen("encodings.txt", text);
  for (const auto& [name, expected] :
       {std::pair{u"Utf-16", 20}, {u"utf-16le", 20}, {u"none", -1}}) {
    i32 id = 7;
    EXPECT_EQ(GetEncodingId(name, id), expected == -1 ? -1 : 0);
    EXPECT_EQ(id, expected);
  }
}

TEST(TextConverter, OpenedAndClosed) {
  test::HeldMessages messages;
  ConverterHandle handle;
  EXPECT_EQ(OpenConverter(u"UTF-16", handle), converter_result::kOpened);
  EXPECT_EQ(OpenConverter(u"none", handle), converter_result::kNotOpened);
  EXPECT_EQ(messages.take(), std::vector<std::string>{
                                 "9045 Could not open Unicode Converter with \"none\" encoding."});
  TextConverter converter;
  const auto state = [&converter] {
    const std::string_view bytes = converter.ConvertFromWide(u"a\u00E9");
    return std::to_string(converter.encodingId()) + toNative(converter.converterName().view()) +
           (converter.isOpen() ? " open " : " closed ") + quotedBytes(bytes) +
           test::quoted(converter.ConvertToWide(bytes));
  };
  EXPECT_EQ(state(), "-1 closed \"\"\"\"");
  for (const auto& [name, expected] : {std::pair{u"UTF-16", "20UTF-16 open \"a|<233>|\"\"a<233>\""},
                                       {u"none", "-1 closed \"\"\"\""},
                                       {u"utf-16be", "21utf-16be open \"|a|<233>\"\"a<233>\""}}) {
    const bool isOpened = converter.SetEncodingByName(name);
    EXPECT_EQ(isOpened, converter.isOpen());
    EXPECT_EQ(state(), expected);
  }
  EXPECT_TRUE(converter.SetEncodingByName(converter.converterName()));
  converter.CloseConverter();
  EXPECT_EQ(state(), "21 closed \"\"\"\"");
  EXPECT_TRUE(converter.SetEncoding(999));
  EXPECT_EQ(state(), "999iso-8859-1 open \"a<233>\"\"a<233>\"");
  EXPECT_TRUE(converter.SetEncoding(11));
  EXPECT_EQ(converter.ConvertToWide("a\xFFz\xE2\x82"), u"a\uFFFDz\uFFFD");
  EXPECT_TRUE(converter.wasTruncated());
  constexpr ReplacementPair kPairs[] = {{0xFE, u'x'}, {0xFF, u'\u20AC'}};
  converter.setReplacements(kPairs);
  EXPECT_EQ(converter.ConvertToWide("a\xFF\xFE\xFD"), u"a\u20ACx\uFFFD");
  EXPECT_FALSE(converter.wasTruncated());
  const std::u16string_view tooLong(u"a", TextConverter::kLongestText + 1);  // never read
  EXPECT_TRUE(converter.ConvertFromWide(tooLong).empty());
}

}  // namespace
}  // namespace rvf
