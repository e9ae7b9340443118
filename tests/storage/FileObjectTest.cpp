#include "storage/FileObject.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <string>
#include <vector>

#include "storage/Archive.h"
#include "storage/DiskFile.h"
#include "storage/MemFile.h"
#include "support/Reporting.h"
#include "support/TempFolder.h"

namespace rvf {
namespace {

using test::HeldMessages;
using test::TempFolder;
using namespace std::string_literals;

std::string readAll(FileObject& file, i32 count) {
  std::string bytes(static_cast<std::size_t>(count), '\0');
  bytes.resize(static_cast<std::size_t>(file.Read(bytes.data(), count)));
  return bytes;
}

TEST(DiskFile, OpenFlags) {
  const TempFolder folder;
  const std::string path = folder.path("f");
  struct Row {
    i32 flags;
    bool exists, opens;
    std::string afterWriting;  // "XY" onto "content"; empty: a write fails
  };
  constexpr i32 kCreate = open_flags::kCreate, kAppend = open_flags::kAppend;
  const std::vector<Row> rows = {
      {open_flags::kRead, true, true, ""},
      {open_flags::kRead, false, false, ""},
      {open_flags::kWrite, true, true, "XY"},
      {open_flags::kWrite, false, true, "XY"},
      {open_flags::kReadWrite, true, true, "XYntent"},
      {open_flags::kReadWrite, false, false, ""},
      {3, true, false, ""},
      {kCreate, true, true, "XY"},
      {kCreate | kAppend, true, true, "contentXY"},
      {kAppend, true, true, ""},  // no meaning without kCreate
  };
  for (const Row& row : rows) {
    std::filesystem::remove(path);
    if (row.exists) folder.write("f", "content");
    HeldMessages messages;
    eDiskFile file;
    ASSERT_EQ(file.Open(fromNative(path), row.flags, false), row.opens) << row.flags;
    EXPECT_EQ(file.errorState(), !row.opens);
    if (!row.opens) continue;
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
  const TempFolder folder;
  eDiskFile file;
  HeldMessages messages;
  EXPECT_EQ(readAll(file, 5), "");  // closed
  EXPECT_TRUE(file.errorState());
  i64 position = 0;
  EXPECT_EQ(file.GetPos(position), -1);
  EXPECT_EQ(file.SetPos(0), -1);
  ASSERT_TRUE(file.Open(fromNative(folder.write("f", "0123456789")), open_flags::kRead, false));
  EXPECT_EQ(readAll(file, 4), "0123");
  EXPECT_EQ(file.GetLength(), 10);
  EXPECT_EQ(file.Tell(), 4);
  EXPECT_EQ(readAll(file, 10), "456789");
  EXPECT_TRUE(file.atEnd() && !file.errorState());
  EXPECT_EQ(file.Seek(2, SeekOrigin::kStart), 2);  // the end that was met does not stick
  EXPECT_EQ(readAll(file, 2), "23");
  EXPECT_FALSE(file.atEnd());
  EXPECT_EQ(file.Seek(-1, SeekOrigin::kCurrent), 3);
  EXPECT_EQ(file.Seek(-3, SeekOrigin::kEnd), 7);
  EXPECT_EQ(file.Seek(50, SeekOrigin::kStart), 50);
  EXPECT_EQ(file.SetPos(9), 0);
  EXPECT_EQ(file.GetPos(position), 0);
  EXPECT_EQ(position, 9);
  EXPECT_TRUE(messages.take().empty());
  EXPECT_EQ(file.Seek(-1, SeekOrigin::kStart), -1);
  EXPECT_EQ(messages.takeNumbers(), std::vector{1911});
  file.Close();
  EXPECT_TRUE(messages.take().empty());
  file.Close();
  EXPECT_EQ(messages.take(), std::vector{"1847 " + folder.path("f")});
}

TEST(DiskFile, RefusalsAndLosses) {
  const TempFolder folder;
  HeldMessages messages;
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
  const TempFolder folder;
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
  file.Seek(1, SeekOrigin::kStart);
  file.Write("c", 1);
  EXPECT_EQ(firstBytes(), 0x6362);
  EXPECT_FALSE(file.Open(fromNative(folder.path("none")), open_flags::kRead, false));
  EXPECT_FALSE(file.isOpen());
}

TEST(MemFile, GrowsByDoubling) {
  eMemFile file(10);
  EXPECT_EQ(file.name().view(), u"MemoryFile");
  file.Write("0123456789", 10);
  EXPECT_EQ(file.capacity(), 10);
  file.Write("a", 1);
  EXPECT_EQ(file.capacity(), 20);
  EXPECT_EQ(file.Write(std::string(50, 'b').data(), 50), 50);
  EXPECT_EQ(file.capacity(), 80);
  EXPECT_EQ(file.Seek(100, SeekOrigin::kStart), 100);
  EXPECT_EQ(readAll(file, 5), "");
  EXPECT_EQ(file.GetLength(), 61);
  file.Write("end", 3);  // over a gap
  EXPECT_EQ(file.GetLength(), 103);
  EXPECT_EQ(file.Seek(-4, SeekOrigin::kEnd), 99);
  EXPECT_EQ(file.Seek(-100, SeekOrigin::kCurrent), -1);
  EXPECT_EQ(file.Seek(1, SeekOrigin::kCurrent), 100);
  EXPECT_EQ(readAll(file, 50), "end");
  file.SetLength(12);
  EXPECT_EQ(file.Tell(), 12);
  file.Seek(9, SeekOrigin::kStart);
  EXPECT_EQ(readAll(file, 50), "9ab");
  file.Close();
  EXPECT_EQ(file.GetLength() + file.capacity() + file.Tell(), 0);
  EXPECT_THROW(file.Write("x", 1), eMemException);
}

TEST(MemFile, BlocksOfOthers) {
  std::string block = "0123456789";
  auto* bytes = reinterpret_cast<std::byte*>(block.data());
  eMemFile file(bytes, 10, 0);
  EXPECT_EQ(readAll(file, 20), "0123456789");
  EXPECT_THROW(file.Write("x", 1), eMemException);
  EXPECT_EQ(file.Detach(), nullptr);  // it never was the file's
  file.Attach(bytes, 10, 4);
  EXPECT_EQ(file.GetLength(), 0);
  file.Write("abc", 3);
  file.Write("defghijkl", 9);  // outgrows it: from here on a block of its own
  EXPECT_EQ(block, "abc3456789");
  EXPECT_EQ(file.capacity(), 20);
  const auto owned = file.Detach();
  EXPECT_EQ(std::string(reinterpret_cast<const char*>(owned.get()), 12), "abcdefghijkl");
  EXPECT_EQ(file.GetLength() + file.capacity() + file.Tell(), 0);
}

}  // namespace
}  // namespace rvf
