#include "messages/MessageCatalogue.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <initializer_list>
#include <string>
#include <vector>

#include "messages/CatalogueFixture.h"

namespace rvf {
namespace {

using test::kHead;

class MessageCatalogueTest : public ::testing::Test {
 protected:
  bool load(std::string_view bytes) {
    test::useCatalogue(catalogue, folder, bytes);
    return catalogue.LoadCatalogue(console.stream());
  }
  /// The loaded messages as number, letter and text.
  std::vector<std::string> loaded() const {
    std::vector<std::string> list;
    for (const MessageRecord& record : catalogue.records()) {
      list.push_back(std::to_string(record.number) + static_cast<char>(record.severity) + " " +
                     toNative(record.text.view()));
    }
    return list;
  }
  using Loaded = std::vector<std::string>;

  test::TempFolder folder;
  test::PrintedText console;
  MessageCatalogue catalogue;
};

TEST_F(MessageCatalogueTest, LinesThatCountAndLinesThatDoNot) {
  const std::string start = "#define A 90 // W|0|0|";
  const std::string longest(4095 - start.size(), 'x');
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
  const std::string last = "#define J -7 // W|0|0|last line has no end";
  EXPECT_TRUE(load(std::string(kHead) + lines + start + longest + "\n" + start + longest + "y\n" +
                   std::string("#define Z 80 // W|0|0|z\0y\n", 26) + last));
  EXPECT_EQ(loaded(),
            (Loaded{"-7W last line has no end", "0n g", "20W a", "20I second of its number",
                    "30E b c", "70W gr\xC3\xBC\xC3\x9F", "80W z", "90W " + longest}));
  EXPECT_EQ(console.text(), "");
}

TEST_F(MessageCatalogueTest, MalformedLineEndsTheLoadAndLeavesNoFallback) {
  for (const std::string line :
       {"#define B 30 // W|0 text", "#define B 30 /", "#define Bbbbb 30 //"}) {
    MessageCatalogue fresh;
    test::useCatalogue(fresh, folder,
                       std::string(kHead) + "#define A 20 // W|0|0|a\n" + line + "          \n" +
                           "#define C 40 // W|0|0|c\n");
    EXPECT_TRUE(fresh.LoadCatalogue(console.stream()));
    EXPECT_EQ(fresh.records().size(), 1U);
    EXPECT_NE(fresh.findRecord(20), nullptr);
    EXPECT_EQ(fresh.findRecord(40), nullptr);
  }
}

TEST_F(MessageCatalogueTest, RetriesOnceInTheOtherEncoding) {
  const std::string ascii =
      std::string(kHead) + "#define A 20 // W|0|0|a\r\n\r\n#define B 30 // E|0|0|b";
  const std::string little = test::utf16(ascii, std::endian::little);
  const std::string big = test::utf16(ascii, std::endian::big);
  struct Row {
    std::string bytes;
    bool loads;
  };
  const Row rows[] = {
      {ascii, true},
      {little, true},
      {"\xFF\xFE" + little, true},
      {"\xFE\xFF" + big, true},
      {big, false},
      {"\xEF\xBB\xBF" + ascii, false},
      {" " + ascii, false},
      {"", false},
      {"\n" + ascii, false},
      {"/", false},
  };
  for (const i32 encoding : {30, 20}) {
    for (const Row& row : rows) {
      MessageCatalogue fresh;
      test::PrintedText printed;
      fresh.setEncoding(encoding);
      test::useCatalogue(fresh, folder, row.bytes);
      EXPECT_EQ(fresh.LoadCatalogue(printed.stream()), row.loads);
      EXPECT_EQ(fresh.isLoaded(), row.loads);
      EXPECT_EQ(fresh.records().size(), row.loads ? 2U : 0U);
      EXPECT_EQ(printed.text(), row.loads
                                    ? ""
                                    : "The error message file - " + folder.path("catalogue.dat") +
                                          " - was opened but could not be read.\n");
    }
  }
}

/// All lookups against a plain search, over catalogues of different density.
TEST_F(MessageCatalogueTest, FindsEveryNumberAndNoOther) {
  const std::vector<std::vector<int>> catalogues = {
      {},
      {0},
      {999, 1000, 1001},
      {5, 1000, 1999, 2000, 9998, 9999, 10000, 18999, 19000, 19999, 20000, 20001, 99999},
      {20000, 30000},
      {-2000, -5, 7, 3500, 3501, 3502, 3503, 3504, 3600, 12000},
      {9000, 9042, 9045, 9048, 9999},
  };
  for (const std::vector<int>& numbers : catalogues) {
    MessageCatalogue fresh;
    std::string bytes(kHead);
    for (const int number : numbers) {
      bytes.insert(kHead.size(), "#define SYMBOL " + std::to_string(number) + " // W|0|0|x\n");
    }
    test::useCatalogue(fresh, folder, bytes);
    ASSERT_TRUE(fresh.LoadCatalogue(console.stream()));
    ASSERT_EQ(fresh.records().size(), numbers.size());
    const auto expected = [&](int number) {
      const auto found = std::ranges::find(numbers, number);
      return found == numbers.end() ? -1 : static_cast<i32>(found - numbers.begin());
    };
    for (int number = -3; number < 21000; ++number) {
      ASSERT_EQ(fresh.FindMessage(number), expected(number)) << number;
    }
    for (const int number : {-2147483647 - 1, 99998, 99999, 99999, 2147483647}) {
      EXPECT_EQ(fresh.FindMessage(number), expected(number)) << number;
    }
  }
}

}  // namespace
}  // namespace rvf
