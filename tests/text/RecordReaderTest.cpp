#include "text/RecordReader.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "messages/MessageReporter.h"
#include "storage/DiskFile.h"
#include "storage/MemFile.h"
#include "support/TempFolder.h"
#include "text/NativeText.h"

namespace rvf {
namespace {

using namespace std::string_literals;
using namespace std::string_view_literals;

using Records = std::vector<std::u16string>;

struct Result {
  Records records;
  i32 error = 0;
  bool atEnd = false;
  i32 encoding = 0;
};

Result readAll(FileObject& file, i32 encoding, i32 limit = 32767, const char16_t* name = u"") {
  RecordReader reader;
  reader.Attach(&file);
  Result result;
  if (reader.Open(name, encoding, limit)) {
    const char16_t* text = nullptr;
    i32 length = 0;
    while (reader.ReadRecord(text, length) >= 0) {
      result.records.emplace_back(text, static_cast<std::size_t>(length));
    }
  }
  result.error = reader.GetErrorCode();
  result.atEnd = reader.AtEnd();
  result.encoding = reader.encoding();
  return result;
}

Result readBytes(std::string bytes, i32 encoding, i32 limit = 32767, const char16_t* name = u"") {
  eMemFile file(reinterpret_cast<std::byte*>(bytes.data()), static_cast<i32>(bytes.size()), 0);
  return readAll(file, encoding, limit, name);
}

std::string utf16(std::u16string_view text, bool bigEndian) {
  std::string bytes;
  for (const char16_t c : text) {
    const std::string pair{static_cast<char>(c & 0xFF), static_cast<char>(c >> 8)};
    bytes += bigEndian ? std::string(pair.rbegin(), pair.rend()) : pair;
  }
  return bytes;
}

TEST(RecordReader, Endings) {
  struct Row {
    std::u16string text;
    Records records;
  };
  const Row rows[] = {
      {u"", {}},
      {u"\n", {u""}},
      {u"a", {u"a"}},
      {u"a\nb\n", {u"a", u"b"}},
      {u"a\r\n\r\n\nb", {u"a", u"", u"", u"b"}},
      {u"a\rb\r\r\nc\r", {u"a\rb\r", u"c\r"}},  // a carriage return alone is a character
      {u"\0\n\0"s, {u"\0"s, u"\0"s}},
      // Each holds the bytes of a line end, in one order or the other, without being one.
      {u"\u0A0A\u0D0A\u010A\u0A01\u0D0D\n\u0A00\u0D00",
       {u"\u0A0A\u0D0A\u010A\u0A01\u0D0D", u"\u0A00\u0D00"}},
  };
  for (const Row& row : rows) {
    for (const bool bigEndian : {false, true}) {
      const Result result = readBytes(utf16(row.text, bigEndian), bigEndian ? 21 : 20);
      EXPECT_EQ(result.records, row.records) << toNative(row.text);
      EXPECT_TRUE(result.atEnd);
      EXPECT_LT(result.error, record_error::kFirstFatal);
    }
    EXPECT_EQ(readBytes(toNative(row.text), 11).records, row.records) << toNative(row.text);
  }
}

TEST(RecordReader, Marks) {
  struct Row {
    std::string start;
    i32 selected;
    bool bigEndian;  // the text behind the mark
    i32 encoding;
    i32 error;
  };
  constexpr i32 kGood = record_error::kNone;
  const Row rows[] = {
      {"\xFF\xFE", 20, false, 20, kGood},
      {"\xFE\xFF", 20, true, 21, kGood},
      {"\xFF\xFE", 21, false, 20, kGood},
      {"\xFE\xFF", 21, true, 21, kGood},
      {"\xFF\xFE", 12, false, 20, kGood},
      {"\xFE\xFF", 12, true, 21, kGood},
      {"", 12, false, 20, kGood},
      {"", 21, true, 21, kGood},
      {"\xEF\xBB\xBF", 20, false, 20, record_error::kWrongMark},
      {"\xEF\xBB\xBF", 21, false, 21, record_error::kWrongMark},
  };
  for (const Row& row : rows) {
    const Result result = readBytes(row.start + utf16(u"a\r\nb\n", row.bigEndian), row.selected);
    EXPECT_EQ(result.error, row.error);
    EXPECT_EQ(result.encoding, row.encoding);
    EXPECT_EQ(result.records, row.error == kGood ? (Records{u"a", u"b"}) : Records{});
  }
  EXPECT_EQ(readBytes("\xEF\xBB\xBF"
                      "a\n\xEF\xBB\xBF"
                      "b",
                      11)
                .records,
            (Records{u"a",
                     u"\uFEFF"
                     u"b"}));
  EXPECT_EQ(readBytes("\xEF\xBB\xBF", 11).records, Records{});
  EXPECT_EQ(readBytes("\xFF\xFE", 20).records, Records{});
  EXPECT_EQ(readBytes("\xEF\xBB", 11).records.size(), 1U);
  for (const char* mark : {"\xFE\xFF"
                           "a",
                           "\xFF\xFE"
                           "a",
                           "\xFF\xFE"}) {
    EXPECT_EQ(readBytes(mark, 11).error, record_error::kWrongMark);
    EXPECT_EQ(readBytes(mark, 30).error, record_error::kNone);  // no mark in Latin-1
  }
  EXPECT_EQ(readBytes("\xEF\xBB\xBF"
                      "a",
                      30)
                .records,
            (Records{u"\u00EF\u00BB\u00BF"
                     u"a"}));
}

TEST(RecordReader, HalfACharacterIsMadeWhole) {
  EXPECT_EQ(readBytes("a\0b"s, 20).records, (Records{u"ab"}));
  EXPECT_EQ(readBytes("a\0\n"s, 20).records, (Records{u"a"}));
  EXPECT_EQ(readBytes("\0a\1"s, 21).records, (Records{u"a\u0100"}));
  EXPECT_EQ(readBytes("\xFE\xFF\0a\1"s, 20).records, (Records{u"a\u0100"}));
  EXPECT_EQ(readBytes("a", 20).records, (Records{u"a"}));
}

// Wherever a line end falls within the chunks of the buffer, and wherever the file ends.
TEST(RecordReader, LineEndsAtEveryPlaceOfTheBuffer) {
  for (const std::size_t base : {0U, 4096U, 8192U, 16384U}) {
    for (std::size_t shift = 0; shift < 12; ++shift) {
      const std::size_t length = base + 6 < shift ? 0 : base + 6 - shift;
      const std::u16string first(length, u'x');
      const std::u16string text = first + u"\r\n\r\n\u00E9\r";
      const Records expected = {first, u"", u"\u00E9\r"};
      EXPECT_EQ(readBytes(toNative(text), 11).records, expected) << length;
      EXPECT_EQ(readBytes(toNative(first) + "\n", 11).records, Records{first}) << length;
      if (length % 2 == 0) {
        const std::u16string half(length / 2, u'x');
        for (const bool bigEndian : {false, true}) {
          EXPECT_EQ(readBytes(utf16(u"\uFEFF" + half + u"\r\n\r\n\u00E9\r", bigEndian), 20).records,
                    (Records{half, u"", u"\u00E9\r"}))
              << length;
        }
      }
    }
  }
}

TEST(RecordReader, RecordsUpToTheLimit) {
  struct Row {
    i32 encoding;
    std::u16string character;
  };
  for (const Row& row : {Row{30, u"x"}, {11, u"\u20AC"}, {20, u"\u20AC"}, {-2, u"x"}}) {
    for (const i32 limit : {1, 5000, 32767}) {
      for (const std::string end : {"", "\r\n"}) {
        const auto record = [&](i32 length) {
          std::u16string text;
          for (i32 i = 0; i < length; ++i) text += row.character;
          const std::u16string ended = text + std::u16string(end.begin(), end.end());
          return row.encoding == 20 ? utf16(ended, false) : toNative(ended);
        };
        const Result longest = readBytes(record(limit), row.encoding, limit);
        ASSERT_EQ(longest.records.size(), 1U) << row.encoding << ' ' << limit;
        EXPECT_EQ(longest.records[0].size(), static_cast<std::size_t>(limit));
        const Result tooLong = readBytes(record(limit + 1), row.encoding, limit);
        EXPECT_EQ(tooLong.records.size(), 0U) << row.encoding << ' ' << limit;
        EXPECT_EQ(tooLong.error, record_error::kRecordTooLong);
      }
    }
  }
  EXPECT_EQ(readBytes(std::string(1000000, 'x'), 30).error, record_error::kRecordTooLong);
  EXPECT_EQ(readBytes("\n\n", 30, 0).records, (Records{u"", u""}));
  EXPECT_EQ(readBytes("a\n", 30, -1000).error, record_error::kRecordTooLong);
}

TEST(RecordReader, FailingReadIsNotTheEndOfTheFile) {
  const test::TempFolder folder;
  eDiskFile file;
  ASSERT_TRUE(file.Open(fromNative(folder.path("w")), open_flags::kWrite, false));
  const Result result = readAll(file, 11);  // a file for writing cannot be read
  EXPECT_EQ(result.records, Records{});
  EXPECT_EQ(result.error, record_error::kCorruptData);
  EXPECT_EQ(messageReporter.pending().back().number, MessageNumber::kFileReadFailed);
}

TEST(RecordReader, JefCleaning) {
  struct Row {
    std::string bytes;
    std::string cleaned;
  };
  const Row rows[] = {
      {"", ""},
      {"abc", "abc"},
      {"\x38"
       "ab",
       "\x28"
       "ab"},
      {"\x30\xF5x\x30\xF8y", "xy"},
      {"\x30\xF4x", "\x30\xF4x"},
      {"\x30\xE3\x30\xE7\x30\xE0", "\x30\xE3"},
      {"\x30\xB0\x30\xB5\x30\xB3", "\x30\xB3"},
      {"\x30\xC0\x30\xC2\x30\xC4\x30\xC8", "\x30\xC2\x30\xC8"},
      {"\x30\xFE\xA2x\x30\xFE\xFEy", "xy"},
      {"\x30\xFE\xA1", "\x30\xFE\xA1"},
      {"\x30\xFE", "\x30\xFE"},
      {"x\x30", "x\x30"},
      {"\x30\x30\xF5\xF5", "\x30\xF5"},  // a removal does not bring the walk back
      // In double-byte text the walk takes every second byte, from the shift on.
      {"\x28"
       "a\x30\xF5"
       "b",
       "\x28"
       "a"
       "b"},
      {"\x28\x30\xF5"
       "b",
       "\x28\x30\xF5"
       "b"},
      {"\x28"
       "a\x29\x30\xF5"
       "b",
       "\x28"
       "a\x29"
       "b"},
      {"\x28\x29\x38"
       "a\x38",
       "\x28\x29\x28"
       "a\x28"},
  };
  for (const Row& row : rows) {
    std::string record = row.bytes;
    cleanJefRecord(record);
    EXPECT_EQ(record, row.cleaned);
  }
}

}  // namespace
}  // namespace rvf
