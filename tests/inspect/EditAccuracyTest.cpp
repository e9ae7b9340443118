#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <random>

#include "inspect/Inspected.h"

namespace rvf::test {
namespace {

// Pages with all kinds of parts get known edits, and the explanation must name these and no others.
// RVF_EDIT_PAIRS sets the number of pairs for each kind of edit.

constexpr int kParts = 24;

/// A page as numbers that an edit can change.
struct Item {
  int kind, x, y, word, extra;
};

class Generator {
 public:
  explicit Generator(unsigned seed) : random_(seed) {}

  int below(int n) { return static_cast<int>(random_() % static_cast<unsigned>(n)); }

  std::vector<Item> page() {
    std::vector<Item> items;
    for (int i = 0; i < kParts; ++i) {
      items.push_back({kinds[static_cast<std::size_t>(i) % kinds.size()], 100 + 40 * below(45),
                       200 + 120 * i + below(60), below(1000), below(50)});
    }
    return items;
  }

  // Texts twice, since pages consist of them.
  static constexpr std::array<int, 12> kinds = {1, 2, 1, 3, 4, 1, 5, 30, 31, 8, 40, 9};

 private:
  std::mt19937 random_;
};

std::u16string phrase(const Item& item) {
  const std::string digits = std::to_string(item.word);
  return u"The amount of item " + std::u16string(digits.begin(), digits.end()) + u" is due today";
}

Part partOf(const Item& item, int fontId = 7, unsigned colour = 0x112233, int rotation = 0) {
  const Rectangle area{item.x, item.y, item.x + 200 + item.extra, item.y + 80};
  switch (item.kind) {
    case 1:
      return text(
          {.text = phrase(item),
           .runs = {{.x = item.x, .y = item.y, .charCount = static_cast<int>(phrase(item).size())}},
           .fontId = fontId,
           .rotation = rotation,
           .colour = colour});
    case 2:
      return line({.points = {{item.x, item.y}, {item.x + 300 + item.extra, item.y}},
                   .width = 4 + item.word % 7});
    case 3:
      return rect({.area = area, .fillColour = static_cast<unsigned>(item.word)});
    case 4:
      return poly(
          {.points = {
               {item.x, item.y}, {item.x + 90 + item.extra, item.y}, {item.x, item.y + 70}}});
    case 5:
      return image({.area = area, .bytes = "image " + std::to_string(item.word)});
    case 30:
      return justOneLine(
          {.x1 = item.x, .x2 = item.x + 100 + item.extra, .y1 = item.y, .y2 = item.y, .width = 3});
    case 31:
      return lineSet(
          {.start = item.x, .end = item.x + 400, .offsets = {item.y, item.y + 10 + item.extra}});
    case 8:
      return clickArea({.area = area});
    case 40:
      return hyperlinkArea({.url = u"http://a/" + phrase(item), .area = area});
    default:
      return staticRef({.x = item.x, .y = item.y});
  }
}

std::vector<Part> partsOf(const std::vector<Item>& items) {
  std::vector<Part> parts;
  for (const Item& item : items) parts.push_back(partOf(item));
  return parts;
}

/// A kind of edit for parts of some kinds, and the line that reports it.
struct Edit {
  const char* name;
  std::vector<int> kinds;
  std::string (*apply)(std::vector<Part>& parts, std::vector<Item>& items, int at, Generator&);
};

std::string told(int at, const std::string& what) { return std::to_string(at) + " " + what; }
const char* nameOf(int kind) {
  switch (kind) {
    case 1:
      return "TEXT";
    case 2:
      return "LINE";
    case 3:
      return "RECT";
    case 4:
      return "POLY";
    case 5:
      return "IMAGE";
    case 30:
      return "JUST1LINE";
    case 31:
      return "LINESET";
    case 8:
      return "CLICKAREA";
    case 40:
      return "HYPERLINKAREA";
    default:
      return "STATICREF";
  }
}

const auto kAt = [](auto& list, int at) -> auto& { return list[static_cast<std::size_t>(at)]; };

std::string moved(std::vector<Part>& parts, std::vector<Item>& items, int at, Generator& random) {
  Item item = kAt(items, at);
  item.x += 1 + random.below(200);
  item.y += 1 + random.below(40);
  kAt(parts, at) = partOf(item);
  return told(at, std::string("moved ") + nameOf(item.kind));
}
std::string reworded(std::vector<Part>& parts, std::vector<Item>& items, int at, Generator&) {
  Item item = kAt(items, at);
  item.word += 1000;
  kAt(parts, at) = partOf(item);
  return told(at, std::string("changed ") + nameOf(item.kind));
}
template <int font, unsigned colour, int rotation>
std::string restyled(std::vector<Part>& parts, std::vector<Item>& items, int at, Generator&) {
  kAt(parts, at) = partOf(kAt(items, at), font, colour, rotation);
  return told(at, "changed TEXT");
}
std::string removed(std::vector<Part>& parts, std::vector<Item>& items, int at, Generator&) {
  kAt(parts, at).type = -1;  // removed once all edits are made
  return told(at, std::string("removed ") + nameOf(kAt(items, at).kind));
}

const std::vector<Edit>& edits() {
  static const std::vector<Edit> all = {
      {"text changed", {1}, reworded},
      {"font changed", {1}, restyled<8, 0x112233, 0>},
      {"colour changed", {1}, restyled<7, 0x445566, 0>},
      {"rotation changed", {1}, restyled<7, 0x112233, 18>},
      {"line width changed",
       {2},
       [](auto& parts, auto& items, int at, Generator&) {
         Item item = kAt(items, at);
         item.word += 1;
         kAt(parts, at) = partOf(item);
         return told(at, "changed LINE");
       }},
      {"image changed", {5}, reworded},
      {"text moved", {1}, moved},
      {"box moved", {3}, moved},
      {"image moved", {5}, moved},
      {"object moved", {9}, moved},
      {"line or shape moved", {2, 4, 30, 31}, moved},
      {"part removed", {1, 2, 3, 4, 5, 9, 30, 31, 8, 40}, removed},
  };
  return all;
}

std::string capture(std::vector<Part> parts) {
  std::erase_if(parts, [](const Part& part) { return part.type == -1; });
  CaptureFields file = captureOf({page(std::move(parts))});
  file.statics21 = {{.first = {.parts = {text()}}}};
  return writeCapture(file).bytes;
}

/// Lines without fields, distances and rules: "3 changed TEXT".
std::vector<std::string> inShort(const std::vector<std::string>& lines) {
  std::vector<std::string> result;
  for (const std::string& line : lines) {
    std::istringstream words(line);
    std::string place, index, kind, type;
    words >> place >> index >> kind >> type;
    result.push_back(index + " " + kind + " " + type);
  }
  std::ranges::sort(result);
  return result;
}

int pairs() {
  const char* wanted = std::getenv("RVF_EDIT_PAIRS");
  return wanted == nullptr ? 5 : std::atoi(wanted);
}

int partFor(const Edit& edit, const std::vector<Item>& items, Generator& random) {
  int at = random.below(kParts);
  while (std::ranges::count(edit.kinds, kAt(items, at).kind) == 0) at = (at + 1) % kParts;
  return at;
}

TEST(EditAccuracy, OneEditIsToldAndNothingElse) {
  for (const Edit& edit : edits()) {
    int right = 0;
    for (int seed = 0; seed < pairs(); ++seed) {
      Generator random(static_cast<unsigned>(seed));
      std::vector<Item> items = random.page();
      const std::vector<Part> first = partsOf(items);
      std::vector<Part> second = first;
      const int at = partFor(edit, items, random);
      const std::vector<std::string> expected = {edit.apply(second, items, at, random)};
      right += inShort(Inspected(capture(first), capture(second)).changes) == expected ? 1 : 0;
    }
    RecordProperty(edit.name, right);
    EXPECT_GE(right * 100, pairs() * 99) << edit.name << ": " << right << " of " << pairs();
  }
}

TEST(EditAccuracy, OfFiveEditsNearlyAllAreTold) {
  int made = 0, found = 0, reported = 0;
  for (int seed = 0; seed < 10 * pairs(); ++seed) {
    Generator random(static_cast<unsigned>(seed));
    std::vector<Item> items = random.page();
    const std::vector<Part> first = partsOf(items);
    std::vector<Part> second = first;
    std::vector<std::string> expected;
    std::vector<int> used;
    while (used.size() < 5) {
      const Edit& edit =
          edits()[static_cast<std::size_t>(random.below(static_cast<int>(edits().size())))];
      const int at = partFor(edit, items, random);
      if (std::ranges::count(used, at) != 0) continue;
      used.push_back(at);
      expected.push_back(edit.apply(second, items, at, random));
    }
    const std::vector<std::string> told =
        inShort(Inspected(capture(first), capture(second)).changes);
    for (const std::string& line : expected) {
      found += static_cast<int>(std::ranges::count(told, line) > 0);
    }
    made += 5;
    reported += static_cast<int>(told.size());
  }
  RecordProperty("made", made), RecordProperty("found", found);
  RecordProperty("reported", reported);
  EXPECT_GE(found * 100, made * 95) << found << " of " << made;
  EXPECT_GE(found * 100, reported * 95) << found << " of " << reported;
}

}  // namespace
}  // namespace rvf::test
