// Writes the inputs that fuzzing starts from, as far as they can be generated: small, valid files
// and lists that together hold every layout, so that the engine need not discover the formats. All
// others are in corpus.
//   make_corpus FOLDER

#include <filesystem>
#include <fstream>
#include <set>
#include <stdexcept>
#include <string>

#include "support/Capture.h"

namespace rvf::test {
namespace {

/// The inputs of a target, numbered and without duplicates.
class Inputs {
 public:
  explicit Inputs(std::filesystem::path folder) : folder_(std::move(folder)) {
    std::filesystem::create_directories(folder_);
  }

  void add(const std::string& bytes) {
    if (!written_.insert(bytes).second) return;
    const auto path = folder_ / std::to_string(written_.size());
    if (!(std::ofstream(path, std::ios::binary) << bytes).flush()) {
      throw std::runtime_error("cannot write " + path.string());
    }
  }

 private:
  std::filesystem::path folder_;
  std::set<std::string> written_;
};

std::string bytesOf(const CaptureFields& f) { return writeCapture(f).bytes; }

std::string bytesOf(const ListFields& list, bool wide) {
  ByteWriter w(wide);
  writeList(w, list);
  return w.bytes;
}

void addLists(Inputs& inputs) {
  for (const bool wide : {false, true}) {
    const auto add = [&](const ListFields& first, const ListFields& second) {
      const std::string head = ByteWriter().u8(wide ? 1 : 0).i32(5, -7).bytes;
      inputs.add(head + bytesOf(first, wide) + bytesOf(second, wide));
    };
    // Every type at every version whose layout differs from that of the previous version.
    for (const Part& part : allParts()) {
      std::string before;
      for (const int v : versionGates()) {
        ByteWriter w(wide);
        writePart(w, part, v);
        if (w.bytes.substr(4) == before) continue;
        before = w.bytes.substr(4);
        add({.version = 100}, {.version = 100, .partVersion = v, .parts = {part}});
      }
    }
    for (const int v : {102, 118, 125, 126}) {
      const Part records = image({.imageKind = 10, .bytes = std::string(70, 'r')});
      const ListFields list{.partVersion = v, .parts = {records}};
      add(list, list);
    }
    add({.parts = allParts()}, {.parts = allParts()});
    for (int v = 98; v <= 108; ++v) {
      const ListFields list{.version = v, .parts = {rect()}, .listFlags = 32};
      add(list, list);
    }
  }
}

CaptureFields richCapture(int magic, int version, bool wide) {
  CaptureFields f{.magic = magic, .version = version, .wide = wide, .label = u"label"};
  const ListFields list{.parts = {text(), rect()}};
  f.statics21 = {{.first = list}, {.version = 109, .first = list, .second = list}};
  f.statics24 = {{.version = 100, .first = list}};
  f.statics23 = {{.version = 106, .first = list, .second = list}};
  f.statics175 = {{.version = 102}, {}};
  PageFields placed =
      page({staticRef({.useSecond = 1}), staticRef({.objectType = 24}), line(),
            staticRef({.objectType = 175, .staticIndex = 1}), staticRef({.objectType = 23})});
  placed.body->placed = {{.list = list}, {.list = list, .x = 3}};
  PageFields old = page({image({.dataLength = 5}), poly()}, 118);
  old.tag = kNoTag;
  const PageFields newer{.tag = -104, .sections = {"", "unknown"}};
  f.customers = {{.id = u"C1", .pages = {placed, old}},
                 {.id = u"C2", .pages = {newer}, .tag = -103}};
  return f;
}

void addPair(Inputs& pairs, int flags, int tolerance, const std::string& first,
             const std::string& second = "") {
  const std::string head = ByteWriter().u8(flags).i32(tolerance, tolerance).u8(0).bytes;
  pairs.add(head + first + (second.empty() ? "" : "=PAIR=" + second));
}

void addCaptures(Inputs& inputs, Inputs& pairs) {
  for (const int magic : {kNarrowMagic, kWideMagic, kTrailerMagic, 12345678}) {
    for (int version = 0; version <= 4; ++version) {
      for (const bool wide : {false, true}) {
        const std::string bytes = bytesOf(richCapture(magic, version, wide));
        inputs.add(std::string(1, wide ? '\1' : '\0') + bytes);
        addPair(pairs, wide ? 7 : 4, 0, bytes);
      }
    }
  }
  for (int v = 99; v <= 112; ++v) {
    CaptureFields f = captureOf({page({staticRef({.useSecond = 1})})});
    f.statics21 = {{.version = v, .second = ListFields{.parts = {line()}}}};
    inputs.add('\0' + bytesOf(f));
  }
  for (const bool trailer : {false, true}) inputs.add('\0' + smallestCapture(trailer));
}

// References to objects whose lists differ, references without a partner, and placed lists.
void addGroups(Inputs& pairs) {
  const std::vector<Part> parts = allParts();
  const Part first = staticRef(), second = staticRef({.staticIndex = 1, .useSecond = 1});
  for (std::size_t i = 0; i + 1 < parts.size(); ++i) {
    const int tolerance = static_cast<int>(i % 3);
    CaptureFields a = captureOf({page({first, text(), first})});
    const ListFields own{.originX = 3}, other{.parts = {parts[i], rect(), line()}};
    a.statics21 = {{.first = {.parts = {parts[i], rect()}}}, {.first = own, .second = other}};
    CaptureFields b = a;
    b.statics21[0].first.parts = {parts[i + 1], rect(), text()};
    b.customers[0].pages[0] = page({first, second, first, line(), second});
    a.customers[0].pages[0].body->placed = {{.list = other}, {.list = own}};
    b.customers[0].pages[0].body->placed = {{.list = own, .x = 4}};
    addPair(pairs, 4, tolerance, bytesOf(a), bytesOf(b));
    addPair(pairs, 4, tolerance, bytesOf(b), bytesOf(a));
  }
}

// More parts out of order than are searched for one by one: these use an index.
void addShuffled(Inputs& pairs) {
  std::vector<Part> lines, texts, shapes, all = allParts();
  for (int i = 0; i < 24; ++i) {
    const Part kinds[] = {rect({.lineWidth = i}), justOneLine({.x1 = i}), lineSet({.start = i}),
                          poly({.lineWidth = i}), signatureField({.fieldId = i})};
    shapes.push_back(kinds[i % 5]);
    lines.push_back(line({.points = {{7 * i % 24, 20}, {30, i / 2}}}));
    texts.push_back(text({.runs = {{.x = 5 * i % 24 - 9}}}));
  }
  const auto middle = all.begin() + static_cast<std::ptrdiff_t>(all.size()) / 2;
  for (const auto& parts : {lines, texts, shapes, {all.begin(), middle}, {middle, all.end()}}) {
    const std::vector<Part> reversed(parts.rbegin(), parts.rend());
    for (const int tolerance : {0, 1, -1}) {
      addPair(pairs, 4, tolerance, onePage(parts), onePage(reversed));
    }
  }
}

void addPairs(Inputs& pairs) {
  // Each type against itself, against its neighbour, and in another order.
  const std::vector<Part> parts = allParts();
  for (std::size_t i = 0; i < parts.size(); ++i) {
    const int tolerance = static_cast<int>(i % 3);
    const Part& part = parts[i];
    const Part& next = parts[(i + 1) % parts.size()];
    addPair(pairs, 4, tolerance, onePage({part}));
    addPair(pairs, 4, tolerance, onePage({part, rect()}), onePage({next, rect()}));
    addPair(pairs, 4, tolerance, onePage({part, next}), onePage({next, part, part}));
  }
  addPair(pairs, 4, 0, onePage({image({.link = LinkFields{}}), image({.nameValues = {{}}})}));
  CaptureFields two = captureOf({page({text()}), page({line()})});
  two.customers.push_back({.id = u"C2"});
  addPair(pairs, 0, 1, onePage({text()}), bytesOf(two));
  addPair(pairs, 0, 1, bytesOf(two), onePage({text()}));
  two.customers[1].id = u"C3";
  addPair(pairs, 0, 1, bytesOf(richCapture(kNarrowMagic, 3, false)), bytesOf(two));
}

void addAll(const std::filesystem::path& folder) {
  Inputs lists(folder / "draw_list"), captures(folder / "capture_file");
  Inputs pairs(folder / "compared_pair");
  addLists(lists);
  addCaptures(captures, pairs);
  addPairs(pairs);
  addGroups(pairs);
  addShuffled(pairs);
}

}  // namespace
}  // namespace rvf::test

int main(int argc, char** argv) {
  if (argc == 2) rvf::test::addAll(argv[1]);
  return argc == 2 ? 0 : 2;
}
