#include <gtest/gtest.h>

#include "storage/Archive.h"
#include "storage/DiskFile.h"
#include "storage/MemFile.h"
#include "support/Reporting.h"
#include "support/TempFolder.h"

namespace rvf {
namespace {

constexpr auto kStart = SeekOrigin::kStart, kCurrent = SeekOrigin::kCurrent,
               kEnd = SeekOrigin::kEnd;

std::string readAll(FileObject& file, i32 count) {
  std::string bytes(static_cast<std::size_t>(count), '\0');
  bytes.resize(static_cast<std::size_t>(file.Read(bytes.data(), count)));
  return bytes;
}

TEST(FileObject, ReadsSeeksAndRefuses) {
  const test::TempFolder folder;
  const std::string path = folder.write("f", "0123456789");
  test::HeldMessages messages;
  std::string block = "0123456789";
  eMemFile memory(reinterpret_cast<std::byte*>(block.data()), 10, 0);
  eDiskFile disk;
  ASSERT_TRUE(disk.Open(fromNative(path), open_flags::kRead, false));
  for (FileObject* file : {static_cast<FileObject*>(&disk), static_cast<FileObject*>(&memory)}) {
    EXPECT_EQ(readAll(*file, 4), "0123");
    EXPECT_TRUE(file->GetLength() == 10 && file->Tell() == 4);
    EXPECT_EQ(readAll(*file, 10), "456789");
    EXPECT_FALSE(file->errorState());
    EXPECT_EQ(file->Seek(2, kStart), 2);
    EXPECT_EQ(file->Seek(-1, kCurrent), 1);
    EXPECT_EQ(file->Seek(-3, kEnd), 7);
    EXPECT_EQ(readAll(*file, 2), "78");
    EXPECT_EQ(file->Seek(50, kStart), 50);
    EXPECT_EQ(readAll(*file, 2), "");
    EXPECT_EQ(file->Seek(-1, kStart), -1);
  }
  EXPECT_TRUE(disk.Write("XY", 2) == 0 && disk.errorState());
  disk.Close();
  disk.Close();
  EXPECT_EQ(messages.take(), (std::vector{"1911 " + path, "1823 2|" + path + "|Bad file descriptor",
                                          "1847 " + path}));
  EXPECT_THROW(memory.Write("x", 1), eMemException);
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
}

TEST(MemFile, OutgrowsABlockOfOthers) {
  std::string block = "0123456789";
  eMemFile file(16);
  file.Attach(reinterpret_cast<std::byte*>(block.data()), 10, 4);
  file.Write("abc", 3);
  file.Write("defghijkl", 9);  // from here on a block of its own
  file.Seek(13, kStart);
  file.Write("end", 3);
  EXPECT_TRUE(block == "abc3456789" && file.capacity() == 20 && file.GetLength() == 16);
  const auto owned = file.Detach();
  EXPECT_EQ(std::string(reinterpret_cast<const char*>(owned.get())), "abcdefghijkl");
}

}  // namespace
}  // namespace rvf
