#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <map>
#include <set>

#include "inspect/EditedJob.h"
#include "inspect/Inspected.h"

namespace rvf::test {
namespace {

// Jobs with all kinds of parts get known edits, and the explanation must name these and no others.
// RVF_EDIT_PAIRS sets the number of pairs for each kind of edit, RVF_EDIT_SEED their first seed;
// with RVF_EDIT_SHOW every wrong explanation is printed.

/// The lines that may report an edit. Any of them is correct if the result leaves open which part
/// it was, such as when one of two equal parts was removed.
struct Made {
  std::set<std::string> lines;
  std::string added{};  // the bytes of a new part, whose index is known once all edits are made
};

/// Where edits are made: one page of a job, or the job around it.
struct Place {
  Job& job;
  std::size_t recipient, sheet;
  std::set<int> edited;  // parts of the page, by their first index

  [[nodiscard]] Sheet& page() const { return job.recipients[recipient].sheets[sheet]; }
  [[nodiscard]] std::string pages(int first, int second) const {
    const auto number = [](int page) { return page < 0 ? "-" : std::to_string(page); };
    return number(first) + "/" + number(second) + " ";
  }
  [[nodiscard]] std::string here() const { return pages(int(sheet), int(sheet)); }
};

struct Edit {
  const char* name;
  std::function<Made(Place&, JobGenerator&)> make;
  bool isOnPage = true;
};

std::string nameOfType(const Item& item) {
  return toNative(kPartTypeNames[static_cast<std::size_t>(item.type)]);
}

/// A part of one of these types (any if none is given) that `fits` and has not been edited.
template <class Fits>
Item& pick(Place& place, JobGenerator& random, const std::set<int>& types, Fits fits) {
  while (true) {
    Item& item = random.oneOf(place.page().items);
    const bool isRight = item.index >= 0 && (types.empty() || types.contains(item.type));
    if (isRight && fits(item) && place.edited.insert(item.index).second) return item;
  }
}
Item& pick(Place& place, JobGenerator& random, const std::set<int>& types) {
  return pick(place, random, types, [](const Item&) { return true; });
}

/// An edit of one field, reported as "changed" with its name.
Edit changing(const char* name, std::set<int> types, const char* field,
              std::function<void(Item&, JobGenerator&)> change) {
  return {name, [=](Place& place, JobGenerator& random) -> Made {
            Item& item = pick(place, random, types);
            change(item, random);
            return {{place.here() + std::to_string(item.index) + " changed " + nameOfType(item) +
                     " " + field}};
          }};
}
Edit moving(const char* name, std::set<int> types) {
  return {name, [=](Place& place, JobGenerator& random) -> Made {
            Item& item = pick(place, random, types);
            const int reach = random.below(2) == 0 ? 10 : 400;
            const int dx = random.below(reach) + 1, dy = random.below(reach) - reach / 2;
            item.x += dx, item.y += dy;
            return {{place.here() + std::to_string(item.index) + " moved " + nameOfType(item) +
                     " " + std::to_string(dx) + "," + std::to_string(dy)}};
          }};
}

void reword(Item& item, JobGenerator& random) {
  const std::u16string before = item.words;
  while (item.words == before) {
    const int start = random.below(int(item.words.size()));
    const std::size_t space = item.words.find(u' ', static_cast<std::size_t>(start));
    const int way = random.below(4);
    if (way == 0 || space == item.words.npos) {
      item.words = random.sentence(1 + random.below(4));
    } else if (way == 1) {
      item.words.insert(space, u" " + random.word());
    } else {
      const std::size_t end = std::min(item.words.find(u' ', space + 1), item.words.size());
      item.words.replace(space, end - space, way == 2 ? u"" : u" " + random.word());
    }
  }
}

bool hasNumber(const Item& item) {
  return item.words.find_first_of(u"123456789") != std::u16string::npos;
}

Made changeNumber(Place& place, JobGenerator& random) {
  Item& item = pick(place, random, {1}, hasNumber);
  const std::size_t begin = item.words.find_first_of(u"0123456789");
  const std::size_t end = std::min(item.words.find(u' ', begin), item.words.size());
  const std::u16string before = item.words;
  while (item.words == before) item.words.replace(begin, end - begin, random.amount());
  return {{place.here() + std::to_string(item.index) + " changed TEXT text"}};
}

Made addPart(Place& place, JobGenerator& random) {
  Items& items = place.page().items;
  Item item = random.oneOf(items);
  item.index = -1;
  item.words = random.sentence(1 + random.below(5));
  item.x += random.below(300) - 150, item.y += 10 + random.below(300);
  item.size += 1 + random.below(9);
  items.insert(items.begin() + random.below(int(items.size()) + 1), item);
  return {{}, item.bytes()};
}

Made removePart(Place& place, JobGenerator& random) {
  Items& items = place.page().items;
  const Item item = pick(place, random, {});
  Made made;
  for (const Item& other : items) {
    if (other.index < 0 || other.bytes() != item.bytes()) continue;
    made.lines.insert(place.here() + std::to_string(other.index) + " removed " + nameOfType(item));
  }
  std::erase_if(items, [&](const Item& other) { return other.index == item.index; });
  return made;
}

Made exchangeParts(Place& place, JobGenerator& random) {
  const auto isUnique = [&](const Item& item) {
    const auto equals = [&](const Item& other) { return other.bytes() == item.bytes(); };
    return std::ranges::count_if(place.page().items, equals) == 1;
  };
  Item& one = pick(place, random, {}, isUnique);
  Item& other = pick(place, random, {}, isUnique);
  std::swap(one, other);
  Made made;
  for (const Item* item : {&one, &other}) {
    made.lines.insert(place.here() + std::to_string(item->index) + " order " + nameOfType(*item));
  }
  return made;
}

Made insertPage(Place& place, JobGenerator& random) {
  std::vector<Sheet>& sheets = place.job.recipients[place.recipient].sheets;
  const int at = random.below(int(sheets.size()) + 1);
  sheets.insert(sheets.begin() + at, random.sheet(at + 1));
  return {{place.pages(-1, at) + std::to_string(at) + " added PAGE"}};
}
Made removePage(Place& place, JobGenerator&) {
  std::vector<Sheet>& sheets = place.job.recipients[place.recipient].sheets;
  sheets.erase(sheets.begin() + static_cast<int>(place.sheet));
  return {{place.pages(int(place.sheet), -1) + std::to_string(place.sheet) + " removed PAGE"}};
}
Made renamePage(Place& place, JobGenerator& random) {
  place.page().name += u" " + random.word();
  return {{place.here() + "changed PAGE name"}};
}

std::string lineOf(const Recipient& recipient, std::size_t at, const char* kind) {
  return "customer " + toNative(recipient.id) + " " + std::to_string(at) + " " + kind + " CUSTOMER";
}
Made insertCustomer(Place& place, JobGenerator& random) {
  std::vector<Recipient>& recipients = place.job.recipients;
  const auto at = static_cast<std::size_t>(random.below(int(recipients.size()) + 1));
  const Recipient added = random.recipient(50 + int(at));
  recipients.insert(recipients.begin() + static_cast<int>(at), added);
  return {{lineOf(added, at, "added")}};
}
Made removeCustomer(Place& place, JobGenerator&) {
  std::vector<Recipient>& recipients = place.job.recipients;
  const Recipient removed = recipients[place.recipient];
  recipients.erase(recipients.begin() + static_cast<int>(place.recipient));
  return {{lineOf(removed, place.recipient, "removed")}};
}

Made changeObject(Place& place, JobGenerator& random) {
  const auto object = static_cast<std::size_t>(random.below(int(place.job.objects.size())));
  Item& claim = place.job.objects[object][2];
  reword(claim, random);
  std::size_t pages = 0;  // all of them use both
  for (const Recipient& recipient : place.job.recipients) pages += recipient.sheets.size();
  const std::string uses = std::to_string(pages) + "/" + std::to_string(pages);
  return {{"used " + uses + " object 21/" + std::to_string(object) + "/first 2 changed TEXT text"}};
}

const std::vector<Edit>& edits() {
  static const std::vector<Edit> all = {
      changing("text", {1}, "text", reword),
      {"number within a text", changeNumber},
      changing("colour", {1}, "colour", [](Item& i, auto&) { i.colour += 0x330000; }),
      changing("font", {1}, "fontId", [](Item& i, auto&) { i.font += 1; }),
      changing("rotation", {1}, "rotation", [](Item& i, auto&) { i.rotation += 18; }),
      changing("line width", {2, 30, 31}, "width", [](Item& i, auto&) { i.width += 2; }),
      moving("text moved", {1}),
      moving("box moved", {3}),
      moving("image moved", {5}),
      changing("image changed", {5}, "data", reword),
      {"part added", addPart},
      {"part removed", removePart},
      {"two parts exchanged", exchangeParts},
      moving("object moved", {9}),
      {"object changed", changeObject, false},
      {"page inserted", insertPage, false},
      {"page removed", removePage, false},
      {"customer inserted", insertCustomer, false},
      {"customer removed", removeCustomer, false},
      {"page renamed", renamePage, false},
  };
  return all;
}

/// Two jobs that differ by known edits.
struct Pair {
  explicit Pair(unsigned seed) : random(seed), first(random.job()), second(first) {
    place.recipient = static_cast<std::size_t>(random.below(int(first.recipients.size())));
    const auto& sheets = first.recipients[place.recipient].sheets;
    place.sheet = static_cast<std::size_t>(random.below(int(sheets.size())));
  }

