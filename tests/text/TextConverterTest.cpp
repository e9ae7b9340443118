#include "text/TextConverter.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "messages/MessageReporter.h"
#include "text/NativeText.h"

namespace rvf {
namespace {

using namespace std::string_view_literals;

eString nameOf(i32 id, bool forDisplay = false) {
  eString name;
  GetEncodingName(id, forDisplay, name);
  return name;
}

i32 idOf(const char16_t* name) {
  i32 id = 7;
  const i32 result = GetEncodingId(name, id);
  EXPECT_EQ(result, id == -1 ? -1 : 0);
  return id;
}

TEST(CodePages, NamesGiveTheFirstIdInAnyCase) {
  struct Row {
    const char16_t* name;
    i32 id;
  };
  const Row rows[] = {
      {u"iso-8859-1", 1}, {u"utf-16le", 20},     {u"UTF-16", 20},  {u"Utf-16be", 21},
      {u"utf-8", 11},     {u"IBM-1370", 3},      {u"jef-939", 29}, {u"ibm-943_p14a-2000", 10},
      {u"", -1},          {u"windows-1251", -1}, {u"UTF8", -1},    {u"Big5", -1},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(idOf(row.name), row.id) << toNative(row.name);
  }
  // Every id with a converter name of its own in the table comes back.
  for (i32 id = 2; id <= 29; ++id) {
    EXPECT_EQ(idOf(nameOf(id).c_str()), id == 12 ? 20 : id);
  }
}

TEST(TextConverter, OpensEveryEncodingOfTheTableThatIcuHas) {
  const auto isMissing = [](i32 id) { return (id >= 22 && id <= 25) || id == 28 || id == 29; };
  for (i32 id = 0; id <= 40; ++id) {
    TextConverter converter;
    EXPECT_EQ(converter.SetEncoding(id), !isMissing(id)) << id;
    EXPECT_EQ(converter.isOpen(), !isMissing(id)) << id;
    EXPECT_EQ(converter.encodingId(), id);
  }
}

TEST(TextConverter, FailedOpenIsReportedAndNotFinal) {
  TextConverter converter;
  ASSERT_TRUE(converter.SetEncoding(11));
  const std::size_t before = messageReporter.pending().size();
  EXPECT_FALSE(converter.SetEncodingByName(u"no such encoding"));
  ASSERT_EQ(messageReporter.pending().size(), before + 1);
  EXPECT_EQ(messageReporter.pending().back().number, MessageNumber::kConverterNotOpened);
  EXPECT_EQ(messageReporter.pending().back().arguments[0].view(),
            u"Could not open Unicode Converter with \"no such encoding\" encoding.");
  EXPECT_TRUE(converter.converterName().isEmpty());
  EXPECT_EQ(converter.ConvertFromWide(u"a"), "");
  EXPECT_EQ(converter.ConvertToWide("a"), u"");
  EXPECT_TRUE(converter.SetEncoding(11));
  EXPECT_EQ(converter.ConvertFromWide(u"a"), "a");
}

// The encodings that the report can be written in, with bytes from the code charts.
TEST(TextConverter, FixedBytesOfTheReportEncodingsComeBack) {
  struct Row {
    i32 id;
    std::u16string_view text;
    std::string_view bytes;
  };
  const Row rows[] = {
      {12, u"A\u00E9\r\n", "A\0\xE9\0\r\0\n\0"sv},
      {20, u"A\u20AC\xD83D\xDE00", "A\0\xAC\x20\x3D\xD8\x00\xDE"sv},
      {21, u"A\u20AC\xD83D\xDE00", "\0A\x20\xAC\xD8\x3D\xDE\x00"sv},
      {1, u"A\u00E9\u0080\r\n", "A\xE9\x80\r\n"},
      {2, u"Az09 \u00E9[]\r\n", "\xC1\xA9\xF0\xF9\x40\x51\xAD\xBD\x0D\x25"},
      {11, u"A\u00E9\u20AC\xD83D\xDE00\r\n", "A\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80\r\n"},
      {14, u"A\u00E9\u20AC\u0153", "A\xE9\x80\x9C"},
      {15, u"A\u00E9\u20AC\u0141\u0104", "A\xE9\x80\xA3\xA5"},
      {13, u"A\u00E9\u0141\u0104", "A\xE9\xA3\xA1"},
      {10, u"A\u65E5\u672C\uFF71", "A\x93\xFA\x96\x7B\xB1"},
      {3, u"A\u4E2D\u6587", "A\xA4\xA4\xA4\xE5"},
      {30, u"\u00FF", "\xFF"},
      // The shifts start and end with the text.
      {17, u"A\u65E5A", "\xC1\x0E\x45\x62\x0F\xC1"},
      {9, u"A\u65E5A", "A\x1B$B\x46\x7C\x1B(BA"},
  };
  for (const Row& row : rows) {
    TextConverter converter;
    ASSERT_TRUE(converter.SetEncoding(row.id)) << row.id;
    for (int again = 0; again < 2; ++again) {
      EXPECT_EQ(converter.ConvertFromWide(row.text), row.bytes) << row.id;
      EXPECT_EQ(converter.ConvertToWide(row.bytes), row.text) << row.id;
    }
  }
}

TEST(TextConverter, ReplacementsOfUndecodableBytes) {
  const ReplacementPair pairs[] = {{0xFF, u'!'}, {0xE2, u'?'}};
  TextConverter converter;
  ASSERT_TRUE(converter.SetEncoding(30));
  converter.setReplacements(pairs);
  ASSERT_TRUE(converter.SetEncoding(11));  // they outlive a change of encoding
  EXPECT_EQ(converter.ConvertToWide("a\xFFz\xFE\xE2\x82"), u"a!z\uFFFD?");
}

}  // namespace
}  // namespace rvf
