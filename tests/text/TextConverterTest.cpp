#include "text/TextConverter.h"

#include <gtest/gtest.h>

#include "messages/MessageReporter.h"
#include "text/NativeText.h"

namespace rvf {
namespace {

using namespace std::string_view_literals;

TEST(NativeText, EveryByteStringComesBack) {
  for (int pair = 0; pair < 0x10000; ++pair) {
    for (const std::string_view rest : {"", "\x80", "\xBF\xBF", "a"}) {
      const std::string bytes{static_cast<char>(pair >> 8), static_cast<char>(pair)};
      ASSERT_EQ(toNative(fromNative(bytes + std::string(rest)).view()), bytes + std::string(rest));
    }
  }
}

TEST(CodePages, NamesGiveTheFirstIdInAnyCase) {
  const auto idOf = [](const eString& name) {
    i32 id = 7;
    const i32 result = GetEncodingId(name, id);
    EXPECT_EQ(result, id == -1 ? -1 : 0);
    return id;
  };
  const std::pair<const char16_t*, i32> rows[] = {
      {u"iso-8859-1", 1}, {u"UTF-16", 20}, {u"Utf-16be", 21}, {u"", -1}, {u"windows-1251", -1}};
  for (const auto& [name, id] : rows) EXPECT_EQ(idOf(name), id);
  for (i32 id = 2; id <= 40; ++id) {
    eString name;
    GetEncodingName(id, false, name);
    const bool isWindows = id >= 31 && id <= 39;  // these are known by id only
    EXPECT_EQ(idOf(name), id == 12 ? 20 : id == 30 || id == 40 ? 1 : isWindows ? -1 : id);
    TextConverter converter;
    const bool isInstalled = id < 22 || (id > 25 && id != 28 && id != 29);
    EXPECT_EQ(converter.SetEncoding(id) && converter.isOpen(), isInstalled) << id;
    EXPECT_EQ(converter.encodingId(), id);
  }
}

TEST(TextConverter, FailedOpenIsReportedAndNotFinal) {
  TextConverter converter;
  ASSERT_TRUE(converter.SetEncoding(11));
  EXPECT_FALSE(converter.SetEncodingByName(u"no such encoding"));
  EXPECT_EQ(messageReporter.pending().back().number, MessageNumber::kConverterNotOpened);
  EXPECT_EQ(messageReporter.pending().back().arguments[0].view(),
            u"Could not open Unicode Converter with \"no such encoding\" encoding.");
  EXPECT_TRUE(converter.converterName().isEmpty());
  EXPECT_TRUE(converter.ConvertFromWide(u"a").empty() && converter.ConvertToWide("a").empty());
  EXPECT_TRUE(converter.SetEncoding(11));
  EXPECT_EQ(converter.ConvertFromWide(u"a"), "a");
}

// Bytes from the code charts.
TEST(TextConverter, FixedBytesComeBack) {
  struct Row {
    i32 id;
    std::u16string_view text;
    std::string_view bytes;
  };
  const Row rows[] = {
      {20, u"A\u20AC\xD83D\xDE00", "A\0\xAC\x20\x3D\xD8\x00\xDE"sv},
      {1, u"A\u00E9\u0080\r\n", "A\xE9\x80\r\n"},
      {2, u"Az09 \u00E9[]\r\n", "\xC1\xA9\xF0\xF9\x40\x51\xAD\xBD\x0D\x25"},
      {11, u"A\u00E9\u20AC\xD83D\xDE00", "A\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80"},
      {14, u"A\u00E9\u20AC\u0153", "A\xE9\x80\x9C"},
      {15, u"A\u00E9\u20AC\u0141\u0104", "A\xE9\x80\xA3\xA5"},
      {13, u"A\u00E9\u0141\u0104", "A\xE9\xA3\xA1"},
      {10, u"A\u65E5\u672C\uFF71", "A\x93\xFA\x96\x7B\xB1"},
      {3, u"A\u4E2D\u6587", "A\xA4\xA4\xA4\xE5"},
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
  TextConverter shiftJis;  // a character without an exact mapping goes through its fallback
  ASSERT_TRUE(shiftJis.SetEncoding(10));
  EXPECT_EQ(shiftJis.ConvertFromWide(u"\u00A5\u2014"), "\x5C\x81\x5C");
}

TEST(TextConverter, ReplacementsOfUndecodableBytes) {
  const ReplacementPair pairs[] = {{0xFF, u'!'}, {0xE2, u'?'}};
  TextConverter converter;
  converter.setReplacements(pairs);
  ASSERT_TRUE(converter.SetEncoding(11));  // they outlive a change of encoding
  EXPECT_EQ(converter.ConvertToWide("a\xFFz\xFE\xE2\x82"), u"a!z\uFFFD?");
}

}  // namespace
}  // namespace rvf
