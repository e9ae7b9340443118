#include "storage/FileObject.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <string>
#include <vector>

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
  struct Row {
    i32 flags;
    bool exists, opens;
    std::string afterWriting;  // "XY" onto "content"; empty: a write fails
  };
  constexpr i32 kCreate = open_flags::kCreate;
  const std::vector<Row> rows = {
      {open_flags::kRead, true, true, ""},
      {open_flags::kRead, false, false, ""},
      {open_flags::kWrite, true, true, "XY"},
      {open_flags::kWrite, false, true, "XY"},
      {open_flags::kReadWrite, true, true, "XYntent"},
      {open_flags::kReadWrite, false, false, ""},
      {3, true, false, ""},
      {kCreate, true, true, "XY"},
      {kCreate | open_flags::kAppend, true, true, "contentXY"},
      {open_flags::kAppend, true, true, ""},  // no meaning without kCreate
      {kCreate | open_flags::kAppend | open_flags::kUnbuffered, false, true, "XY"},
  };
  for (const Row& row : rows) {
    std::filesystem::remove(folder.path("f"));
    if (row.exists) folder.write("f", "content");
    HeldMessages messages;
    eDiskFile file;
    ASSERT_EQ(file.Open(fromNative(folder.path("f")), row.flags, false), row.opens) << row.flags;
    EXPECT_EQ(file.isOpen(), row.opens);
    EXPECT_EQ(file.errorState(), !row.opens);
    EXPECT_EQ(file.name(), fromNative(folder.path("f")));
    if (!row.opens) continue;
    EXPECT_EQ(file.Write("", 0), 0);
    const bool canWrite = !row.afterWriting.empty();
    EXPECT_EQ(file.Write("XY", 2), canWrite ? 1 : 0);  // items, not bytes
    EXPECT_EQ(file.errorState(), !canWrite);
    file.Close();
    const std::string path = folder.path("f");
    const auto failure = std::vector{"1823 2|" + path + "|Bad file descriptor"};
    EXPECT_EQ(messages.take(), canWrite ? std::vector<std::string>{} : failure);
    EXPECT_EQ(folder.read("f"), canWrite ? row.afterWriting : "content");
  }
}

TEST(DiskFile, ReadSeekAndLength) {
  const TempFolder folder;
  eDiskFile file;
  HeldMessages messages;
  EXPECT_EQ(readAll(file, 5), "");  // closed
  EXPECT_TRUE(file.errorState());
  EXPECT_EQ(file.Tell(), 0);
  i64 position = 0;
  EXPECT_EQ(file.GetPos(position), -1);
  EXPECT_EQ(file.SetPos(0), -1);
  ASSERT_TRUE(file.Open(fromNative(folder.write("f", "0123456789")), open_flags::kRead, false));
  EXPECT_FALSE(file.IsMemory());
  EXPECT_EQ(readAll(file, 4), "0123");
  EXPECT_EQ(file.GetLength(), 10);
  EXPECT_EQ(file.Tell(), 4);
  EXPECT_EQ(readAll(file, 10), "456789");
  EXPECT_TRUE(file.atEnd());
  EXPECT_FALSE(file.errorState());
  EXPECT_EQ(file.Seek(2, SeekOrigin::kStart), 2);  // the end that was met does not stick
  EXPECT_EQ(readAll(file, 2), "23");
  EXPECT_FALSE(file.atEnd());
  EXPECT_EQ(file.Seek(-1, SeekOrigin::kCurrent), 3);
  EXPECT_EQ(file.Seek(-3, SeekOrigin::kEnd), 7);
  EXPECT_EQ(file.Seek(50, SeekOrigin::kStart), 50);
  EXPECT_EQ(readAll(file, 1), "");
  EXPECT_EQ(file.SetPos(9), 0);
  EXPECT_EQ(file.GetPos(position), 0);
  EXPECT_EQ(position, 9);
  EXPECT_TRUE(messages.take().empty());
  EXPECT_EQ(file.Seek(-1, SeekOrigin::kStart), -1);
  EXPECT_EQ(messages.take(), std::vector{"1911 " + folder.path("f")});
  file.Close();
  EXPECT_TRUE(messages.take().empty());
  file.Close();
  EXPECT_EQ(messages.take(), std::vector{"1847 " + folder.path("f")});
}

