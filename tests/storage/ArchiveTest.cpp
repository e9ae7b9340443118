#include "storage/Archive.h"

#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <functional>
#include <limits>
#include <vector>

#include "storage/DiskFile.h"
#include "storage/RecordFrame.h"
#include "support/Bytes.h"
#include "support/FailingFile.h"
#include "support/LoadedBytes.h"
#include "support/Reporting.h"
#include "support/TempFolder.h"

namespace rvf {
namespace {

using test::ByteWriter;
using test::HeldMessages;
using test::LoadedBytes;
using namespace std::string_literals;

const std::string kDamaged = "9042 Exception in eArchive class.";
constexpr int kLowest = std::numeric_limits<int>::min();

/// What a store writes, through a buffer of this size.
std::string stored(const std::function<void(eArchive&)>& store, i32 bufferSize = 64) {
  eMemFile file(16);
  eArchive archive(file, eArchive::Mode::kStore, bufferSize);
  store(archive);
  archive.Close();
  return {reinterpret_cast<const char*>(file.data()), static_cast<std::size_t>(file.Tell())};
}

TEST(Archive, ValuesAcrossTheEndOfEveryBufferAndOfTheFile) {
  std::string bytes;
  for (int i = 0; i < 60; ++i) bytes += static_cast<char>(0x77 * i);
  for (int length = 0; length <= 60; ++length) {
    for (const i32 bufferSize : {16, 17, 19, 23, 64}) {
      LoadedBytes file(bytes.substr(0, static_cast<std::size_t>(length)), false, bufferSize);
      eArchive& a = file.archive;
      const char* end = bytes.data();
      const auto expect = [&](auto value) {
        end += sizeof(value);
        ASSERT_EQ(a.failed(), end - bytes.data() > length);
        ASSERT_TRUE(a.failed() || std::memcmp(&value, end - sizeof(value), sizeof(value)) == 0);
      };
      for (int i = 0; i < 2; ++i) {
        expect(a.ReadU8());
        expect(a.ReadU16());
        expect(a.ReadF64());
        expect(a.ReadI16());
        expect(a.ReadI32());
        expect(a.ReadI64());
        expect(a.ReadU32());
      }
    }
  }
}

TEST(Archive, EndOfFileIsSilentAndACutValueIsDamage) {
  HeldMessages messages;
  LoadedBytes empty(""), cut("\x11\x22");
  EXPECT_EQ(empty.archive.ReadI32(), 0);  // a new buffer is zero
  EXPECT_TRUE(empty.archive.failed() && messages.take().empty());
  EXPECT_EQ(cut.archive.ReadI32() & 0xFFFF, 0x2211);
  cut.archive.MarkDamaged();
  EXPECT_EQ(messages.take(), std::vector{kDamaged});  // once for an archive
}

TEST(Archive, RawBytes) {
  std::string bytes;
  for (int i = 0; i < 300; ++i) bytes += static_cast<char>(i);
  for (const int count : {0, 1, 63, 64, 65, 128, 299, 300, 301, 1000}) {
    LoadedBytes file(bytes);
    std::string found(1000, '\0');
    const std::string front = bytes.substr(0, static_cast<std::size_t>(count));
    EXPECT_EQ(file.archive.ReadRaw(found.data(), count), static_cast<i32>(front.size()));
    EXPECT_EQ(found.substr(0, front.size()), front);
    EXPECT_FALSE(file.archive.failed());  // a short count is the caller's to test
    EXPECT_EQ(file.archive.ReadWhole(found.data(), 300), count == 0);
    EXPECT_EQ(file.archive.failed(), count != 0);
  }
}

/// What ReadString makes of "before", and whether the archive has failed, and what comes behind.
struct ReadText {
  eString text = u"before";
  bool failed;
  i32 next;
  ReadText(const std::string& bytes, bool isWide) {
    LoadedBytes file(bytes, isWide);
    file.archive.ReadString(text);
    failed = file.archive.failed();
    next = file.archive.ReadU8();
  }
};

TEST(Archive, StringForms) {
  for (const std::size_t length : {0U, 1U, 254U, 255U, 65533U, 65534U, 70000U}) {
    std::u16string text;
    for (std::size_t i = 0; i < length; ++i) text += static_cast<char16_t>(u'a' + i % 26);
    const std::string marked = ByteWriter().wideString(text).bytes;
    EXPECT_EQ(stored([&](eArchive& a) { a.WriteString(eString(std::u16string_view(text))); }),
              marked);
    const std::string unmarked = ByteWriter().string(text).bytes;
    for (const auto& [bytes, isWide] :
         {std::pair{marked, true}, {marked, false}, {unmarked, false}}) {
      const ReadText read(bytes + "w", isWide);
      ASSERT_TRUE(read.text.view() == text) << length;
      EXPECT_TRUE(!read.failed && read.next == 'w');
    }
  }
  // Bytes in a file of wide text stay packed in the front of the characters, with zeroes behind.
  EXPECT_EQ(ReadText("\5abcde", true).text.view(), u"\x6261\x6463\x65\0\0"s);
  const std::u16string zero = u"a\0b"s;
  EXPECT_EQ(ReadText(ByteWriter(true).string(zero).bytes, true).text.view(), zero);
  EXPECT_EQ(ReadText(ByteWriter(true).string(zero).bytes, false).text.view(), u"a");
  EXPECT_EQ(ReadText(ByteWriter(false).string(zero).bytes, false).text.view(), u"a");
  for (const bool isWide : {false, true}) {
    for (const std::string& cut : {"\x05"s + "abcd", "\xFF\xFE\xFF\x02"s + "abc", "\xFF"s,
                                   "\xFF\xFF\xFF\xFF\xFF\xFF\x7F"s, "\xFF\xFE\xFF"s}) {
      const ReadText read(cut, isWide);
      EXPECT_TRUE(read.failed && read.text.view() == u"before");
    }
    const ReadText negative("\xFF\xFF\xFF\xFF\xFF\xFF\xFFw"s, isWide);
    EXPECT_TRUE(negative.text.isEmpty() && !negative.failed && negative.next == 'w');
  }
}

TEST(Archive, SeekForthAndBack) {
  ByteWriter w;
  for (int i = 0; i < 200; ++i) w.i32(i);
  eMemFile file(reinterpret_cast<std::byte*>(w.bytes.data()), w.size(), 0);
  for (int pass = 0; pass < 2; ++pass) {  // one archive after the other on the same file
    eArchive archive(file, eArchive::Mode::kLoad, 64);
    for (const int index : {0, 1, 150, 15, 16, 17, 199, 0, 14, 100}) {
      EXPECT_EQ(archive.Seek(4 * index), 4 * index);
      EXPECT_EQ(archive.GetPosition(), 4 * index);
      EXPECT_EQ(archive.BytesLeft(), 800 - 4 * index);
      EXPECT_EQ(archive.ReadI32(), index);
    }
    archive.Skip(4 * 20);
    EXPECT_EQ(archive.ReadI32(), 121);
    EXPECT_EQ(archive.Seek(5000), 5000);  // behind the end: nothing fails yet
    EXPECT_FALSE(archive.failed());
    archive.Skip(1);
    EXPECT_TRUE(archive.failed());
    archive.Seek(40);
    EXPECT_EQ(archive.ReadI32(), 10);
    EXPECT_TRUE(archive.failed());  // for good
  }
  file.Seek(-8, SeekOrigin::kEnd);
  eArchive fromPosition(file, eArchive::Mode::kLoad, 64);
  EXPECT_EQ(fromPosition.BytesLeft(), 8);
  EXPECT_EQ(fromPosition.ReadI32(), 198);
}

TEST(Archive, CountsAreCheckedAgainstTheFile) {
  constexpr i64 kHuge = i64{1} << 40;
  const std::array<i64, 3> rows[] = {
      // count, size of the smallest item, items to read
      {25, 4, 25}, {26, 4, 0}, {101, 1, 0}, {0, 1000, 0}, {-1, 1, 0}, {kHuge, 1, 0}};
  for (const auto& [count, smallest, expected] : rows) {
    const bool fails = count > 0 && expected == 0;
    HeldMessages messages;
    LoadedBytes file(std::string(104, 'x'));
    file.archive.Skip(4);
    EXPECT_EQ(file.archive.CheckedCount(count, static_cast<i32>(smallest)), expected) << count;
    EXPECT_EQ(file.archive.CheckedCount(1, 1), fails ? 0 : 1);
    EXPECT_EQ(messages.take(), std::vector(fails ? 1U : 0U, kDamaged));
  }
}

TEST(RecordFrame, EndOfARecord) {
  const test::Sections sections = {"ten bytes.", "", std::string(70000, 'b')};
  const std::array<int, 3> rows[] = {
      // base, tag, sections that are not known
      {100, 100, 0},   {100, -100, 0},  {100, 101, 0},  {100, 102, 1},     {-101, -101, 0},
      {-101, -102, 0}, {-101, -103, 1}, {106, -107, 1}, {106, kLowest, 0}, {100, 104, 3}};
  for (const auto& [base, tag, count] : rows) {
    ByteWriter w;
    w.endRecord(tag, base, {sections.begin(), sections.begin() + count});
    for (const bool isDamaged : {false, true}) {
      if (isDamaged && w.bytes.empty()) continue;
      if (isDamaged) w.bytes.back() ^= 1;
      HeldMessages messages;
      LoadedBytes file(w.bytes + "w");
      eRecordFrame frame(base);
      frame.BeginRecord();
      frame.fileTag = tag;
      frame.EndRecord(file.archive);
      EXPECT_EQ(file.archive.failed(), isDamaged) << tag;
      EXPECT_EQ(file.archive.ReadU8(), 'w') << tag;
      EXPECT_TRUE(messages.take().empty());
    }
  }
}

TEST(RecordFrame, SectionsThatAreKnown) {
  constexpr int kAny = -1, kNone = 0;
  constexpr int kAbsent = static_cast<int>(SectionResult::kAbsent),
                kPresent = static_cast<int>(SectionResult::kPresent),
                kFailed = static_cast<int>(SectionResult::kFailed);
  // The tag; the section and its size that are looked for, and those that are there; the result.
  const std::array<int, 6> rows[] = {
      {101, 102, kAny, kNone, 0, kAbsent}, {102, 102, kAny, 102, 4, kPresent},
      {-102, 102, kAny, 102, 4, kPresent}, {102, 102, kAny, 102, 0, kAbsent},
      {102, 102, kAny, 102, -4, kAbsent},  {102, 102, kAny, 103, 4, kFailed},
      {102, 102, kAny, kNone, 0, kFailed}, {104, 103, kAny, 103, 4, kFailed},
      {101, 102, 0, kNone, 0, kAbsent},    {102, 102, 0, 102, 0, kPresent},
      {102, 102, 4, 102, 5, kFailed},      {102, 102, 0, 101, 0, kFailed}};
  for (const auto& [tag, number, fixedSize, foundNumber, foundSize, expected] : rows) {
    HeldMessages messages;
    LoadedBytes file(ByteWriter().put(foundNumber == kNone ? 0 : 4, foundNumber, foundSize).bytes);
    eRecordFrame frame(100);
    frame.BeginRecord();
    frame.fileTag = tag;
    const SectionResult result = fixedSize == kAny
                                     ? frame.ReadSection(file.archive, number)
                                     : frame.ReadFixedSection(file.archive, fixedSize, number);
    EXPECT_EQ(static_cast<int>(result), expected);
    EXPECT_EQ(file.archive.failed(), expected == kFailed);
    EXPECT_EQ(messages.take(), std::vector(expected == kFailed ? 1U : 0U, kDamaged));
    EXPECT_TRUE(expected == kFailed || file.archive.BytesLeft() == 0);
  }
}

TEST(RecordFrame, BytesOfStoredSections) {
  const std::string block(5000, 'z');
  HeldMessages messages;
  const std::string bytes = stored([&](eArchive& a) {
    eRecordFrame frame(100);
    frame.BeginRecord();
    frame.WriteMeasuredSection(a, 102, [&](eArchive& section) {
      section.WriteRaw(block.data(), 5000);
      section.WriteString(eString(u"text"));
      Report(MessageNumber::kInvalidPartType, u"measured in silence, stored aloud");
    });
    frame.WriteFixedSection(a, 1, 103);
    frame.WriteEndMark(a);
  });
  EXPECT_EQ(messages.takeNumbers(), std::vector{9000});
  ByteWriter expected(true);
  expected.i32(102, 5000 + 12).raw(block).string(u"text").i32(103, 1).u32(test::kEndMark);
  EXPECT_EQ(bytes, expected.bytes);
}

TEST(Archive, AnErrorOfTheFileIsNotItsEndAndToldOnce) {
  std::string bytes(100, 'x');
  for (const bool isLoad : {true, false}) {
    for (int at = 1; at <= 10; ++at) {
      test::FailingFile file(bytes, at, false);
      eArchive archive(file, isLoad ? eArchive::Mode::kLoad : eArchive::Mode::kStore, 16);
      if (isLoad) {
        EXPECT_TRUE(archive.ReadRaw(bytes.data(), 100) == 100 || archive.failed());
      } else {
        for (int i = 0; i < 20; ++i) archive.WriteI32(i);
        archive.Flush();
      }
      EXPECT_EQ(archive.failed(), file.hasFailed()) << at;
    }
  }
  HeldMessages messages;
  eDiskFile full, unreadable;
  ASSERT_TRUE(full.Open(u"/dev/full", open_flags::kWrite | open_flags::kUnbuffered, false));
  {
    eArchive archive(full, eArchive::Mode::kStore, 64);
    archive.WriteRaw(bytes.data(), 64);
    EXPECT_FALSE(archive.failed());
    for (int i = 0; i < 100; ++i) archive.WriteI32(i);
    EXPECT_TRUE(archive.failed());
    archive.WriteRaw(bytes.data(), 100);
  }
  EXPECT_EQ(messages.take(), std::vector{"1811 /dev/full|No space left on device|64"s});
  const test::TempFolder folder;
  eDiskFile file;
  ASSERT_TRUE(file.Open(fromNative(folder.write("f", "12345678")), open_flags::kRead, false));
  for (const i32 offset : {-1, kLowest}) {
    eArchive archive(file, eArchive::Mode::kLoad, 64);
    EXPECT_EQ(archive.Seek(offset), -1);
    EXPECT_TRUE(archive.failed());
    EXPECT_EQ(messages.takeNumbers(), std::vector{1911});
  }
  // Nobody may read a process's memory at address 0, so the system refuses.
  if (!unreadable.Open(u"/proc/self/mem", open_flags::kRead, false)) GTEST_SKIP();
  eArchive refused(unreadable, eArchive::Mode::kLoad, 64);
  EXPECT_EQ(refused.ReadRaw(bytes.data(), 10), 0);
  EXPECT_TRUE(refused.failed());
  EXPECT_EQ(messages.take(), std::vector{"1822 64|/proc/self/mem|Input/output error"s});
}

TEST(Archive, WhatIsStoredBehindItsCloseIsDropped) {
  const auto store = [](eArchive& a) {
    a.setWideStrings(false);
    a.WriteString(u"a");  // two bytes a character all the same, without a mark
    a.Close();
    for (int i = 0; i < 100; ++i) a.WriteI64(i);
    a.WriteRaw(kDamaged.data(), 20);
  };
  EXPECT_EQ(stored(store), "\1a\0"s);
}

}  // namespace
}  // namespace rvf
