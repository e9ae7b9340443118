#include "text/RecordReader.h"

#include <gtest/gtest.h>

#include "storage/DiskFile.h"
#include "storage/MemFile.h"
#include "support/Reporting.h"
#include "support/TempFolder.h"

namespace rvf {
namespace {

using namespace std::string_literals;

using Records = std::vector<std::u16string>;
constexpr i32 kWrongMark = record_error::kWrongMark, kTooLong = record_error::kRecordTooLong;

struct Result {
  Records records{};
  i32 error = 0, encoding = 0;
};

Result readAll(FileObject& file, i32 encoding, i32 limit = 32767) {
  RecordReader reader;
  reader.Attach(&file);
  EXPECT_TRUE(reader.Open(u"", encoding, limit));
  Result result;
  const char16_t* text = nullptr;
  for (i32 length = 0; reader.ReadRecord(text, length) >= 0;) {
    result.records.emplace_back(text, static_cast<std::size_t>(length));
  }
  result.error = reader.GetErrorCode();
  result.encoding = reader.encoding();
  EXPECT_TRUE(reader.AtEnd() || result.error >= record_error::kFirstFatal);
  return result;
}

Result readBytes(std::string bytes, i32 encoding, i32 limit = 32767) {
  eMemFile file(reinterpret_cast<std::byte*>(bytes.data()), static_cast<i32>(bytes.size()), 0);
  return readAll(file, encoding, limit);
}

/// The text as an encoding of these has it: 20, 21 or UTF-8.
std::string encoded(std::u16string_view text, i32 encoding) {
  std::string bytes;
  for (const char16_t c : text) {
    const char low = static_cast<char>(c), high = static_cast<char>(c >> 8);
    bytes += encoding == 20 ? std::string{low, high} : std::string{high, low};
  }
  return encoding == 20 || encoding == 21 ? bytes : toNative(text);
}

TEST(RecordReader, Endings) {
  const std::pair<std::u16string, Records> rows[] = {
      {u"", {}},
      {u"\n", {u""}},
      {u"a\nb\n", {u"a", u"b"}},
      {u"a\r\n\r\n\nb", {u"a", u"", u"", u"b"}},
      {u"a\rb\r\r\nc\r", {u"a\rb\r", u"c\r"}},  // a carriage return alone is a character
      {u"\0\n\0"s, {u"\0"s, u"\0"s}},
      // Each holds the bytes of a line end, in one order or the other, without being one.
      {u"\u0A0A\u0D0A\u010A\u0A01\u0D0D\n\u0A00\u0D00",
       {u"\u0A0A\u0D0A\u010A\u0A01\u0D0D", u"\u0A00\u0D00"}},
  };
  for (const auto& [text, records] : rows) {
    for (const i32 encoding : {11, 20, 21}) {
      EXPECT_EQ(readBytes(encoded(text, encoding), encoding).records, records) << toNative(text);
    }
  }
  // Half a character at the end is made whole.
  EXPECT_EQ(readBytes("a\0b"s, 20).records, (Records{u"ab"}));
  EXPECT_EQ(readBytes("a\0\n"s, 20).records, (Records{u"a"}));
  EXPECT_EQ(readBytes("\xFE\xFF\0a\1"s, 20).records, (Records{u"a\u0100"}));
}

// Wherever a line end falls within the chunks of the buffer, and wherever the file ends.
TEST(RecordReader, LineEndsAtEveryPlaceOfTheBuffer) {
  for (const std::size_t base : {6U, 2048U, 4096U, 8192U, 16384U}) {
    for (std::size_t length = base - 6; length < base + 6; ++length) {
      const std::u16string text(length, u'x');
      for (const i32 encoding : {11, 20, 21}) {
        EXPECT_EQ(readBytes(encoded(text + u"\r\n\r\n\u00E9\r", encoding), encoding).records,
                  (Records{text, u"", u"\u00E9\r"}));
        EXPECT_EQ(readBytes(encoded(text + u"\n", encoding), encoding).records, Records{text});
      }
    }
  }
}

TEST(RecordReader, Marks) {
  const auto check = [](const std::string& mark, i32 selected, i32 encoding, i32 error = 0) {
    // A mark in the middle is a character.
    const Result result = readBytes(mark + encoded(u"a\r\n\uFEFFb", encoding), selected);
    EXPECT_EQ(result.encoding, encoding);
    EXPECT_EQ(result.records, error == 0 ? (Records{u"a", u"\uFEFFb"}) : Records{});
    EXPECT_TRUE(result.error == error || result.error == record_error::kShortRead);
    EXPECT_EQ(readBytes(mark, selected).records, Records{});
    EXPECT_EQ(readBytes(mark, 30).records.size(), mark.empty() ? 0U : 1U);  // none there
  };
  const std::string little = "\xFF\xFE", big = "\xFE\xFF", utf8 = "\xEF\xBB\xBF";
  for (const i32 selected : {12, 20, 21}) {
    const i32 unmarked = selected == 12 ? 20 : selected;
    check("", selected, unmarked);
    check(little, selected, 20);
    check(big, selected, 21);
    check(utf8, selected, unmarked, kWrongMark);
  }
  check("", 11, 11);
  check(utf8, 11, 11);
  check(little, 11, 11, kWrongMark);
  check(big, 11, 11, kWrongMark);
}

TEST(RecordReader, RecordsUpToTheLimit) {
  const std::pair<i32, std::u16string> rows[] = {
      {30, u"x"}, {11, u"\u20AC"}, {20, u"\u20AC"}, {-2, u"x"}};
  for (const auto& [encoding, character] : rows) {
    for (const std::size_t limit : {1U, 5000U, 32767U}) {
      const std::u16string longest(limit, character[0]);
      const auto result = [&, id = encoding](const std::u16string& text) {
        return readBytes(encoded(text, id), id, static_cast<i32>(limit));
      };
      EXPECT_EQ(result(longest).records, Records{longest});
      EXPECT_EQ(result(longest + u"\r\n").records, Records{longest});
      EXPECT_EQ(result(longest + character).error, kTooLong);
      EXPECT_EQ(result(longest + character + u"\r\n").error, kTooLong);
    }
  }
  EXPECT_EQ(readBytes("\n\n", 30, 0).records, (Records{u"", u""}));
  EXPECT_EQ(readBytes("a\n", 30, -1000).error, kTooLong);
  EXPECT_EQ(readBytes(std::string(1000000, 'x'), 30).error, kTooLong);
}

TEST(RecordReader, FailingReadIsNotTheEndOfTheFile) {
  const test::TempFolder folder;
  test::HeldMessages messages;
  eDiskFile file;
  ASSERT_TRUE(file.Open(fromNative(folder.path("w")), open_flags::kWrite, false));
  EXPECT_EQ(readAll(file, 11).error, record_error::kCorruptData);  // it is open for writing only
  EXPECT_EQ(messages.takeNumbers(), std::vector{1822});
}

TEST(RecordReader, JefCleaning) {
  const std::pair<std::string, std::string> rows[] = {
      {"\x38 ab", "\x28 ab"},
      {"\x30\xF4x\x30\xF5x\x30\xF8y\x30\xF9", "\x30\xF4xxy\x30\xF9"},
      {"\x30\xE3\x30\xE7\x30\xE0\x30\xB0\x30\xB5\x30\xB3", "\x30\xE3\x30\xB3"},
      {"\x30\xC0\x30\xC2\x30\xC4\x30\xC8", "\x30\xC2\x30\xC8"},
      {"\x30\xFE\xA2x\x30\xFE\xFEy\x30\xFE\xA1", "xy\x30\xFE\xA1"},
      {"\x30\xFE", "\x30\xFE"},
      {"\x30\x30\xF5\xF5\x30", "\x30\xF5\x30"},  // a removal does not bring the walk back
      // In double-byte text the walk takes every second byte, from the shift on.
      {"\x28z\x30\xF5z\x30", "\x28zz\x30"},
      {"\x28\x30\xF5z", "\x28\x30\xF5z"},
      {"\x28\x29\x38z\x29\x30\xF5z", "\x28\x29\x28z\x29z"}};
  for (const auto& [bytes, cleaned] : rows) {
    std::string record = bytes;
    cleanJefRecord(record);
    EXPECT_EQ(record, cleaned);
  }
}

}  // namespace
}  // namespace rvf
