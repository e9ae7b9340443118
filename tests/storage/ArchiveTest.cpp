#include "storage/Archive.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <string>
#include <vector>

#include "storage/DiskFile.h"
#include "storage/RecordFrame.h"
#include "support/Bytes.h"
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

struct Value {
  int width;
  std::function<bool(eArchive&)> comesBack;
  std::function<void(eArchive&)> store;
};
template <class T>
Value value(T v, T (eArchive::*read)(), void (eArchive::*write)(T)) {
  return {sizeof(T), [=](eArchive& a) { return (a.*read)() == v; },
          [=](eArchive& a) { (a.*write)(v); }};
}
const std::vector<Value> kValues = {value<u8>(0x81, &eArchive::ReadU8, &eArchive::WriteU8),
                                    value<u16>(0x8765, &eArchive::ReadU16, &eArchive::WriteU16),
                                    value<f64>(-1.5, &eArchive::ReadF64, &eArchive::WriteF64),
                                    value<i16>(-2, &eArchive::ReadI16, &eArchive::WriteI16),
                                    value<i32>(-3, &eArchive::ReadI32, &eArchive::WriteI32),
                                    value<i64>(1LL << 40, &eArchive::ReadI64, &eArchive::WriteI64),
                                    value<u32>(~9U, &eArchive::ReadU32, &eArchive::WriteU32)};
// The bytes of these values.
ByteWriter valueBytes() {
  return ByteWriter().u8(0x81).u16(0x8765).f64(-1.5).i16(-2).i32(-3).i64(1LL << 40).u32(~9U);
}

TEST(Archive, ValuesAcrossTheEndOfEveryBuffer) {
  const std::string bytes = valueBytes().bytes + valueBytes().bytes + valueBytes().bytes;
  const auto inRounds = [](const auto& action) {
    for (int round = 0; round < 3; ++round) {
      for (const Value& v : kValues) action(v);
    }
  };
  for (i32 size = 16; size <= 60; ++size) {
    EXPECT_EQ(stored([&](eArchive& a) { inRounds([&](const Value& v) { v.store(a); }); }, size),
              bytes);
    LoadedBytes file(bytes, false, size);
    inRounds([&](const Value& v) { EXPECT_TRUE(v.comesBack(file.archive)) << size; });
    EXPECT_FALSE(file.archive.failed());
    EXPECT_EQ(file.archive.GetPosition(), static_cast<i32>(bytes.size()));
  }
}

TEST(Archive, EveryShorterFileFailsWhereItEnds) {
  const std::string bytes = valueBytes().bytes;
  for (int length = 0; length < static_cast<int>(bytes.size()); ++length) {
    for (const i32 bufferSize : {16, 64}) {
      LoadedBytes file(bytes.substr(0, static_cast<std::size_t>(length)), false, bufferSize);
      int end = 0;
      for (const Value& v : kValues) {
        const bool comesBack = v.comesBack(file.archive);
        end += v.width;
        ASSERT_EQ(file.archive.failed(), end > length) << length << ' ' << end;
        ASSERT_TRUE(comesBack || end > length);
      }
    }
  }
}

TEST(Archive, EndOfFileIsSilentAndACutValueIsDamage) {
  HeldMessages messages;
  LoadedBytes empty("");
  EXPECT_EQ(empty.archive.ReadI32(), 0);  // a new buffer is zero
  EXPECT_TRUE(empty.archive.failed());
  EXPECT_TRUE(messages.take().empty());
  LoadedBytes cut("\x11\x22");
  EXPECT_EQ(cut.archive.ReadI32() & 0xFFFF, 0x2211);
  EXPECT_TRUE(cut.archive.failed());
  cut.archive.MarkDamaged();
  EXPECT_EQ(messages.take(), std::vector{kDamaged});  // once for an archive
}

