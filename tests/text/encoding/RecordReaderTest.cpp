#include "text/encoding/RecordReader.h"

#include <gtest/gtest.h>

#include <array>

#include "storage/MemFile.h"
#include "support/FailingFile.h"
#include "support/Reporting.h"
#include "text/NativeText.h"

namespace rvf {
namespace {

using namespace std::string_literals;

using Records = std::vector<std::u16string>;

/// The records, followed by the text of the error that ended the reading.
Records readAll(std::string bytes, i32 encoding, i32 limit = 32767) {
  eMemFile file(reinterpret_cast<std::byte*>(bytes.data()), static_cast<i32>(bytes.size()), 0);
  RecordReader reader;
  reader.Attach(&file);
  EXPECT_TRUE(reader.Open(u"", encoding, limit));
  Records records;
  const char16_t* text = nullptr;
  for (i32 length = 0; reader.ReadRecord(text, length) >= 0;) {
    records.emplace_back(text, static_cast<std::size_t>(length));
  }
  eString error;
  EXPECT_EQ(reader.GetErrorText(error) >= 9000, reader.hasFailed());
  if (reader.hasFailed()) records.emplace_back(error.view());
  return records;
}
const Records kWrongMark = {u"Incorrect Byte-Order Mark Found in UTF Encoded File"};
const Records kTooLong = {u"Internal Buffer Full - End of Record Not Found"};

/// The text in encoding 20, 21 or else UTF-8.
std::string encoded(std::u16string_view text, i32 encoding) {
  std::string bytes;
  for (const char16_t c : text) {
    const char low = static_cast<char>(c), high = static_cast<char>(c >> 8);
    bytes += encoding == 20 ? std::string{low, high} : std::string{high, low};
  }
  return encoding == 20 || encoding == 21 ? bytes : toNative(text);
}

/// The records of a text that is in memory as a whole.
Records recordsOf(std::u16string text) {
  Records records;
  while (!text.empty()) {
    const std::size_t end = text.find(u'\n');
    records.push_back(text.substr(0, end));
    if (end != text.npos && records.back().ends_with(u'\r')) records.back().pop_back();
    text.erase(0, end == text.npos ? end : end + 1);
  }
  return records;
}

TEST(RecordReader, EveryEndAtEveryPlaceOfTheBuffer) {
  const std::u16string ends[] = {
      u"", u"\n", u"\r\n\r\n\n\u00E9\r", u"a\rb\r\r\nc\r", u"\0\n\0"s,
      // Each holds the bytes of a line end, in one order or the other, without being one.
      u"\u0A0A\u0D0A\u010A\u0A01\u0D0D\n\u0A00\u0D00"};
  for (const std::size_t start : {0U, 2042U, 4090U, 16378U}) {
    for (std::size_t length = start; length < start + 12; ++length) {
      for (const std::u16string& end : ends) {
        const std::u16string text = std::u16string(length, u'x') + end;
        for (const i32 encoding : {11, 20, 21}) {
          EXPECT_EQ(readAll(encoded(text, encoding), encoding), recordsOf(text)) << length;
        }
      }
    }
  }
  // Half a character at the end is completed.
  EXPECT_EQ(readAll("a\0\n"s, 20), Records{u"a"});
  EXPECT_EQ(readAll("\xFE\xFF\0a\1"s, 20), Records{u"a\u0100"});
}

TEST(RecordReader, Marks) {
  const std::string marks[] = {"", "\xFF\xFE", "\xFE\xFF", "\xEF\xBB\xBF"};
  const std::pair<i32, std::array<i32, 4>> rows[] = {
      // the selected encoding, and the file's according to its mark; 0: none
      {12, {20, 20, 21, 0}},
      {20, {20, 20, 21, 0}},
      {21, {21, 20, 21, 0}},
      {11, {11, 0, 0, 11}}};
  for (const auto& [selected, found] : rows) {
    for (std::size_t i = 0; i < std::size(marks); ++i) {
      // A mark in the middle is a character.
      EXPECT_EQ(readAll(marks[i] + encoded(u"a\r\n\uFEFFb", found[i]), selected),
                found[i] == 0 ? kWrongMark : (Records{u"a", u"\uFEFFb"}));
      EXPECT_EQ(readAll(marks[i], selected), found[i] == 0 ? kWrongMark : Records{});
    }
  }
  EXPECT_EQ(readAll("\xFF\xFE", 30), Records{u"\u00FF\u00FE"});
}

TEST(RecordReader, RecordsUpToTheLimit) {
  for (const auto& [encoding, character] :
       {std::pair{30, u"x"}, {11, u"\u20AC"}, {20, u"\u20AC"}, {-2, u"x"}}) {
    for (const i32 limit : {1, 5000, 32767}) {
      const std::u16string longest(static_cast<std::size_t>(limit), character[0]);
      for (const std::u16string end : {u"", u"\r\n"}) {
        EXPECT_EQ(readAll(encoded(longest + end, encoding), encoding, limit), Records{longest});
        EXPECT_EQ(readAll(encoded(longest + character + end, encoding), encoding, limit), kTooLong);
      }
    }
  }
  EXPECT_EQ(readAll(std::string(1000000, 'x'), 30), kTooLong);
}

// The reader's state after each record: its position, the position of the next, the code, the
// warning.
TEST(RecordReader, StateAfterEachRecord) {
  const auto states = [](std::string bytes, i32 encoding) {
    test::FailingFile file(bytes, bytes == "?" ? 1 : test::FailingFile::kNever, false);
    TextConverter output;
    RecordReader reader;
    reader.Attach(&file);
    reader.setOutputConverter(&output);
    EXPECT_TRUE(reader.Open(u"", encoding, 9000) && reader.isOpen() && !reader.AtEnd());
    const char16_t* text = nullptr;
    std::string all;
    eString warning;
    for (i32 length = 0; length >= 0;) {
      length = reader.ReadRecord(text, length);
      all += std::to_string(reader.recordPosition()) + "-" + std::to_string(reader.position()) +
             (reader.AtEnd() ? "." : ":") + std::to_string(reader.GetWarningText(warning));
      all += toNative(warning.view()) + " ";
    }
    i32 lengthAtEnd = 7;
    EXPECT_EQ(reader.ReadRecord(text, lengthAtEnd), -1);
    EXPECT_EQ(lengthAtEnd, 0);
    EXPECT_EQ(reader.outputConverter(), &output);
    return all + std::to_string(reader.encoding()) + " " + std::to_string(output.encodingId());
  };
  const std::string cut = "8002Truncated Character Found in UTF-8 File ";
  EXPECT_EQ(states("\xEF\xBB\xBF"
                   "a\r\n\nbc",
                   11),
            "3-6:1 6-7:0 7-9.0 7-9.0 11 -1");
  EXPECT_EQ(states("\xFE\xFF\0a\0\n\0b"s, 12), "2-6:1 6-8.0 6-8.0 21 21");
  EXPECT_EQ(states(std::string(5000, 'x') + "\ny\n", 30), "0-5001:1 5001-5003.0 5001-5003.0 30 -1");
  EXPECT_EQ(states("a\xE2\x82\nb\xE2\x82", 11), "0-4:1 4-7." + cut + "4-7.0 11 -1");
  EXPECT_EQ(states("a\n\x81", 10), "0-2:1 2-3.0 2-3.0 10 -1");
  EXPECT_EQ(states("", 11), "0-0.1 11 -1");
  EXPECT_EQ(states("?", 30), "0-0.9002 30 -1");  // the read fails
}

TEST(RecordReader, OpenedByNameOrId) {
  const test::HeldMessages messages;
  using Row = std::tuple<const char16_t*, i32, std::string>;
  for (const auto& [name, id, expected] :
       {Row{u"", 12, "0 20 1 "}, Row{u"", 10, "0 10 1 "}, Row{u"UTF-16", 11, "0 20 1 "},
        Row{u"hz", 11, "0 -1 1 "}, Row{u"", -2, "0 -2 1 "}, Row{u"", 9, "0 9 5 shifts "},
        Row{u"", 17, "0 17 2 shifts \x0E\x0F"}, Row{u"ibm-939", 11, "0 19 2 shifts \x0E\x0F"},
        Row{u"", 28, "9004Unable to Open ICU Library 28 JEF 3 shifts ()"},
        Row{u"jips", 1, "9004Unable to Open ICU Library 1 4 shifts \x1Aq\x1Ap"}}) {
    RecordReader reader;
    EXPECT_EQ(reader.Open(name, id, 10), expected[0] == '0');
    eString error;
    const i32 code = reader.GetErrorText(error);
    const ShiftBytes shift = shiftBytes(reader.shiftClass());
    EXPECT_EQ(std::to_string(code) + toNative(error.view()) + " " +
                  std::to_string(reader.encoding()) + (reader.isJefEncoding() ? " JEF " : " ") +
                  std::to_string(static_cast<i32>(reader.shiftClass())) +
                  (reader.hasShiftBytes() ? " shifts " : " ") + std::string(shift.toDouble) +
                  std::string(shift.toSingle),
              expected);
  }
}

TEST(RecordReader, JefCleaning) {
  const auto cleaned = [](std::string record) {
    cleanJefRecord(record);
    return record;
  };
  EXPECT_EQ(cleaned("\x30\xFE\xA2x\x30\xFE\xFEy\x30\xFE\xA1"), "xy\x30\xFE\xA1");
  EXPECT_EQ(cleaned("\x30\x30\xF5\xF5\x30"), "\x30\xF5\x30");  // the scan does not go back
  // In double-byte text, the scan takes every second byte, starting after the shift.
  EXPECT_EQ(cleaned("\x38z\x30\xF5z\x30\x28\x29\x38z\x29\x30\xF5z\x28\x30\xF5z"),
            "\x28zz\x30\x28\x29\x28z\x29z\x28\x30\xF5z");
  std::string removed;  // bytes that make a control sequence after 0x30
  for (int byte = 0; byte < 256; ++byte) {
    if (cleaned({'\x30', static_cast<char>(byte)}).empty()) removed += static_cast<char>(byte);
  }
  EXPECT_EQ(removed,
            "\xB0\xB1\xB2\xB5\xC0\xC1\xC4\xC5\xC6\xC7\xE0\xE1\xE2\xE4\xE5\xE6\xE7\xF5\xF6\xF7\xF8");
}

}  // namespace
}  // namespace rvf
