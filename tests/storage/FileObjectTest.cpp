#include <gtest/gtest.h>

#include <cerrno>

#include "storage/Archive.h"
#include "storage/DiskFile.h"
#include "storage/MemFile.h"
#include "support/Reporting.h"
#include "support/TempFolder.h"

namespace rvf {
namespace {

using namespace std::string_literals;

constexpr auto kStart = SeekOrigin::kStart, kCurrent = SeekOrigin::kCurrent,
               kEnd = SeekOrigin::kEnd;

std::string readAll(FileObject& file, i32 count) {
  std::string bytes(static_cast<std::size_t>(count), '\0');
  bytes.resize(static_cast<std::size_t>(file.Read(bytes.data(), count)));
  return bytes;
}

TEST(DiskFile, OpenFlags) {
  struct Row {
    i32 flags;
    bool exists;
    std::string afterWriting;  // "XY" onto "content"; empty: a write fails; "-": the open fails
  };
  constexpr i32 kCreate = open_flags::kCreate, kAppend = open_flags::kAppend;
  const Row rows[] = {{open_flags::kRead, true, ""},
                      {open_flags::kRead, false, "-"},
                      {3, true, "-"},
                      {open_flags::kWrite, true, "XY"},
                      {open_flags::kWrite, false, "XY"},
                      {open_flags::kReadWrite, true, "XYntent"},
                      {kCreate, true, "XY"},
                      {kCreate | kAppend, true, "contentXY"}};
  for (const Row& row : rows) {
    const test::TempFolder folder;
    const std::string path = folder.path("f");
    if (row.exists) folder.write("f", "content");
    test::HeldMessages messages;
    eDiskFile file;
    ASSERT_EQ(file.Open(fromNative(path), row.flags, false), row.afterWriting != "-") << row.flags;
    if (!file.isOpen()) continue;
    const bool canWrite = !row.afterWriting.empty();
    EXPECT_EQ(file.Write("XY", 2), canWrite ? 1 : 0);  // items, not bytes
    EXPECT_EQ(file.errorState(), !canWrite);
    file.Close();
    EXPECT_EQ(messages.take(),
              std::vector(canWrite ? 0U : 1U, "1823 2|" + path + "|Bad file descriptor"));
    EXPECT_EQ(folder.read("f"), canWrite ? row.afterWriting : "content");
  }
}

TEST(DiskFile, ReadSeekAndLength) {
  const test::TempFolder folder;
  test::HeldMessages messages;
  eDiskFile file;
  EXPECT_EQ(readAll(file, 5), "");  // closed
  EXPECT_TRUE(file.errorState());
  ASSERT_TRUE(file.Open(fromNative(folder.write("f", "0123456789")), open_flags::kRead, false));
  EXPECT_EQ(readAll(file, 4), "0123");
  EXPECT_TRUE(file.GetLength() == 10 && file.Tell() == 4);
  EXPECT_EQ(readAll(file, 10), "456789");
  EXPECT_TRUE(file.atEnd() && !file.errorState());
  EXPECT_EQ(file.Seek(2, kStart), 2);  // the end that was met does not stick
  EXPECT_EQ(readAll(file, 2), "23");
  EXPECT_FALSE(file.atEnd());
  EXPECT_EQ(file.Seek(-1, kCurrent), 3);
  EXPECT_EQ(file.Seek(-3, kEnd), 7);
  EXPECT_EQ(file.Seek(50, kStart), 50);
  i64 position = 0;
  EXPECT_TRUE(file.SetPos(9) == 0 && file.GetPos(position) == 0 && position == 9);
  EXPECT_TRUE(messages.take().empty());
  EXPECT_EQ(file.Seek(-1, kStart), -1);
  file.Close();
  file.Close();
  EXPECT_EQ(messages.takeNumbers(), (std::vector{1911, 1847}));
}

TEST(DiskFile, RefusalsAndLosses) {
  const test::TempFolder folder;
  test::HeldMessages messages;
  eDiskFile file;
  EXPECT_FALSE(file.Open(fromNative(folder.path().string()), open_flags::kWrite, false));
  EXPECT_EQ(errno, EISDIR);
  EXPECT_FALSE(file.Open(fromNative(folder.path("none/f")), open_flags::kWrite, false));
  EXPECT_EQ(errno, ENOENT);
  EXPECT_TRUE(messages.take().empty());  // what a failed open means is the caller's affair
  ASSERT_TRUE(file.Open(u"/dev/full", open_flags::kWrite, false));
  EXPECT_EQ(file.Write("x", 1), 1);  // it still is in the stream's buffer
  file.Close();
  EXPECT_EQ(messages.take(), std::vector{"1848 /dev/full|No space left on device"s});
  EXPECT_FALSE(file.isOpen());
}

TEST(DiskFile, NothingReadBeforeSurvivesAnOpenOrAWrite) {
  const test::TempFolder folder;
  eDiskFile file;
  const auto firstBytes = [&file] {
    eArchive archive(file, eArchive::Mode::kLoad, 64);
    archive.Seek(0);
    return archive.ReadU16();
  };
  ASSERT_TRUE(file.Open(fromNative(folder.write("a", "aa")), open_flags::kRead, false));
  EXPECT_EQ(firstBytes(), 0x6161);
  constexpr i32 kFlags = open_flags::kReadWrite | open_flags::kUnbuffered;
  ASSERT_TRUE(file.Open(fromNative(folder.write("b", "bbbb")), kFlags, false));
  EXPECT_EQ(firstBytes(), 0x6262);
  file.Seek(1, kStart);
  file.Write("c", 1);
  EXPECT_EQ(firstBytes(), 0x6362);
  EXPECT_FALSE(file.Open(fromNative(folder.path("none")), open_flags::kRead, false));
  EXPECT_FALSE(file.isOpen());
}

TEST(MemFile, GrowsByDoubling) {
  eMemFile file(10);
  EXPECT_EQ(file.Write("0123456789", 10) + file.capacity(), 20);
  EXPECT_EQ(file.Write("a", 1) + file.capacity(), 21);
  EXPECT_EQ(file.Write(std::string(50, 'b').data(), 50) + file.capacity(), 130);
  EXPECT_EQ(file.Seek(100, kStart), 100);
  EXPECT_EQ(readAll(file, 5), "");
  EXPECT_EQ(file.GetLength(), 61);
  file.Write("end", 3);  // over a gap
  EXPECT_EQ(file.Seek(-4, kEnd), 99);
  EXPECT_EQ(file.Seek(-100, kCurrent), -1);
  EXPECT_EQ(file.Seek(1, kCurrent), 100);
  EXPECT_EQ(readAll(file, 50), "end");
  file.SetLength(12);
  EXPECT_EQ(file.Tell(), 12);
  file.Close();
  EXPECT_EQ(file.GetLength() + file.capacity() + file.Tell(), 0);
}

TEST(MemFile, BlocksOfOthers) {
  std::string block = "0123456789";
  auto* bytes = reinterpret_cast<std::byte*>(block.data());
  eMemFile file(bytes, 10, 0);
  EXPECT_EQ(readAll(file, 20), "0123456789");
  EXPECT_THROW(file.Write("x", 1), eMemException);
  file.Attach(bytes, 10, 4);
  file.Write("abc", 3);
  file.Write("defghijkl", 9);  // outgrows it: from here on a block of its own
  EXPECT_EQ(block, "abc3456789");
  const auto owned = file.Detach();
  EXPECT_EQ(std::string(reinterpret_cast<const char*>(owned.get()), 12), "abcdefghijkl");
}

}  // namespace
}  // namespace rvf
