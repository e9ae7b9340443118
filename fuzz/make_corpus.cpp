// Writes the inputs that fuzzing starts from: for each target a folder of small, valid inputs that
// together hold every layout there is, so that the engine need not find the formats itself.
//   make_corpus FOLDER

#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <set>
#include <stdexcept>
#include <string>
#include <utility>

#include "support/Capture.h"

namespace rvf::test {
namespace {

class Corpus {
 public:
  explicit Corpus(std::filesystem::path folder) : folder_(std::move(folder)) {}

  /// An input that is there already is not written again.
  void add(const std::string& target, const std::string& name, const std::string& bytes) {
    if (!written_.insert(target + bytes).second) return;
    std::filesystem::create_directories(folder_ / target);
    std::ofstream file(folder_ / target / name, std::ios::binary);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    file.close();
    if (!file) throw std::runtime_error("cannot write " + (folder_ / target / name).string());
  }

 private:
  std::filesystem::path folder_;
  std::set<std::string> written_;
};

std::string join(const char* what, int number, bool wide) {
  return what + std::string("-") + std::to_string(number) + (wide ? "-wide" : "");
}

// What stands in front of the file, or files, in the inputs of the targets.
std::string listHead(bool wide) { return ByteWriter().u8(wide ? 1 : 0).i32(5, -7).bytes; }
std::string pairHead(int flags, int tolerance) {
  return ByteWriter().u8(flags).i32(tolerance, tolerance).u8(0).bytes;
}

constexpr const char* kSeparator = "=PAIR=";

std::string bytesOf(const CaptureFields& f) { return writeCapture(f).bytes; }

std::string listBytes(const ListFields& list, bool wide) {
  ByteWriter w(wide);
  writeList(w, list);
  return w.bytes;
}

// Every type at every version that lays it out in another way than the version before.
void addParts(Corpus& corpus) {
  for (const bool wide : {false, true}) {
    const std::string emptyList = listBytes({.version = 100}, wide);
    for (const Part& part : allParts()) {
      std::string before;
      for (const int v : versionGates()) {
        ByteWriter w(wide);
        writePart(w, part, v);
        if (w.bytes.substr(4) == before) continue;
        before = w.bytes.substr(4);
        const std::string list =
            listBytes({.version = 100, .partVersion = v, .parts = {part}}, wide);
        corpus.add("draw_list", join(("part-" + std::to_string(part.type)).c_str(), v, wide),
                   listHead(wide) + emptyList + list);
      }
    }
    for (const int v : {102, 118, 125, 126}) {
      const Part records = image({.imageKind = 10, .bytes = std::string(70, 'r')});
      const std::string list = listBytes({.partVersion = v, .parts = {records}}, wide);
      corpus.add("draw_list", join("image-records", v, wide), listHead(wide) + list + list);
    }
    const std::string all = listBytes({.parts = allParts()}, wide);
    corpus.add("draw_list", join("all-parts", 0, wide), listHead(wide) + all + all);
    for (int v = 98; v <= 108; ++v) {
      const std::string list = listBytes({.version = v, .parts = {rect()}, .listFlags = 32}, wide);
      corpus.add("draw_list", join("list", v, wide), listHead(wide) + list + list);
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

void addCaptures(Corpus& corpus) {
  for (const int magic : {kNarrowMagic, kWideMagic, kTrailerMagic, 12345678}) {
    for (int version = 0; version <= 4; ++version) {
      for (const bool wide : {false, true}) {
        const std::string bytes = bytesOf(richCapture(magic, version, wide));
        const std::string name = join(join("capture", version, wide).c_str(), magic, false);
        corpus.add("capture_file", name, (wide ? "\1" : std::string(1, '\0')) + bytes);
        corpus.add("compared_pair", name, pairHead(wide ? 7 : 4, 0) + bytes);
      }
    }
  }
  for (int v = 99; v <= 112; ++v) {
    CaptureFields f = captureOf({page({staticRef({.useSecond = 1})})});
    f.statics21 = {{.version = v, .second = ListFields{.parts = {line()}}}};
    corpus.add("capture_file", join("static", v, false), '\0' + bytesOf(f));
  }
  corpus.add("capture_file", "smallest", '\0' + smallestCapture(false));
  corpus.add("capture_file", "smallest-trailer", '\0' + smallestCapture(true));
}

// References to objects whose lists differ, references without a partner, and placed lists.
void addGroups(Corpus& corpus) {
  const std::vector<Part> parts = allParts();
  const Part first = staticRef(), second = staticRef({.staticIndex = 1, .useSecond = 1});
  for (std::size_t i = 0; i + 1 < parts.size(); ++i) {
    CaptureFields a = captureOf({page({first, text(), first})});
    const ListFields own{.originX = 3}, other{.parts = {parts[i], rect(), line()}};
    a.statics21 = {{.first = {.parts = {parts[i], rect()}}}, {.first = own, .second = other}};
    CaptureFields b = a;
    b.statics21[0].first.parts = {parts[i + 1], rect(), text()};
    b.customers[0].pages[0] = page({first, second, first, line(), second});
    a.customers[0].pages[0].body->placed = {{.list = other}, {.list = own}};
    b.customers[0].pages[0].body->placed = {{.list = own, .x = 4}};
    const std::string name = std::to_string(parts[i].type);
    const std::string head = pairHead(4, static_cast<int>(i % 3));
    corpus.add("compared_pair", "groups-" + name, head + bytesOf(a) + kSeparator + bytesOf(b));
    corpus.add("compared_pair", "spilled-" + name, head + bytesOf(b) + kSeparator + bytesOf(a));
  }
}

// Each type against itself, against its neighbour and in another order.
void addPairs(Corpus& corpus) {
  const std::vector<Part> parts = allParts();
  for (std::size_t i = 0; i < parts.size(); ++i) {
    const Part& part = parts[i];
    const Part& next = parts[(i + 1) % parts.size()];
    const std::string head = pairHead(4, static_cast<int>(i % 3));
    const std::string name = std::to_string(part.type);
    corpus.add("compared_pair", "same-" + name, head + onePage({part}));
    corpus.add("compared_pair", "other-" + name,
               head + onePage({part, rect()}) + kSeparator + onePage({next, rect()}));
    corpus.add("compared_pair", "order-" + name,
               head + onePage({part, next}) + kSeparator + onePage({next, part, part}));
  }
  // Images that own a link, or names, or nothing.
  const Part images[] = {image({.link = LinkFields{}}), image({.nameValues = {{}}}), image()};
  for (const Part& part : images) {
    const std::string name = "same-image-" + std::to_string(&part - images);
    corpus.add("compared_pair", name, pairHead(4, 0) + onePage({part}));
  }
  addGroups(corpus);
  CaptureFields two = captureOf({page({text()}), page({line()})});
  two.customers.push_back({.id = u"C2"});
  const std::string one = onePage({text()});
  corpus.add("compared_pair", "more-pages", pairHead(0, 1) + one + kSeparator + bytesOf(two));
  corpus.add("compared_pair", "fewer-pages", pairHead(0, 1) + bytesOf(two) + kSeparator + one);
  const std::string rich = bytesOf(richCapture(kNarrowMagic, 3, false));
  two.customers[1].id = u"C3";
  corpus.add("compared_pair", "other-id", pairHead(0, 1) + rich + kSeparator + bytesOf(two));
}

void addLinks(Corpus& corpus) {
  for (const bool wide : {false, true}) {
    for (const int tag : {99, 100, 101, 102, 103, -102}) {
      ByteWriter w(wide);
      writeLink(w, {.tag = tag});
      writeLink(w, {.tag = tag, .text = u""});
      corpus.add("link_record", join("tagged", tag, wide),
                 ByteWriter().u8(wide ? 5 : 4).u16(0).bytes + w.bytes);
    }
  }
  for (const int version : {115, 132, 133, 137}) {
    for (const int capacity : {0, 3, 9}) {
      ByteWriter w;
      writeOldLink(w, {.capacity = capacity}, version);
      corpus.add("link_record", join(join("old", version, false).c_str(), capacity, false),
                 ByteWriter().u8(2).i16(version).bytes + w.bytes);
    }
  }
}

std::string encoded(const std::string& ascii, int encoding) {
  if (encoding != 20 && encoding != 21) return ascii;
  std::string bytes;
  for (const char c : ascii) bytes += encoding == 20 ? std::string{c, '\0'} : std::string{'\0', c};
  return bytes;
}

void addTexts(Corpus& corpus) {
  const std::string options =
      "% comment\n-COMPARE=a.rvf,b.rvf\r\n /POS_TOLERANCE=5\n-DIFFTOLERANCE=-3\n-LINE_TOLERANCE=7\n"
      "-MSGENCODE=UTF16LE\n-DBCS_MODE=TRUE\n-SIMPLERETURN\n-MESSAGEFILE=m\n-DIFFERENCEFILE=d\n"
      "-CONTROLFILE=c\n-CONTROLFILEENCODING=UTF8\nwrong\n\n-last";
  for (const int encoding : {-2, 1, 2, 5, 7, 9, 10, 11, 12, 17, 20, 21, 28, 30, 46, 50, 52, 53}) {
    for (const char* mark : {"", "\xEF\xBB\xBF", "\xFF\xFE", "\xFE\xFF"}) {
      const std::string head = ByteWriter().u8(encoding + 2, 1).bytes + mark;
      corpus.add(
          "control_file",
          "options-" + std::to_string(encoding) + "-" + std::to_string(std::string(mark).size()),
          head + encoded(options, encoding));
    }
  }
  for (const int encoding : {11, 20, 21}) {
    corpus.add("control_file", "long-line-" + std::to_string(encoding),
               ByteWriter().u8(encoding + 2, 0).bytes + encoded(std::string(5000, 'l'), encoding));
  }
  const std::string messages =
      "// messages\n#define MESS_SYMB_VER 1602008\n#define MSG_A 1847 // W|0|0|File |1| not open.\n"
      "#define MSG_B 9042 // S|1|2|Exception |2| and |1| and \\|3| %s\n#define MSG_C 12000 // "
      "I|||C\n"
      "#define MSG_D 1019 // E|0|1|" +
      std::string(140, 'x') + " |1|\n";
  const std::string head = ByteWriter().u8(3).bytes;
  const std::string held = ByteWriter()
                               .u8(3)
                               .u16(1847)
                               .u8(0x31)
                               .raw("abc")
                               .u16(9042)
                               .u8(0x23)
                               .raw("de")
                               .u16(7)
                               .u8(2)
                               .bytes;
  for (const int encoding : {11, 20, 21, 30}) {
    for (const int flags : {0, 1, 3, 9, 17, 129}) {
      corpus.add("catalogue", "messages-" + std::to_string(encoding) + "-" + std::to_string(flags),
                 ByteWriter().u8(flags, encoding).bytes + held + encoded(messages, encoding));
    }
  }
  corpus.add("catalogue", "malformed",
             ByteWriter().u8(1, 30).bytes + held + "//\n#define MSG_A 1847 // W|0 File not open\n");
}

void addScripts(Corpus& corpus) {
  ByteWriter values;
  values.u8(0, 1).u8(1).u16(2).u8(2).i16(-3).u8(3).i32(-4).u8(4).u32(5).u8(5).i64(-6).u8(6).f64(
      1.5);
  values.u8(7, 5)
      .raw("bytes")
      .u8(9)
      .u8(8, 4)
      .raw("text")
      .u8(0)
      .u8(8, 60)
      .raw(std::string(60, 'w'))
      .u8(31);
  corpus.add("archive_round_trip", "values", ByteWriter().u8(0, 3, 0).bytes + values.bytes);
  for (int shape = 0; shape < 128; shape += 5) {
    const std::string record = ByteWriter().u8(9, shape).bytes;
    const std::string section = "\3" + std::string("abcd") + "\7\2xy\1";
    std::string script = record;
    for (int i = 0; i < 4; ++i) script += section + record + section + "\n\n\n";
    corpus.add("archive_round_trip", join("record", shape, false),
               ByteWriter().u8(1, 200, 9).bytes + script + values.bytes);
  }
}

void addAll(Corpus& corpus) {
  addParts(corpus);
  addCaptures(corpus);
  addPairs(corpus);
  addLinks(corpus);
  addTexts(corpus);
  addScripts(corpus);
}

}  // namespace
}  // namespace rvf::test

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: make_corpus FOLDER\n");
    return 2;
  }
  try {
    rvf::test::Corpus corpus(argv[1]);
    rvf::test::addAll(corpus);
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "make_corpus: %s\n", failure.what());
    return 1;
  }
  return 0;
}