  JobGenerator random;
  Job first, second;
  Place place{second, 0, 0, {}};
  std::vector<Made> made;

  void make(const Edit& edit) { made.push_back(edit.make(place, random)); }

  /// The reported lines without rules and without lengths that follow from a text.
  std::vector<std::string> told() {
    for (Made& edit : made) {
      if (edit.added.empty()) continue;
      const Items& items = place.page().items;
      for (std::size_t i = 0; i < items.size(); ++i) {
        if (items[i].bytes() != edit.added) continue;
        edit.lines.insert(place.here() + std::to_string(i) + " added " + nameOfType(items[i]));
      }
    }
    std::vector<std::string> lines = Inspected(first.capture(), second.capture()).changes;
    for (std::string& line : lines) {
      std::istringstream words(line.substr(0, line.find(" [")));
      line.clear();
      for (std::string word; words >> word;) {
        const bool isLength = word == "textLength" || word == "dataLength" || word == "runCount" ||
                              (word.starts_with("runs[") && line.find(" text") != line.npos);
        if (!isLength) line += (line.empty() ? "" : " ") + word;
      }
    }
    return lines;
  }
};

int setting(const char* name, int usual) {
  const char* wanted = std::getenv(name);
  return wanted == nullptr ? usual : std::atoi(wanted);
}
int pairs() { return setting("RVF_EDIT_PAIRS", 5); }
unsigned seed(int pair) { return static_cast<unsigned>(setting("RVF_EDIT_SEED", 0) + pair); }
bool isTalkative() { return std::getenv("RVF_EDIT_SHOW") != nullptr; }

/// How many edits are reported, and how many reported lines are edits.
struct Score {
  int made = 0, found = 0, told = 0, right = 0;

