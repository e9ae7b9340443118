#include "storage/Archive.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <cstring>
#include <limits>

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
      for (int i = 0; i < 4; ++i) {
        expect(a.ReadU8());
        expect(a.ReadU16());
        expect(a.ReadF64());
        expect(a.ReadI32());
      }
    }
  }
  HeldMessages messages;
  LoadedBytes cut("\x11\x22"), whole("\x11\x22");
  EXPECT_TRUE(!whole.archive.ReadWhole(bytes.data(), 3) && whole.archive.failed());
  EXPECT_EQ(cut.archive.ReadI32() & 0xFFFF, 0x2211);
  EXPECT_EQ(messages.take(), std::vector{"9042 Exception in eArchive class."s});
}

/// What ReadString makes of "before", and what follows.
std::u16string readText(const std::string& bytes, bool isWide) {
  LoadedBytes file(bytes, isWide);
  eString text = u"before";
  file.archive.ReadString(text);
  const std::u16string behind(1, static_cast<char16_t>(file.archive.ReadU8()));
  return std::u16string(text.view()) + (file.archive.failed() ? u" failed" : u"|" + behind);
}

template <class Store>
std::string storedBy(const Store& store) {
  eMemFile file(16);
  eArchive archive(file, eArchive::Mode::kStore, 64);
  store(archive);
  archive.Close();
  return {reinterpret_cast<const char*>(file.data()), static_cast<std::size_t>(file.GetLength())};
}

std::string stored(std::u16string_view text, bool isWide) {
  return storedBy([&](eArchive& archive) {
    archive.setWideStrings(isWide);
    archive.WriteString(eString(text));
  });
}

TEST(Archive, StringForms) {
  for (const std::size_t length : {0U, 1U, 254U, 255U, 65533U, 65534U, 70000U}) {
    const std::u16string text(length, u'a');
    const std::string marked = ByteWriter(true).string(text).bytes + "w";
    EXPECT_EQ(stored(text, true) + "w", marked);
    EXPECT_TRUE(readText(marked, true) == text + u"|w") << length;
    EXPECT_TRUE(readText(marked, false) == text + u"|w") << length;
    EXPECT_TRUE(readText(ByteWriter().string(text).bytes + "w", false) == text + u"|w") << length;
  }
  EXPECT_EQ(stored(u"a", false), "\1a\0"s);  // quirk: two bytes per character, without a marker
  const std::array<std::u16string, 2> bothFail = {u"before failed", u"before failed"};
  const std::pair<std::string, std::array<std::u16string, 2>> rows[] = {
      // bytes, text of a narrow and of a wide file
      {"\3a\0bw"s, {u"a|w", u"ab\0|w"s}},  // packed into the front of the characters
      {"\5abcdew", {u"abcde|w", u"\x6261\x6463\x65\0\0|w"s}},
      {"\xFF\xFE\xFF\3a\0\0\0b\0w"s, {u"a|w", u"a\0b|w"s}},
      {"\xFF\xFF\xFF\xFF\xFF\xFF\xFFw", {u"|w", u"|w"}},  // a negative count
      {"\5abcd", bothFail},
      {"\xFF\xFE\xFF\2abc", bothFail},
      {"\xFF\xFF\xFF\xFF\xFF\xFF\x7F", bothFail},
      {"\xFF", bothFail}};
  for (const auto& [bytes, texts] : rows) {
    EXPECT_EQ(readText(bytes, false), texts[0]);
    EXPECT_EQ(readText(bytes, true), texts[1]);
  }
}

TEST(Archive, SeekBackAndForth) {
  ByteWriter w;
  for (int i = 0; i < 200; ++i) w.i32(i);
  eMemFile file(reinterpret_cast<std::byte*>(w.bytes.data()), w.size(), 0);
  for (int pass = 0; pass < 2; ++pass) {  // one archive after the other on the same file
    eArchive archive(file, eArchive::Mode::kLoad, 64);
    for (const int index : {0, 1, 150, 15, 16, 17, 199, 0, 14, 100}) {
      EXPECT_EQ(archive.Seek(4 * index), 4 * index);
      EXPECT_EQ(archive.GetPosition(), 4 * index);
      EXPECT_EQ(archive.bytesLeft(), 800 - 4 * index);
      EXPECT_EQ(archive.ReadI32(), index);
    }
    archive.skip(4 * 20);
    EXPECT_EQ(archive.ReadI32(), 121);
    EXPECT_TRUE(archive.Seek(5000) == 5000 && !archive.failed());  // beyond the end
    archive.skip(1);
    EXPECT_TRUE(archive.failed());
    archive.Seek(40);
    EXPECT_TRUE(archive.ReadI32() == 10 && archive.failed());  // permanently
  }
}

