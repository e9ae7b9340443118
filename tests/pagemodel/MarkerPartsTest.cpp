#include "pagemodel/MarkerParts.h"

#include "pagemodel/PartRows.h"
#include "support/Reporting.h"

namespace rvf::test {
namespace {

TEST(MarkerParts, MoreNameValuesThanAPartCounts) {
  for (const int count : {65535, 65536, 70000}) {
    HeldMessages messages;
    const std::vector<NameValueFields> entries(static_cast<std::size_t>(count), {.name = u"n"});
    const DrawPart part = readFresh(startEnd({.nameValues = entries, .pairs = {{7, 8}}}));
    const MarkerInfo& info = markerInfo(part);
    EXPECT_EQ(info.nameValueCount, count % 65536);
    EXPECT_EQ(info.nameValues == nullptr ? 0 : info.nameValues->size(), info.nameValueCount);
    EXPECT_EQ(info.pairs.size(), 1U);  // dropped entries are read all the same
    const std::string warning =
        "9048 You have more than 65535 metadata objects saved. The last 2147418112 will be ignored";
    EXPECT_EQ(messages.take(), std::vector(count > 65535 ? 1U : 0U, warning));
  }
}

TEST(MarkerParts, LanguagesByIndex) {
  std::string text;
  for (int n = -1; n <= 61; ++n) {
    text += Shown::row("language", n);
    text += " " + quoted(language(readFresh(taggedObject({.language = n})))) + "\n";
  }
  expectFrozen("languages.txt", text);
}

TEST(MarkerParts, TagIdsFoldIntoTheirBand) {
  for (const auto& [id, middle, top] : {std::array{9999, 19999, 49999},
                                        {10000, 10000, 40000},
                                        {39999, 39999, 4463},
                                        {40000, 10000, 40000}}) {
    EXPECT_EQ(foldedTagId(static_cast<u16>(id), 1), middle);
    EXPECT_EQ(foldedTagId(static_cast<u16>(id), 2), top);
    EXPECT_EQ(foldedTagId(static_cast<u16>(id), 3), id);
  }
}

}  // namespace
}  // namespace rvf::test