TEST(Archive, RawBytes) {
  std::string bytes;
  for (int i = 0; i < 300; ++i) bytes += static_cast<char>(i);
  for (const int count : {0, 1, 63, 64, 65, 128, 299, 300, 301, 1000}) {
    LoadedBytes file(bytes);
    std::string found(1000, '\0');
    const int expected = std::min(count, 300);
    const std::string front = bytes.substr(0, static_cast<std::size_t>(expected));
    EXPECT_EQ(file.archive.ReadRaw(found.data(), count), expected);
    EXPECT_EQ(found.substr(0, front.size()), front);
    EXPECT_FALSE(file.archive.failed());  // a short count is the caller's to test
    EXPECT_EQ(file.archive.ReadWhole(found.data(), 300), count == 0);
    EXPECT_EQ(file.archive.failed(), count != 0);
    EXPECT_EQ(stored([&](eArchive& a) { a.WriteRaw(front.data(), expected); }), front);
  }
}

TEST(Archive, StringForms) {
  for (const std::size_t length : {0U, 1U, 254U, 255U, 65533U, 65534U, 70000U}) {
    std::u16string text;
    for (std::size_t i = 0; i < length; ++i) text += static_cast<char16_t>(u'a' + i % 26);
    const ByteWriter marked = ByteWriter().wideString(text), unmarked = ByteWriter().string(text);
    EXPECT_EQ(stored([&](eArchive& a) { a.WriteString(eString(std::u16string_view(text))); }),
              marked.bytes);
    for (const ByteWriter* form : {&marked, &unmarked}) {
      for (const bool isWide : {false, true}) {
        LoadedBytes file(form->bytes, isWide);
        eString found(u"before");
        file.archive.ReadString(found);
        EXPECT_EQ(file.archive.GetPosition(), form->size());
        EXPECT_FALSE(file.archive.failed());
        ASSERT_EQ(found.length(), static_cast<i32>(length));
        if (form == &marked || !isWide) {
          EXPECT_EQ(found.view(), text);
          continue;
        }
        // Bytes packed into the front of the characters, zeroes behind them.
        std::string packed = unmarked.bytes.substr(unmarked.bytes.size() - length);
        packed.resize(2 * length);
        EXPECT_EQ(std::string(reinterpret_cast<const char*>(found.c_str()), 2 * length), packed);
      }
    }
  }
}

