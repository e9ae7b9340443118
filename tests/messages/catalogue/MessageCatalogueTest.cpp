#include "messages/catalogue/MessageCatalogue.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "messages/catalogue/CatalogueSearch.h"
#include "messages/catalogue/MessageLine.h"
#include "support/FrozenText.h"
#include "support/Paths.h"
#include "support/TempFolder.h"
#include "text/NativeText.h"

namespace rvf {
namespace {

namespace fs = std::filesystem;
const std::string kHead = "// test\n#define MESS_SYMB_VER 1602008\n";

/// Loads the catalogue at a path and returns what it prints.
std::string printedByLoad(MessageCatalogue& catalogue, const std::string& path,
                          MessageCatalogue::Comments comments = {}) {
  catalogue.SetMessageFile(fromNative(path));
  ::testing::internal::CaptureStdout();
  const bool isLoaded = catalogue.LoadCatalogue(stdout, comments);
  const bool isLoadedTwice = catalogue.LoadCatalogue(stdout);
  const std::string printed = ::testing::internal::GetCapturedStdout();
  EXPECT_EQ(isLoaded, catalogue.isLoaded());
  EXPECT_FALSE(isLoadedTwice);
  return printed;
}

/// What the load prints, then the loaded messages as number, letter and text, one per line.
std::string loaded(std::string_view bytes, i32 encoding = 30,
                   MessageCatalogue::Comments comments = {}) {
  const test::TempFolder folder;
  const std::string path = folder.write("catalogue.dat", bytes);
  MessageCatalogue catalogue;
  catalogue.setEncoding(encoding);
  std::string list = printedByLoad(catalogue, path, comments);
  if (const auto at = list.find(path); at != list.npos) list.replace(at, path.size(), "FILE");
  for (const MessageRecord& record : catalogue.records()) {
    list += std::to_string(record.number) + static_cast<char>(record.severity) + " " +
            toNative(record.text.view()) + "\n";
  }
  const bool hasFallback = catalogue.findRecord(4711) != nullptr;
  for (const eString& comment : catalogue.comments()) list += toNative(comment.view()) + "\n";
  const MessageRecord* last = catalogue.currentRecord();
  if (last != nullptr && !catalogue.comments().empty()) list += toNative(last->text.view()) + "\n";
  return list + (catalogue.isLoaded() && !hasFallback ? "no fallback\n" : "");
}

TEST(MessageCatalogue, LinesThatCountAndLinesThatDoNot) {
  const std::string start = "#define A 90 // W|0|0|", longest(4095 - start.size(), 'x');
  const std::string lines =
      "#define A 20 // W|0|0|a\n"
      "  \t#define B\t 30\t//  E|1|2| b c  \r\n\n"
      "#define C 5 //W|0|0\n"  // 19 characters
      "// #define D 40 // W|0|0|d\n"
      "#defined E 50 // W|0|0|e\n"
      "#define     \t           \n"
      "#define G and/an address // S|0|0|g\n"  // the first slash counts
      "#define H 70 // W|0|0|gr\xFC\xDF\n";
  const std::string zero("#define Z 80 // W|0|0|z\0y\n", 26), last = "#define J -7 // W|0|0|no end";
  EXPECT_EQ(
      loaded(kHead + lines + start + longest + "\n" + start + longest + "y\n" + zero + last),
      "-7W no end\n0n g\n20W a\n30E b c\n70W gr\xC3\xBC\xC3\x9F\n80W z\n90W " + longest + "\n");
  for (const std::string line :  // malformed, so the load ends
       {"#define B 30 // W|0 text", "#define B 30 /          ", "#define Bbbbb 30 //        "}) {
    EXPECT_EQ(loaded(kHead + "#define A 20 // W|0|0|a\n" + line + "\n" + lines),
              "20W a\nno fallback\n");
  }
}

TEST(MessageCatalogue, KeepsCommentsAndTheLastMessage) {
  const std::string lines =
      "// a comment of twenty\n#define A 20 // W|0|0|a\n#define A 20 // W|0|0|b\n"
      "\t// and another one, indented\n// a short one\n#define C 30 // W|0|0|c\n"
      "#define A 20 // W|0|0|last\n";
  EXPECT_EQ(loaded(kHead + lines, 30, MessageCatalogue::Comments::kKeep),
            "20W a\n20W b\n20W last\n30W c\n"
            "// a comment of twenty\n// and another one, indented\nlast\n");
  EXPECT_TRUE(loaded("// test\n").starts_with("\n\nThe version of the MsgResource file"));
  EXPECT_EQ(MessageCatalogue().currentRecord(), nullptr);
}

TEST(MessageCatalogue, RetriesOnceInTheOtherEncoding) {
  const std::string ascii = kHead + "#define A 20 // W|0|0|a\r\n\r\n";
  std::string little, big;
  for (const char c : ascii) {
    little += {c, '\0'};
    big += {'\0', c};
  }
  for (const i32 encoding : {30, 20}) {
    for (const std::string& good : {ascii, little, "\xFF\xFE" + little, "\xFE\xFF" + big}) {
      EXPECT_EQ(loaded(good, encoding), "20W a\n");
    }
    for (const std::string& bad : {big, "\xEF\xBB\xBF" + ascii, "\n" + ascii, std::string("/")}) {
      EXPECT_EQ(loaded(bad, encoding),
                "The error message file - FILE - was opened but could not be read.\n");
    }
  }
}

/// Compares all lookups with a plain search, except for which of several records is found: that is
/// frozen.
TEST(MessageCatalogue, FindsEveryNumberAndNoOther) {
  const std::vector<std::vector<int>> catalogues = {
      {},
      {20000, 30000},
      {9000, 9042, 9045, 9048, 9999},
      {5, 1000, 1999, 2000, 9998, 9999, 10000, 18999, 19000, 19999, 20000, 20001, 99999},
      {-2000, -5, 7, 3500, 3501, 3502, 3503, 3504, 3600, 12000},
      {1, 2, 3, 4, 70, 70, 70}};
  const test::TempFolder folder;
  for (const std::vector<int>& numbers : catalogues) {
    std::string bytes = kHead;
    for (auto number = numbers.rbegin(); number != numbers.rend(); ++number) {
      bytes += "#define SYMBOL " + std::to_string(*number) + " // W|0|0|x\n";
    }
    MessageCatalogue catalogue;
    EXPECT_EQ(printedByLoad(catalogue, folder.write("catalogue.dat", bytes)), "");
    const auto check = [&](int number) {
      const auto found = std::ranges::find(numbers, number);
      const auto index = found == numbers.end() ? -1 : static_cast<i32>(found - numbers.begin());
      const bool isRepeated = std::ranges::count(numbers, number) > 1;
      ASSERT_EQ(catalogue.FindMessage(number), isRepeated ? 5 : index) << number;
    };
    for (int number = -3; number < 21000; ++number) check(number);
    for (const int number : {-2147483647 - 1, 30000, 99998, 99999, 2147483647}) check(number);
  }
}

TEST(MessageCatalogue, IsFoundInTheWorkingDirectoryBesideTheProgramOrInItsShareFolder) {
  const test::TempFolder folder;
  const fs::path before = fs::current_path();
  const std::string name = "a name that no installation has.dat";
  fs::create_directories(folder.path() / "work" / name);  // a folder is no catalogue
  fs::create_directories(folder.path() / "bin");
  fs::create_directories(folder.path() / "share/rvfcompare");
  fs::current_path(folder.path() / "work");
  const auto found = [&] {
    return toNative(findCatalogue(fromNative(name), folder.path() / "bin/program").view());
  };
  EXPECT_EQ(found(), name) << "nowhere: the name itself";
  for (const std::string place : {"share/rvfcompare/", "bin/"}) {
    const std::string path = folder.write(place + name, "//");
    EXPECT_EQ(found(), path);
  }
  fs::remove(name);
  folder.write("work/" + name, "//");
  EXPECT_EQ(found(), name);
  fs::current_path(before);
}

// Lines of "x" with one blank or none: the lengths of their pieces.
TEST(MessageLine, CutsAfterTheLastBlankThatFits) {
  std::string lines;
  for (const std::size_t length : {129U, 130U, 131U, 245U, 246U, 247U, 362U}) {
    for (const std::size_t blank : {9U, 128U, 129U, 130U, 244U, 245U, 246U, 999U}) {
      std::u16string text(length, u'x');
      if (blank < length) text[blank] = u' ';
      lines += std::to_string(length) + ", " + std::to_string(blank) + ":";
      for (const auto& [piece, indent] : cutLine(text)) {
        lines += " " + std::to_string(indent) + "+" + std::to_string(piece.size());
      }
      lines += "\n";
    }
  }
  test::expectFrozen("cut-lines.txt", lines);
}

// The first placeholders of a text are replaced, whichever arguments they name, each at its last
// position. A placeholder takes three characters; neither of the two after a backslash opens one.
// Only eight are kept; one with a number of 8 and above vanishes, and one below 1 hides its three
// characters.
TEST(MessageLine, SubstitutesTheFirstPlaceholdersOfTheText) {
  MessageEntry entry;
  entry.arguments = {u"a", u"b", u"c", u"d", u"e", u"f"};
  std::string lines;
  for (const std::string text :
       {"|2| and |1|", "|6||5|", "x|7|y|9|z", "|0|, |1|", "|0|1|", "|x||-4|2|", "|12|3", "\\|1|2|",
        "\\x|1|", "\\xy|1|", "\\\\|1|", "|1| x |1|.", "|2| |1| |2|.", "ends in |1", "x|",
        "|1||2||3||4||5||6||7||8||1|"}) {
    const auto record = parseMessageRecord(1, fromNative("W|||" + text).view(), u'|');
    lines += text + "\n";
    for (const int count : {1, 2, 3, 8}) {
      lines += "  " + std::to_string(count) + ": " +
               toNative(substituteArguments(*record, entry, count)) + "\n";
    }
  }
  test::expectFrozen("placeholders.txt", lines);
}

/// Every number occurs once, is severe if it means data loss, has no limit, and has a text in which
/// each argument occurs exactly once.
TEST(ShippedCatalogue, FitsTheProgram) {
  MessageCatalogue catalogue;
  ASSERT_EQ(printedByLoad(catalogue, test::sourcePath("share/MsgResource_en-us.dat")), "");
  EXPECT_EQ(catalogue.records().size(), std::size(kMessageForms));
  for (const auto& [number, form] : kMessageForms) {
    const i32 index = catalogue.FindMessage(static_cast<i32>(number));
    ASSERT_GE(index, 0) << static_cast<i32>(number);
    const MessageRecord& record = catalogue.records()[static_cast<std::size_t>(index)];
    EXPECT_EQ(meansDataLoss(number), record.severity == u'S') << record.number;
    EXPECT_EQ(record.limit, 0) << record.number;
    std::string text = toNative(record.text.view());
    for (std::size_t i = 1; i <= form.size(); ++i) {
      const std::size_t place = text.find("|" + std::to_string(i) + "|");
      ASSERT_NE(place, text.npos) << record.number;
      text.erase(place, 3);
    }
    EXPECT_EQ(text.find('|'), text.npos) << record.number;
  }
}

}  // namespace
}  // namespace rvf
