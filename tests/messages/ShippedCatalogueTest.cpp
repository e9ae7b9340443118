#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <string>

#include "messages/CatalogueFixture.h"
#include "messages/MessageLine.h"
#include "messages/MessageNumbers.h"

namespace rvf {
namespace {

/// The numbers of the enum with the count of their arguments, from the list that people read:
/// "= NUMBER, // LETTERS meaning", where a letter is t or i.
std::map<i32, int> argumentCounts() {
  std::ifstream header(RVF_SHARE_DIR "/../src/messages/MessageNumbers.h");
  std::map<i32, int> counts;
  for (std::string line; std::getline(header, line);) {
    const std::size_t number = line.find(" = ");
    const std::size_t comment = line.find("// ");
    if (number == line.npos || comment == line.npos || number > comment) {
      continue;
    }
    std::istringstream words(line.substr(comment + 3));
    int letters = 0;
    for (std::string word; words >> word && (word == "t" || word == "i");) {
      ++letters;
    }
    const bool isAsked = line.find("kFallback") == line.npos;
    if (isAsked) {
      counts[std::stoi(line.substr(number + 3))] = letters;
    }
  }
  return counts;
}

class ShippedCatalogue : public ::testing::Test {
 protected:
  void SetUp() override {
    catalogue.SetMessageFile(file);
    ASSERT_TRUE(catalogue.LoadCatalogue(console.stream()));
    ASSERT_EQ(console.text(), "");
  }

  const eString file = fromNative(RVF_SHARE_DIR "/MsgResource_en-us.dat");
  test::PrintedText console;
  MessageCatalogue catalogue;
};

TEST_F(ShippedCatalogue, HoldsEveryNumberOnce) {
  std::set<i32> wanted;
  for (const auto& [number, count] : argumentCounts()) {
    wanted.insert(number);
  }
  EXPECT_GE(wanted.size(), 18U);
  std::set<i32> found;
  for (const MessageRecord& record : catalogue.records()) {
    EXPECT_TRUE(found.insert(record.number).second) << record.number;
  }
  EXPECT_EQ(found, wanted);
}

TEST_F(ShippedCatalogue, SeveritiesAndLimits) {
  const std::set<i32> severe = {1806, 1811, 1814, 1822, 1823, 1848, 1903, 1911, 2564, 9042};
  const std::set<i32> errors = {1019, 1502, 9000, 9045};
  const std::set<i32> warnings = {1847, 2529, 9048};
  for (const MessageRecord& record : catalogue.records()) {
    const char16_t expected = severe.contains(record.number)     ? severity::kSevere
                              : errors.contains(record.number)   ? severity::kError
                              : warnings.contains(record.number) ? severity::kWarning
                                                                 : severity::kInformation;
    EXPECT_EQ(record.severity, expected) << record.number;
    // What counts without any catalogue.
    EXPECT_EQ(tellsOfLoss(static_cast<MessageNumber>(record.number)),
              expected == severity::kSevere);
    EXPECT_EQ(record.limit, 0) << record.number;
  }
}

/// Each argument of a message stands in its text exactly once, so that none is lost and no
/// placeholder is left.
TEST_F(ShippedCatalogue, PlaceholdersFitTheArguments) {
  const std::map<i32, int> counts = argumentCounts();
  MessageEntry entry;
  for (std::size_t i = 0; i < entry.arguments.size(); ++i) {
    entry.arguments[i] = eString(static_cast<char16_t>(0x3B1 + i), 1);
  }
  for (const MessageRecord& record : catalogue.records()) {
    const int count = counts.at(record.number);
    const std::u16string line = substituteArguments(record, entry, count);
    EXPECT_EQ(line.find(u'|'), std::u16string::npos) << record.number;
    for (std::size_t i = 0; i < entry.arguments.size(); ++i) {
      EXPECT_EQ(std::ranges::count(line, entry.arguments[i].c_str()[0]),
                static_cast<int>(i) < count ? 1 : 0)
          << record.number;
    }
  }
}

}  // namespace
}  // namespace rvf
