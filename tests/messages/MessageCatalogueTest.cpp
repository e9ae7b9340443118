#include "messages/MessageCatalogue.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "messages/CatalogueFixture.h"
#include "messages/CatalogueSearch.h"

namespace rvf {
namespace {

namespace fs = std::filesystem;
using test::kHead;

/// The loaded messages as number, letter and text, a line each; in front what the load prints.
std::string loaded(std::string_view bytes, i32 encoding = 30) {
  const test::TempFolder folder;
  MessageCatalogue catalogue;
  catalogue.setEncoding(encoding);
  test::useCatalogue(catalogue, folder, bytes);
  std::string list = test::printedByLoad(catalogue);
  if (const auto path = list.find(folder.path().string()); path != list.npos) {
    list.replace(path, folder.path("catalogue.dat").size(), "FILE");
  }
  for (const MessageRecord& record : catalogue.records()) {
    list += std::to_string(record.number) + static_cast<char>(record.severity) + " " +
            toNative(record.text.view()) + "\n";
  }
  const bool hasFallback = catalogue.findRecord(4711) != nullptr;
  return list + (catalogue.isLoaded() && !hasFallback ? "no fallback\n" : "");
}

TEST(MessageCatalogue, LinesThatCountAndLinesThatDoNot) {
  const std::string start = "#define A 90 // W|0|0|", longest(4095 - start.size(), 'x');
  const std::string lines =
      "#define A 20 // W|0|0|a\n"
      "  \t#define B\t 30\t//  E|1|2| b c  \r\n"
      "\n"
      "#define C 5 //W|0|0\n"  // 19 characters
      "// #define D 40 // W|0|0|d\n"
      "#defined E 50 // W|0|0|e\n"
      "#define F_has_no_text 60\n"
      "#define     \t           \n"
      "#define G and/an address // S|0|0|g\n"  // the first slash counts
      "#define H 70 // W|0|0|gr\xFC\xDF\n"
      "#define I 20 // I|0|0|second of its number\n";
  const std::string zero("#define Z 80 // W|0|0|z\0y\n", 26), last = "#define J -7 // W|0|0|no end";
  EXPECT_EQ(loaded(std::string(kHead) + lines + start + longest + "\n" + start + longest + "y\n" +
                   zero + last),
            "-7W no end\n0n g\n20W a\n20I second of its number\n30E b c\n70W gr\xC3\xBC\xC3\x9F\n"
            "80W z\n90W " +
                longest + "\n");
  for (const std::string line :  // a malformed one ends the load
       {"#define B 30 // W|0 text", "#define B 30 /          ", "#define Bbbbb 30 //        "}) {
    EXPECT_EQ(loaded(std::string(kHead) + "#define A 20 // W|0|0|a\n" + line + "\n" + lines),
              "20W a\nno fallback\n");
  }
}

TEST(MessageCatalogue, RetriesOnceInTheOtherEncoding) {
  const std::string ascii = std::string(kHead) + "#define A 20 // W|0|0|a\r\n\r\n";
  std::string little, big;
  for (const char c : ascii) {
    little += {c, '\0'};
    big += {'\0', c};
  }
  for (const i32 encoding : {30, 20}) {
    for (const std::string& good : {ascii, little, "\xFF\xFE" + little, "\xFE\xFF" + big}) {
      EXPECT_EQ(loaded(good, encoding), "20W a\n");
    }
    for (const std::string& bad : {big, "\xEF\xBB\xBF" + ascii, " " + ascii, "\n" + ascii,
                                   std::string(), std::string("/")}) {
      EXPECT_EQ(loaded(bad, encoding),
                "The error message file - FILE - was opened but could not be read.\n");
    }
  }
}

/// All lookups against a plain search, over catalogues of different density.
TEST(MessageCatalogue, FindsEveryNumberAndNoOther) {
  const std::vector<std::vector<int>> catalogues = {
      {},
      {0},
      {999, 1000, 1001},
      {20000, 30000},
      {9000, 9042, 9045, 9048, 9999},
      {5, 1000, 1999, 2000, 9998, 9999, 10000, 18999, 19000, 19999, 20000, 20001, 99999},
      {-2000, -5, 7, 3500, 3501, 3502, 3503, 3504, 3600, 12000}};
  for (const std::vector<int>& numbers : catalogues) {
    const test::TempFolder folder;
    std::string bytes(kHead);
    for (auto number = numbers.rbegin(); number != numbers.rend(); ++number) {
      bytes += "#define SYMBOL " + std::to_string(*number) + " // W|0|0|x\n";
    }
    MessageCatalogue catalogue;
    test::useCatalogue(catalogue, folder, bytes);
    EXPECT_EQ(test::printedByLoad(catalogue), "");
    const auto check = [&](int number) {
      const auto found = std::ranges::find(numbers, number);
      const auto index = found == numbers.end() ? -1 : static_cast<i32>(found - numbers.begin());
      ASSERT_EQ(catalogue.FindMessage(number), index) << number;
    };
    for (int number = -3; number < 21000; ++number) check(number);
    for (const int number : {-2147483647 - 1, 30000, 99998, 99999, 99999, 2147483647})
      check(number);
  }
}

TEST(MessageCatalogue, LiesInTheWorkingDirectoryBesideTheProgramOrInItsShareFolder) {
  const test::TempFolder folder;
  const fs::path before = fs::current_path();
  for (const char* name : {"work", "bin", "share/rvfcompare"}) {
    fs::create_directories(folder.path() / name);
  }
  fs::current_path(folder.path() / "work");
  const std::string name = "a name that no installation has.dat";
  const auto found = [&] {
    return toNative(findCatalogue(fromNative(name), folder.path() / "bin/program").view());
  };
  EXPECT_EQ(found(), name) << "nowhere: the name itself";
  fs::create_directories(name);
  folder.write("share/rvfcompare/" + name, "//");
  EXPECT_EQ(found(), folder.path("share/rvfcompare/" + name)) << "a folder is no catalogue";
  folder.write("bin/" + name, "//");
  EXPECT_EQ(found(), folder.path("bin/" + name));
  fs::remove(name);
  folder.write("work/" + name, "//");
  EXPECT_EQ(found(), name);
  fs::current_path(before);
}

}  // namespace
}  // namespace rvf