TEST(DiskFile, RefusalsAndLosses) {
  const TempFolder folder;
  HeldMessages messages;
  {
    eDiskFile file;
    errno = 0;
    EXPECT_FALSE(file.Open(fromNative(folder.path().string()), open_flags::kWrite, false));
    EXPECT_EQ(errno, EISDIR);
    EXPECT_FALSE(file.Open(fromNative(folder.path("none/f")), open_flags::kWrite, false));
    EXPECT_EQ(errno, ENOENT);
  }
  EXPECT_TRUE(messages.take().empty());  // what a failed open means is the caller's affair
  eDiskFile full;
  ASSERT_TRUE(full.Open(u"/dev/full", open_flags::kWrite, false));
  EXPECT_EQ(full.Write("x", 1), 1);  // it still is in the stream's buffer
  full.Close();
  EXPECT_EQ(messages.take(), std::vector{"1848 /dev/full|No space left on device"s});
  EXPECT_FALSE(full.isOpen());
}

TEST(MemFile, GrowsByDoubling) {
  eMemFile file(10);
  EXPECT_EQ(file.name(), eString(u"MemoryFile"));
  EXPECT_TRUE(file.IsMemory());
  EXPECT_EQ(file.Write("", 0), 0);
  EXPECT_EQ(file.capacity(), 0);
  EXPECT_EQ(file.Write("0123456789", 10), 10);
  EXPECT_EQ(file.capacity(), 10);
  EXPECT_EQ(file.Write("a", 1), 1);
  EXPECT_EQ(file.capacity(), 20);
  EXPECT_EQ(file.Write(std::string(50, 'b').data(), 50), 50);
  EXPECT_EQ(file.capacity(), 80);
  EXPECT_EQ(file.GetLength(), 61);
  EXPECT_EQ(file.Seek(100, SeekOrigin::kStart), 100);
  EXPECT_EQ(readAll(file, 5), "");
  EXPECT_EQ(file.GetLength(), 61);
  file.Write("end", 3);  // over a gap
  EXPECT_EQ(file.GetLength(), 103);
  EXPECT_EQ(file.Seek(-4, SeekOrigin::kEnd), 99);
  EXPECT_EQ(file.Seek(-100, SeekOrigin::kCurrent), -1);
  EXPECT_EQ(file.Tell(), 99);
  EXPECT_EQ(file.Seek(1, SeekOrigin::kCurrent), 100);
  EXPECT_EQ(readAll(file, 50), "end");
  file.SetLength(12);
  EXPECT_EQ(file.Tell(), 12);
  EXPECT_EQ(file.Seek(9, SeekOrigin::kStart), 9);
  EXPECT_EQ(readAll(file, 50), "9ab");
  file.Close();
  EXPECT_EQ(file.GetLength() + file.capacity() + file.Tell(), 0);
  EXPECT_THROW(file.Write("x", 1), eMemException);
}

TEST(MemFile, BlocksOfOthers) {
  std::string block = "0123456789";
  auto* bytes = reinterpret_cast<std::byte*>(block.data());
  eMemFile fixed(bytes, 10, 0);
  EXPECT_EQ(readAll(fixed, 20), "0123456789");
  EXPECT_THROW(fixed.Write("x", 1), eMemException);
  EXPECT_EQ(fixed.Detach(), nullptr);  // it never was the file's

  fixed.Attach(bytes, 10, 4);
  EXPECT_EQ(fixed.GetLength(), 0);
  fixed.Write("abc", 3);
  EXPECT_EQ(block, "abc3456789");
  fixed.Write("defghijkl", 9);  // outgrows it: from here on a block of its own
  EXPECT_EQ(block, "abc3456789");
  EXPECT_EQ(fixed.capacity(), 20);
  const auto owned = fixed.Detach();
  EXPECT_EQ(std::string(reinterpret_cast<const char*>(owned.get()), 12), "abcdefghijkl");
  EXPECT_EQ(fixed.GetLength() + fixed.capacity() + fixed.Tell(), 0);
  EXPECT_EQ(fixed.data(), nullptr);
}

}  // namespace
}  // namespace rvf
