#include "compare/CustomerWalk.h"

#include "compare/CompareFixture.h"

namespace rvf::test {
namespace {

/// Files of one to three customers. Ids of two characters keep the difference file in whole words.
std::vector<CaptureFields> comparedFiles() {
  const PageFields one = page({text()}), other = page({line()});
  std::vector<CaptureFields> files;
  const auto add = [&files](const auto&... customers) {
    files.push_back({.customers = {customers...}});
  };
  const auto customer = [](std::u16string id, const auto&... pages) {
    return CustomerFields{.id = std::move(id), .pages = {pages...}};
  };
  CustomerFields negative = customer(u"NN");
  negative.pageCount = -3;
  add(customer(u"CC", one));
  add(customer(u"CC", one), customer(u"DD", one));
  files.back().resolution = 600;
  add(customer(u"CC", one), customer(u"DD", one));
  add(customer(u"Cc", one), customer(u"DD", one, one));
  add(customer(u"CC", other, one, other), customer(u"DD", one, other), negative);
  add(customer(u"CC", one, one, one, one), customer(u"DD", one), customer(u"NN", one, one));
  files.back().customers[0].pages[1].name = u"Q2";
  files.back().customers[0].pages[3].name = u"P4";
  return files;
}

struct Observer final : WalkObserver {
  std::string calls;
  void pagesCompared(i32 done, i32 count, i64 compared, i32 differing) override {
    calls += Shown::row(",", done, count, compared, differing);
  }
};

/// What the walk reports, the words of the difference file, and the state of the first file's
/// records afterwards.
std::string walked(const CaptureFields& a, const CaptureFields& b, bool stop, bool usesShortCut) {
  LoadedCapture first(a), second(b);
  // A page that is already in memory before the walk is not reused, even if it is the first one.
  for (LoadedCapture* file : {&first, &second}) {
    file->reader.loadCurrentPage();
    resetList(file->context.pageList);
  }
  Observer observer;
  const Walk walk(first.reader, second.reader, stop, usesShortCut, &observer);
  std::vector<i32> words(walk.bytes.size() / sizeof(i32));
  walk.bytes.copy(reinterpret_cast<char*>(words.data()), walk.bytes.size());
  std::string text = Shown::row("  bits", walk.status, first.reader.compareResult) + ", told" +
                     observer.calls + "\n    file " + Shown::of(words) + "\n";
  for (const CustomerRecord& c : first.reader.customers) {
    text += Shown::row("   ", c.id, c.pageCount, c.diffBits);
    for (const PageRecord& p : c.pages) {
      text += Shown::row(",", p.name.text(), p.unpaired, p.diffBits, p.filePosition);
    }
    text += "\n";
  }
  return text;
}

TEST(CustomerWalk, FilesAgainstEachOther) {
  const std::vector<CaptureFields> files = comparedFiles();
  std::string text;
  for (std::size_t i = 0; i < files.size(); ++i) {
    for (std::size_t j = 0; j < files.size(); ++j) {
      for (const bool stop : {true, false}) {
        const std::string found = walked(files[i], files[j], stop, true);
        EXPECT_EQ(walked(files[i], files[j], stop, false), found);
        text += Shown::row("files", i, j, stop) + "\n" + found;
      }
    }
  }
  expectFrozen("walks.txt", text);
}

}  // namespace
}  // namespace rvf::test
