#include "inspect/EditedJob.h"

#include "text/NativeText.h"

namespace rvf::test {

namespace {

std::u16string inWords(int number) {
  const std::string digits = std::to_string(number);
  return {digits.begin(), digits.end()};
}

constexpr std::u16string_view kVocabulary[] = {
    u"the",    u"your",      u"insurance", u"policy", u"premium",  u"contract",
    u"of",     u"is",        u"January",   u"due",    u"until",    u"contents",
    u"amount", u"liability", u"with",      u"please", u"transfer", u"for",
    u"year",   u"household", u"damage",    u"we",     u"enclose",  u"and"};
constexpr std::u16string_view kNames[] = {u"Weber", u"Novak", u"Lindgren", u"Okafor", u"Martin"};
constexpr std::u16string_view kArticles[] = {u"Household contents", u"Glass breakage", u"Liability",
                                             u"Bicycle theft"};

/// One line for every four words.
Part paragraph(const Item& item) {
  TextFields f{.text = item.words,
               .runs = {},
               .fontId = item.font,
               .rotation = item.rotation,
               .colour = item.colour};
  std::size_t begin = 0;
  for (int line = 0; begin < item.words.size() || line == 0; ++line) {
    std::size_t end = begin;
    for (int word = 0; word < 4 && end < item.words.size(); ++word) {
      const std::size_t space = item.words.find(u' ', end);
      end = space == item.words.npos ? item.words.size() : space + 1;
    }
    f.runs.push_back({.x = item.x, .y = item.y + 50 * line, .charCount = int(end - begin)});
    begin = end;
  }
  return text(f);
}

}  // namespace

Part Item::part() const {
  const Rectangle area{x, y, x + 200 + size, y + 80 + size};
  switch (type) {
    case 1:
      return paragraph(*this);
    case 2:
      return line({.points = {{x, y}, {x + 300 + size, y}}, .width = width, .colour = colour});
    case 3:
      return rect({.area = area, .lineWidth = width, .fillColour = colour});
    case 4:
      return poly({.points = {{x, y}, {x + 90 + size, y}, {x, y + 70}}, .lineWidth = width});
    case 5:
      return image({.area = area, .bytes = toNative(words) + std::string(500, 'i')});
    case 6:
      return startEnd({.markerId = size, .area = area});
    case 8:
      return clickArea({.area = area});
    case 9:
      return staticRef({.staticIndex = size, .x = x, .y = y});
    case 15:
      return locSearchKey({.keyText = words});
    case 30:
      return justOneLine(
          {.x1 = x, .x2 = x + 100 + size, .y1 = y, .y2 = y, .width = width, .colour = colour});
    case 31:
      return lineSet({.start = x, .end = x + 400, .offsets = {y, y + 10 + size}, .width = width});
    case 40:
      return hyperlinkArea({.url = words, .area = area});
    case 43:
      return bookmark({.title = words});
    default: {
      static const std::vector<Part> others = allParts();
      Part part = others[static_cast<std::size_t>(type)];
      part.extraId = size;
      return part;
    }
  }
}

std::string Item::bytes() const {
  ByteWriter bytes(true);
  writePart(bytes, part());
  return bytes.bytes;
}

std::string Job::capture() const {
  const auto parts = [](const Items& items) {
    std::vector<Part> result;
    for (const Item& item : items) result.push_back(item.part());
    return result;
  };
  CaptureFields file;
  for (const Items& object : objects) {
    file.statics21.push_back({.first = {.parts = parts(object)}});
  }
  file.customers.clear();
  for (const Recipient& recipient : recipients) {
    file.customers.push_back({.id = recipient.id, .pages = {}});
    for (const Sheet& sheet : recipient.sheets) {
      PageFields fields = page(parts(sheet.items));
      fields.name = sheet.name;
      file.customers.back().pages.push_back(fields);
    }
  }
  return writeCapture(file).bytes;
}

std::u16string JobGenerator::word() { return std::u16string(oneOf(kVocabulary)); }

std::u16string JobGenerator::amount() {
  return inWords(below(900)) + u"." + inWords(10 + below(90));
}

std::u16string JobGenerator::sentence(int words) {
  std::u16string result(oneOf(kNames));
  for (int i = 1; i < words; ++i) result += u" " + (below(8) == 0 ? amount() : word());
  return result;
}

void JobGenerator::addTable(Items& items, int y) {
  items.push_back({.type = 3, .x = 250, .y = y - 60, .size = 1500, .colour = 0xDEEBF7});
  const int rows = 4 + below(10);
  for (int row = 0; row < rows; ++row, y += 50) {
    items.push_back({.x = 250, .y = y, .words = std::u16string(oneOf(kArticles))});
    items.push_back({.x = 1500, .y = y, .words = u"EUR"});
    items.push_back({.x = 1600, .y = y, .words = below(3) == 0 ? u"12.50" : amount()});
    items.push_back({.type = row % 2 == 0 ? 30 : 2, .x = 250, .y = y + 10, .size = 1600});
  }
  items.push_back({.type = 31, .x = 250, .y = y + 20});
  items.push_back({.x = 250, .y = y + 80, .words = u"Total EUR " + amount(), .font = 9});
}

Sheet JobGenerator::sheet(int number) {
  Items items = {
      {.type = 9, .x = 1900, .y = 120},
      {.type = 5, .x = 250, .y = 100, .size = 300, .words = u"logo"},
      {.type = 2, .x = 250, .y = 340, .size = 1600},
      {.x = 250, .y = 500, .words = sentence(2)},
      {.x = 250, .y = 550, .words = inWords(1 + below(99)) + u" Quay Street"},
      {.x = 1700, .y = 700, .words = inWords(1 + below(28)) + u" January 2026"},
      {.x = 250, .y = 850, .words = sentence(3), .font = 9},
  };
  int y = 950;
  for (int paragraphs = 2 + below(3); paragraphs > 0; --paragraphs, y += 300) {
    items.push_back({.x = 250, .y = y, .words = sentence(4 + below(16))});
  }
  addTable(items, y);
  items.push_back({.type = 5, .x = 300, .y = 2900, .words = sentence(1)});
  items.push_back({.type = 3, .x = 900 + below(99), .y = 2900, .size = 100});
  items.push_back({.type = 4, .x = 1500, .y = 2900, .size = below(99)});
  items.push_back({.type = 9, .x = 250, .y = 3300, .size = 1});
  // The page number and marks, which are the same on all pages.
  items.push_back({.x = 2000, .y = 3400, .words = u"Page " + inWords(number)});
  for (const int mark : {6, 6, 23, 23}) items.push_back({.type = mark, .x = 10, .y = 10});
  for (int type = 0; type < 45; ++type) {
    const int place = below(static_cast<int>(items.size()));
    items.insert(items.begin() + place, {.type = type,
                                         .x = 200 + below(1900),
                                         .y = 200 + below(3000),
                                         .words = sentence(1 + below(3))});
    if (type == 9) items[static_cast<std::size_t>(place)].size = 0;
  }
  for (std::size_t i = 0; i < items.size(); ++i) items[i].index = static_cast<int>(i);
  return {(number == 1 ? u"Letter " : u"Schedule ") + inWords(number), items};
}

Recipient JobGenerator::recipient(int number) {
  Recipient result{.id = inWords(100400 + number) + u" " + std::u16string(oneOf(kNames))};
  for (int pages = 2 + below(3); pages > 0; --pages) {
    result.sheets.push_back(sheet(static_cast<int>(result.sheets.size()) + 1));
  }
  return result;
}

Job JobGenerator::job() {
  Job job;
  for (const int y : {100, 3300}) {
    job.objects.push_back({{.type = 4, .x = 50, .y = y},
                           {.x = 100, .y = y, .words = u"Example Insurance"},
                           {.x = 100, .y = y + 50, .words = sentence(5)},
                           {.type = 2, .x = 20, .y = y + 70}});
  }
  for (int number = 1; number <= 3; ++number) job.recipients.push_back(recipient(number));
  return job;
}

}  // namespace rvf::test