TEST(Archive, StringsWithAZeroCharacterAndStringsThatDoNotFit) {
  struct Row {
    bool isMarked, isWide;
    std::u16string expected;
  };
  const std::u16string text = u"a\0b"s;
  for (const Row& row : {Row{true, true, text}, {true, false, u"a"}, {false, false, u"a"}}) {
    LoadedBytes file(ByteWriter(row.isMarked).string(text).bytes, row.isWide);
    eString found;
    file.archive.ReadString(found);
    EXPECT_EQ(found.view(), row.expected);
  }
  for (const std::string& bytes : {"\x05"s + "abcd", "\xFF\xFE\xFF\x02"s + "abc",
                                   "\xFF\xFF\xFF\xFF\xFF\xFF\x7F"s, "\xFF\xFE\xFF"s, "\xFF"s}) {
    for (const bool isWide : {false, true}) {
      LoadedBytes file(bytes, isWide);
      eString found(u"before");
      file.archive.ReadString(found);
      EXPECT_TRUE(file.archive.failed());
      EXPECT_EQ(found.view(), u"before");
    }
  }
  LoadedBytes negative("\xFF\xFF\xFF\xFF\xFF\xFF\xFF\x77"s);
  eString found(u"before");
  negative.archive.ReadString(found);
  EXPECT_TRUE(found.isEmpty());
  EXPECT_EQ(negative.archive.ReadU8(), 0x77);
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

TEST(Archive, ASeekThatTheFileRefuses) {
  const test::TempFolder folder;
  eDiskFile file;
  ASSERT_TRUE(file.Open(fromNative(folder.write("f", "12345678")), open_flags::kRead, false));
  for (const i32 offset : {-1, -5, kLowest}) {
    HeldMessages messages;
    eArchive archive(file, eArchive::Mode::kLoad, 64);
    EXPECT_EQ(archive.Seek(offset), -1);
    EXPECT_TRUE(archive.failed());
    EXPECT_EQ(messages.takeNumbers(), std::vector{1911});
  }
}

TEST(Archive, CountsAreCheckedAgainstTheFile) {
  struct Row {
    i64 count;
    i32 smallest, expected;
    bool failed;
  };
  for (const Row& row : {Row{25, 4, 25, false},
                         {26, 4, 0, true},
                         {101, 1, 0, true},
                         {0, 1000, 0, false},
                         {-1, 1, 0, false},
                         {i64{1} << 40, 1, 0, true}}) {
    HeldMessages messages;
    LoadedBytes file(std::string(104, 'x'));
    file.archive.Skip(4);
    EXPECT_EQ(file.archive.CheckedCount(row.count, row.smallest), row.expected) << row.count;
    EXPECT_EQ(file.archive.CheckedCount(1, 1), row.failed ? 0 : 1);
    EXPECT_EQ(messages.take(), std::vector(row.failed ? 1U : 0U, kDamaged));
  }
}

TEST(RecordFrame, EndOfARecord) {
  struct Row {
    int base, tag;
    test::Sections unknown;
    bool wrongMark = false;
  };
  const std::vector<Row> rows = {
      {100, 100, {}},           {100, -100, {}},
      {100, 101, {}},           {100, 102, {"ten bytes."}},
      {-101, -101, {}},         {-101, -102, {}},
      {-101, -103, {"a"}},      {106, -107, {"x"}},
      {106, kLowest, {}},       {100, 104, {"a", "", std::string(70000, 'b')}},
      {100, 102, {"ab"}, true}, {-101, -102, {}, true}};
  for (const Row& row : rows) {
    ByteWriter w;
    w.endRecord(row.tag, row.base, row.unknown);
    if (row.wrongMark) w.bytes.back() ^= 1;
    w.u8(0x77);
    HeldMessages messages;
    LoadedBytes file(w.bytes);
    eRecordFrame frame(row.base);
    frame.BeginRecord();
    frame.fileTag = row.tag;
    frame.EndRecord(file.archive);
    EXPECT_EQ(file.archive.failed(), row.wrongMark);
    EXPECT_TRUE(row.wrongMark || file.archive.ReadU8() == 0x77) << row.tag;
    EXPECT_TRUE(messages.take().empty());
  }
}

TEST(RecordFrame, SectionsThatAreKnown) {
  constexpr int kAnySize = -1;
  constexpr auto kAbsent = SectionResult::kAbsent, kPresent = SectionResult::kPresent,
                 kFailed = SectionResult::kFailed;
  const auto section = [](int number, int size) { return ByteWriter().i32(number, size).bytes; };
  struct Row {
    int tag, number, fixedSize;
    std::string bytes;
    SectionResult expected;
  };
  const std::vector<Row> rows = {
      {101, 102, kAnySize, "", kAbsent},
      {102, 102, kAnySize, section(102, 4), kPresent},
      {-102, 102, kAnySize, section(102, 4), kPresent},
      {102, 102, kAnySize, section(102, 0), kAbsent},
      {102, 102, kAnySize, section(102, -4), kAbsent},
      {102, 102, kAnySize, section(103, 4), kFailed},
      {102, 102, kAnySize, "", kFailed},
      {104, 103, kAnySize, section(103, 4), kFailed},  // 102 stands before it
      {101, 102, 0, "", kAbsent},
      {102, 102, 0, section(102, 0), kPresent},
      {102, 102, 4, section(102, 5), kFailed},
      {102, 102, 0, section(101, 0), kFailed},
  };
  for (const Row& row : rows) {
    HeldMessages messages;
    LoadedBytes file(row.bytes);
    eRecordFrame frame(100);
    frame.BeginRecord();
    frame.fileTag = row.tag;
    EXPECT_EQ(row.fixedSize == kAnySize
                  ? frame.ReadSection(file.archive, row.number)
                  : frame.ReadFixedSection(file.archive, row.fixedSize, row.number),
              row.expected);
    EXPECT_EQ(file.archive.failed(), row.expected == kFailed);
    EXPECT_EQ(messages.take(), std::vector(row.expected == kFailed ? 1U : 0U, kDamaged));
    EXPECT_TRUE(row.expected == kFailed || file.archive.BytesLeft() == 0);
  }
}

TEST(RecordFrame, MeasuredSectionsComeBack) {
  const std::string block(5000, 'z');
  const auto content = [&](eArchive& a) {
    a.WriteRaw(block.data(), 5000);
    a.WriteString(eString(u"text"));
    Report(MessageNumber::kInvalidPartType, u"measured in silence, stored aloud");
  };
  HeldMessages messages;
  const std::string bytes = stored([&](eArchive& a) {
    eRecordFrame frame(100);
    frame.BeginRecord();
    a.WriteI32(103);
    frame.WriteMeasuredSection(a, 102, content);
    frame.WriteFixedSection(a, 1, 103);
    a.WriteU8(9);
    frame.WriteEndMark(a);
  });
  EXPECT_EQ(messages.takeNumbers(), std::vector{9000});
  ByteWriter expected(true);
  expected.i32(103, 102, 5000 + 12).raw(block).string(u"text").i32(103, 1).u8(9);
  EXPECT_EQ(bytes, expected.u32(test::kEndMark).bytes);
  eCountingArchive counting;
  content(counting);
  EXPECT_EQ(counting.CountedBytes(), 5012);
}

TEST(Archive, AWriteThatFailsIsToldOnce) {
  eDiskFile file;
  ASSERT_TRUE(file.Open(u"/dev/full", open_flags::kWrite | open_flags::kUnbuffered, false));
  HeldMessages messages;
  {
    eArchive archive(file, eArchive::Mode::kStore, 64);
    archive.WriteRaw(std::string(64, 'x').data(), 64);
    EXPECT_FALSE(archive.failed());
    for (int i = 0; i < 100; ++i) archive.WriteI32(i);
    EXPECT_TRUE(archive.failed());
    archive.WriteRaw(std::string(1000, 'x').data(), 1000);
  }
  EXPECT_EQ(messages.take(), std::vector{"1811 /dev/full|No space left on device|64"s});
}

TEST(Archive, WhatIsStoredBehindItsCloseIsDropped) {
  eMemFile file(16);
  eArchive archive(file, eArchive::Mode::kStore, 16);
  archive.WriteI32(1);
  archive.Close();
  for (int i = 0; i < 100; ++i) archive.WriteI64(i);
  archive.WriteRaw(std::string(1000, 'x').data(), 1000);
  EXPECT_EQ(file.GetLength(), 4);
}

/// A file of 100 bytes whose reads end with an error behind the first 40, and all writes.
class BrokenFile final : public FileObject {
 public:
  bool IsMemory() const override { return false; }
  i64 GetLength() override { return 100; }
  i32 Tell() override { return position_; }
  i32 GetPos(i64&) override { return -1; }
  i32 SetPos(i64) override { return -1; }
  void SetLength(i32) override {}
  bool Open(const eString&, i32, bool) override { return false; }
  i32 Write(const void*, i32) override { return errorState_ = true, 0; }
  i32 Seek(i32 offset, SeekOrigin) override { return position_ = offset; }
  i32 Read(void* destination, i32 count) override {
    const i32 got = std::min(count, std::max(40 - position_, 0));
    std::memset(destination, 'x', static_cast<std::size_t>(got));
    errorState_ = got < count;
    position_ += got;
    return got;
  }
  void Close() override {}

 private:
  i32 position_ = 0;
};

TEST(Archive, AnErrorOfTheFileIsNotItsEnd) {
  std::string bytes(100, '\0');
  BrokenFile broken;
  eArchive archive(broken, eArchive::Mode::kLoad, 16);
  EXPECT_EQ(archive.ReadRaw(bytes.data(), 32), 32);
  EXPECT_FALSE(archive.failed());
  EXPECT_EQ(archive.ReadRaw(bytes.data(), 68), 8);
  EXPECT_TRUE(archive.failed());
  eArchive storing(broken, eArchive::Mode::kStore, 16);
  storing.WriteI32(1);
  storing.Flush();
  EXPECT_TRUE(storing.failed());
  // Nobody may read a process's memory at address 0, so the system refuses.
  eDiskFile file;
  if (!file.Open(u"/proc/self/mem", open_flags::kRead, false)) GTEST_SKIP();
  HeldMessages messages;
  eArchive refused(file, eArchive::Mode::kLoad, 64);
  EXPECT_EQ(refused.ReadRaw(bytes.data(), 10), 0);
  EXPECT_TRUE(refused.failed());
  EXPECT_EQ(messages.take(), std::vector{"1822 64|/proc/self/mem|Input/output error"s});
}

}  // namespace
}  // namespace rvf