TEST(RecordFrame, EndAfterUnknownSections) {
  constexpr int kLowest = std::numeric_limits<int>::min();
  const test::Sections sections = {"ten bytes.", "", std::string(70000, 'b')};
  for (const auto& [base, tag, count] : {std::array{100, 100, 0},
                                         {100, -100, 0},
                                         {-101, -102, 0},
                                         {106, -107, 1},
                                         {106, kLowest, 0},
                                         {100, 104, 3}}) {
    ByteWriter w;
    w.endRecord(tag, base, {sections.begin(), sections.begin() + count});
    LoadedBytes file(w.bytes + "w");
    eRecordFrame frame(base);
    frame.BeginRecord();
    frame.fileTag = tag;
    frame.EndRecord(file.archive);
    EXPECT_TRUE(file.archive.ReadU8() == 'w' && !file.archive.failed()) << tag;
  }
}

TEST(RecordFrame, KnownSections) {
  struct Row {
    int tag, number, foundNumber, foundSize;
    SectionResult result, fixedResult;  // fixed: of 4 bytes
  };
  using enum SectionResult;
  const Row rows[] = {
      {101, 102, 102, 4, kAbsent, kAbsent},  {-102, 102, 102, 4, kPresent, kPresent},
      {102, 102, 102, 0, kAbsent, kFailed},  {102, 102, 102, 5, kPresent, kFailed},
      {102, 102, 102, -4, kAbsent, kFailed}, {102, 102, 102, 3, kPresent, kFailed},
      {102, 102, 103, 4, kFailed, kFailed},  {104, 103, 103, 4, kFailed, kFailed}};
  for (const Row& row : rows) {
    for (const bool isFixed : {false, true}) {
      LoadedBytes file(ByteWriter().i32(row.foundNumber, row.foundSize).bytes);
      eRecordFrame frame(100);
      frame.BeginRecord();
      frame.fileTag = row.tag;
      const SectionResult result = isFixed ? frame.ReadFixedSection(file.archive, 4, row.number)
                                           : frame.ReadSection(file.archive, row.number);
      EXPECT_EQ(result, isFixed ? row.fixedResult : row.result);
      EXPECT_EQ(file.archive.failed(), result == kFailed);
    }
  }
}

TEST(RecordFrame, MeasuredSections) {
  for (const i32 length : {0, 5, 4096, 10000}) {
    const std::string raw(static_cast<std::size_t>(length), 'r');
    HeldMessages messages;
    const auto content = [&](eArchive& part) {
      part.WriteRaw(raw.data(), length);
      if (length == 5) part.WriteString(eString(u"\x100"));
      Report(MessageNumber::kArchiveDamaged, u"name");  // heard in the second pass only
    };
    const std::string bytes = storedBy([&](eArchive& archive) {
      eRecordFrame frame(100);
      frame.BeginRecord();
      frame.writeMeasuredSection(archive, 101, content);
      frame.writeEndMark(archive);
    });
    const std::string expected = raw + (length == 5 ? "\xFF\xFE\xFF\1\0\1"s : "");
    EXPECT_EQ(bytes, ByteWriter().i32(101).i32(expected.size()).bytes + expected +
                         ByteWriter().i32(kEndMark).bytes)
        << length;
    EXPECT_EQ(messages.takeNumbers(), std::vector{9042}) << length;
  }
}

TEST(Archive, AnErrorOfTheFileIsNotItsEnd) {
  std::string bytes(100, 'x');
  for (const auto mode : {eArchive::Mode::kLoad, eArchive::Mode::kStore}) {
    for (int at = 1; at <= 10; ++at) {
      test::FailingFile file(bytes, at, false);
      eArchive archive(file, mode, 16);
      if (archive.isLoading()) {
        EXPECT_TRUE(archive.ReadRaw(bytes.data(), 100) == 100 || archive.failed());
      } else {
        archive.WriteRaw(bytes.data(), 90);
        archive.Flush();
      }
      EXPECT_EQ(archive.failed(), file.hasFailed()) << at;
    }
  }
  // A process's memory at address 0 cannot be read, so the system refuses.
  HeldMessages messages;
  eDiskFile file;
  ASSERT_TRUE(file.Open(u"/proc/self/mem", open_flags::kRead, FileContent::kBinary));
  eArchive refused(file, eArchive::Mode::kLoad, 64);
  EXPECT_TRUE(refused.ReadRaw(bytes.data(), 10) == 0 && refused.failed());
  EXPECT_EQ(messages.take(), std::vector{"1822 64|/proc/self/mem|Input/output error"s});
}

