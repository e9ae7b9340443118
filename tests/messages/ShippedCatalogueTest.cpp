#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <map>
#include <set>
#include <sstream>

#include "messages/CatalogueFixture.h"
#include "messages/MessageLine.h"

namespace rvf {
namespace {

/// The numbers of the enum with the count of their arguments, from the list that people read:
/// "= NUMBER, // LETTERS meaning", where a letter is t or i.
std::map<i32, int> argumentCounts() {
  std::ifstream header(RVF_SHARE_DIR "/../src/messages/MessageNumbers.h");
  std::map<i32, int> counts;
  for (std::string line; std::getline(header, line);) {
    const std::size_t number = line.find(" = "), comment = line.find("// ");
    if (comment == line.npos || number > comment || line.find("kFallback") != line.npos) continue;
    int& letters = counts[std::stoi(line.substr(number + 3))];
    std::istringstream words(line.substr(comment + 3));
    for (std::string word; words >> word && (word == "t" || word == "i");) ++letters;
  }
  return counts;
}

/// Every number once, with the severity that counts without any catalogue, no limit, and a text in
/// which each argument stands exactly once, so that none is lost and no placeholder is left.
TEST(ShippedCatalogue, FitsTheProgram) {
  MessageCatalogue catalogue;
  catalogue.SetMessageFile(fromNative(RVF_SHARE_DIR "/MsgResource_en-us.dat"));
  ASSERT_EQ(test::printedByLoad(catalogue), "");
  std::map<i32, int> counts = argumentCounts();
  EXPECT_GE(counts.size(), 18U);
  EXPECT_EQ(catalogue.records().size(), counts.size());
  const std::set<i32> errors = {1019, 1502, 9000, 9045}, warnings = {1847, 2529, 9048};
  MessageEntry entry;
  for (std::size_t i = 0; i < entry.arguments.size(); ++i) {
    entry.arguments[i] = eString(static_cast<char16_t>(0x3B1 + i), 1);
  }
  for (const MessageRecord& record : catalogue.records()) {
    const auto count = counts.extract(record.number);
    ASSERT_TRUE(count) << record.number;
    const bool isSevere = tellsOfLoss(static_cast<MessageNumber>(record.number));
    const i32 number = record.number;
    const char16_t expected = isSevere                    ? u'S'
                              : errors.contains(number)   ? u'E'
                              : warnings.contains(number) ? u'W'
                                                          : u'I';
    EXPECT_EQ(record.severity, expected) << number;
    EXPECT_EQ(record.limit, 0);
    const std::u16string line = substituteArguments(record, entry, count.mapped());
    EXPECT_EQ(line.find(u'|'), line.npos) << record.number;
    for (int i = 0; i < 8; ++i) {
      const auto places = std::ranges::count(line, static_cast<char16_t>(0x3B1 + i));
      EXPECT_EQ(places, i < count.mapped() ? 1 : 0) << number;
    }
  }
}

}  // namespace
}  // namespace rvf
