#include "messages/CatalogueSearch.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "support/TempFolder.h"
#include "text/NativeText.h"

namespace rvf {
namespace {

namespace fs = std::filesystem;

constexpr const char16_t* kName = u"a name that no installation has.dat";

class CatalogueSearch : public ::testing::Test {
 protected:
  CatalogueSearch() {
    fs::create_directories(folder.path() / "work");
    fs::create_directories(folder.path() / "bin");
    fs::create_directories(folder.path() / "share/rvfcompare");
    fs::current_path(folder.path() / "work");
  }
  ~CatalogueSearch() override { fs::current_path(before); }

  void place(const std::string& where) { folder.write(where + "/" + toNative(kName), "//"); }
  std::string found() {
    return toNative(findCatalogue(kName, folder.path() / "bin/program").view());
  }

  test::TempFolder folder;
  fs::path before = fs::current_path();
};

TEST_F(CatalogueSearch, WorkingDirectoryThenProgramThenShareFolder) {
  const std::string name = toNative(kName);
  EXPECT_EQ(found(), name) << "nowhere: the name itself";
  fs::create_directories(folder.path() / "work" / name);
  place("share/rvfcompare");
  EXPECT_EQ(found(), folder.path("share/rvfcompare/" + name)) << "a folder is no catalogue";
  place("bin");
  EXPECT_EQ(found(), folder.path("bin/" + name));
  fs::remove(folder.path() / "work" / name);
  place("work");
  EXPECT_EQ(found(), name);
}

}  // namespace
}  // namespace rvf