TEST(Archive, OpensItsOwnFile) {
  const test::TempFolder folder;
  const eString path = fromNative(folder.path("f"));
  HeldMessages messages;
  {
    eArchive out(path, eArchive::Mode::kStore, 16);
    for (int i = 0; i < 10; ++i) out.WriteI32(i);
    EXPECT_EQ(out.storeCount64(), 32);
  }
  eArchive in(path, eArchive::Mode::kLoad, 16);
  for (int i = 0; i < 10; ++i) EXPECT_EQ(in.ReadI32(), i);
  EXPECT_EQ(in.loadPosition(), 40);
  const int next = ::dup(STDERR_FILENO);
  ::close(next);
  eArchive lost(path, eArchive::Mode::kStore, 16);
  ::close(next);
  lost.Close();
  eArchive none(u"none/f", eArchive::Mode::kLoad, 16);
  EXPECT_TRUE(none.ReadI32() == 0 && none.failed() && none.Seek(0) == 0);
  EXPECT_EQ(messages.take(), (std::vector{"1814 " + toNative(path.view()) + "|Bad file descriptor",
                                          "1810 none/f|No such file or directory"s}));
}

std::string readAll(FileObject& file, i32 count) {
  std::string bytes(static_cast<std::size_t>(count), '\0');
  bytes.resize(static_cast<std::size_t>(file.Read(bytes.data(), count)));
  return bytes;
}

TEST(FileObject, ReadsSeeksAndRefuses) {
  const test::TempFolder folder;
  const std::string path = folder.write("f", "0123456789");
  HeldMessages messages;
  std::string block = "0123456789";
  eMemFile memory(reinterpret_cast<std::byte*>(block.data()), 10, 0);
  eDiskFile disk;
  ASSERT_TRUE(disk.Open(fromNative(path), open_flags::kRead, FileContent::kBinary));
  for (FileObject* file : {static_cast<FileObject*>(&disk), static_cast<FileObject*>(&memory)}) {
    EXPECT_EQ(readAll(*file, 4), "0123");
    EXPECT_TRUE(file->GetLength() == 10 && file->Tell() == 4);
    EXPECT_EQ(readAll(*file, 10), "456789");
    EXPECT_FALSE(file->errorState());
    EXPECT_EQ(file->Seek(2, SeekOrigin::kStart), 2);
    EXPECT_EQ(file->Seek(-1, SeekOrigin::kCurrent), 1);
    EXPECT_EQ(file->Seek(-3, SeekOrigin::kEnd), 7);
    EXPECT_EQ(readAll(*file, 2), "78");
    EXPECT_EQ(file->Seek(50, SeekOrigin::kStart), 50);
    EXPECT_EQ(readAll(*file, 2), "");
    EXPECT_EQ(file->Seek(-1, SeekOrigin::kStart), -1);
  }
  EXPECT_TRUE(disk.Write("XY", 2) == 0 && disk.errorState());
  disk.Close();
  disk.Close();
  EXPECT_EQ(messages.take(), (std::vector{"1911 " + path, "1823 2|" + path + "|Bad file descriptor",
                                          "1847 " + path}));
  EXPECT_THROW(memory.Write("x", 1), eMemException);
  // The inherited operation opens a stream for archives and leaves the block alone.
  ASSERT_TRUE(memory.Open(fromNative(path), open_flags::kRead, FileContent::kBinary));
  block[0] = 'm';
  memory.Seek(0, SeekOrigin::kStart);
  EXPECT_EQ(readAll(memory, 2), "m1");
  EXPECT_EQ(eArchive(memory, eArchive::Mode::kLoad, 64).ReadU8(), '0');
  EXPECT_TRUE(memory.openMode() == u'r' && !memory.isDirty());
  eMemFile grown(16);
  grown.Write("abc", 3);
  const std::unique_ptr<std::byte[]> detached = grown.Detach();
  EXPECT_EQ(std::memcmp(detached.get(), "abc", 3), 0);
  EXPECT_EQ(grown.data(), nullptr);
  EXPECT_EQ(grown.GetLength(), 0);
}

}  // namespace
}  // namespace rvf