  void add(const std::vector<Made>& edits, const std::vector<std::string>& lines) {
    made += static_cast<int>(edits.size());
    told += static_cast<int>(lines.size());
    for (const Made& edit : edits) {
      const auto n = std::ranges::count_if(
          lines, [&](const std::string& line) { return edit.lines.contains(line); });
      found += n > 0 ? 1 : 0;
      right += static_cast<int>(n);
    }
  }
  [[nodiscard]] bool isExact() const { return made == found && told == right; }
};

void show(unsigned pair, const std::vector<Made>& made, const std::vector<std::string>& told) {
  std::printf("pair %u\n", pair);
  for (const Made& edit : made) {
    for (const std::string& line : edit.lines) std::printf("  made %s\n", line.c_str());
  }
  for (const std::string& line : told) std::printf("  told %s\n", line.c_str());
}

TEST(EditAccuracy, OneEditIsToldAndNothingElse) {
  for (const Edit& edit : edits()) {
    int right = 0;
    for (int pair = 0; pair < pairs(); ++pair) {
      Pair files(seed(pair));
      files.make(edit);
      Score score;
      const std::vector<std::string> told = files.told();
      score.add(files.made, told);
      right += score.isExact() ? 1 : 0;
      if (!score.isExact() && isTalkative()) show(seed(pair), files.made, told);
    }
    if (isTalkative()) std::printf("%s: %d of %d\n", edit.name, right, pairs());
    EXPECT_GE(right * 100, pairs() * 99) << edit.name << ": " << right << " of " << pairs();
  }
}

TEST(EditAccuracy, OfFiveEditsNearlyAllAreTold) {
  std::vector<const Edit*> onPage;
  for (const Edit& edit : edits()) {
    if (edit.isOnPage) onPage.push_back(&edit);
  }
  Score all;
  std::map<std::string, Score> byKind;
  for (int pair = 0; pair < 10 * pairs(); ++pair) {
    Pair files(seed(pair));
    std::shuffle(onPage.begin(), onPage.end(), files.random.engine());
    for (std::size_t edit = 0; edit < 5; ++edit) files.make(*onPage[edit]);
    Score score;
    const std::vector<std::string> told = files.told();
    score.add(files.made, told);
    for (std::size_t edit = 0; edit < 5; ++edit) {
      byKind[onPage[edit]->name].add({files.made[edit]}, told);
    }
    all.add(files.made, told);
    if (!score.isExact() && isTalkative()) show(seed(pair), files.made, told);
  }
  for (const auto& [name, score] : byKind) {
    if (isTalkative()) {
      std::printf("%s: %d made, %d found, by %d lines\n", name.c_str(), score.made, score.found,
                  score.right);
    }
    EXPECT_GE(score.found * 100, score.made * 90) << name << ": " << score.found;
  }
  if (isTalkative()) std::printf("all: %d lines, %d of them right\n", all.told, all.right);
  EXPECT_GE(all.found * 100, all.made * 95) << all.found << " of " << all.made;
  EXPECT_GE(all.right * 100, all.told * 95) << all.right << " of " << all.told;
}

}  // namespace
}  // namespace rvf::test
