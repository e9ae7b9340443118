#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "pagemodel/DrawStatic.h"
#include "pagemodel/PartRows.h"
#include "support/Capture.h"
#include "text/NativeText.h"

namespace rvf::test {
namespace {

using namespace std::string_literals;
using NamedParts = std::vector<std::pair<std::string, Part>>;

constexpr int kLowest = std::numeric_limits<int>::min(), kHighest = -(kLowest + 1);

const LinkFields kLink;

/// Parts whose fields lead other ways than those of allParts().
NamedParts specialParts() {
  NamedParts parts;
  const auto add = [&parts](std::string name, const Part& part) {
    parts.emplace_back(std::move(name), part);
  };
  for (const int n : {-90, -3, -2, 2, 3, -1, 358, 200, -400, kLowest}) {
    add("rotation " + std::to_string(n), text({.rotation = n}));
  }
  const Run high{.x = -1, .y = -1, .charCount = -2, .runClass = 0x1F4, .extra = -3};
  const std::array<int, 6> outline = {1, 2, 3, 4, 5, 6};
  add("high bits", text({.runs = {high}, .textFlags = 0xF3}));
  add("nothing", text({.text = u"", .runs = {}, .textFlags = 12}));
  add("outlines alone", text({.text = u"a\0b"s, .outlines = {outline, outline}}));
  add("two of each", text({.extensionRuns = {{}, high}, .outlines = {{}, outline}}));
  for (const int n : {2, 3, 4, 5, -3}) add("kind " + std::to_string(n), textProp({.propKind = n}));
  // The sum of the lengths wraps at 32 bits, and one that is not above 0 means no characters.
  for (const auto& [a, b] : {std::pair{kHighest, kHighest}, {-5, 5}, {kHighest, 1}}) {
    const std::string bytes = ByteWriter().i32(1, 2, a, b).u16(0, 0).bytes;
    add("wrapping lengths", {.type = 7, .payload = [=](ByteWriter& w, int) { w.raw(bytes); }});
  }
  for (const int n : {0, 1, 2, 3, 10, -5, 12, 77}) {
    add("kind " + std::to_string(n), image({.imageKind = n}));
  }
  for (const int n : {0, 5, -5, kHighest}) {
    const std::string name = "of a kind without bytes, length " + std::to_string(n);
    add(name, image({.imageKind = 11, .dataLength = n}).at(157));
    add(name, image({.imageKind = -11, .dataLength = n}).at(126));
  }
  add("negative length", image({.bytes = "12345", .dataLength = -5}));
  // Two records of 32 bytes, which in old images grow by a word each, and a rest.
  std::string records;
  for (int i = 0; i < 70; ++i) records += static_cast<char>(i);
  for (const int n : {9, 10}) add("records", image({.imageKind = n, .bytes = records}));
  const ColourFields legacy{.kind = -126, .value = 5};
  add("legacy colour", image({.imageKind = 10, .bytes = records, .colourC = legacy}));
  add("empty link section", image({.imageFlag = 0, .link = kLink}));
  parts.back().second.emptyLinkSection = true;
  for (const int n : {0, 1, 5, -2}) {
    const std::string bytes = n < 0 ? "" : "12345";
    add("mode " + std::to_string(n), resource({.dataMode = n, .bytes = bytes}));
  }
  add("no bytes", resource({.bytes = ""}));
  add("without points", poly({.points = {}, .gradient = test::Gradient{}}));
  add("vertical", lineSet({.horizontal = 0}));
  add("wide type and a link that has no place", rect());
  parts.back().second.type = 0x1F203;
  parts.back().second.link = kLink;
  add("bare", hyperlinkArea({.url = u"", .linkFlagA = 0}));
  add("bare", signatureField({.fieldName = "", .fieldValue = "", .attributes = {}}));
  add("bare", taggedObject({.tagText = u"", .altText = u""}));
  add("bare", bookmark({.title = u""}));
  add("bare", locSearchKey({.keyText = u""}));
  add("bare", startEnd());
  add("bare", subscribe({.entries = {}}));
  const SubscribeEntryFields newer{.version = 500, .entryId = 7, .sections = {"one", "two"}};
  add("forms", subscribe({.entries = {newer, {.version = {}, .entryId = 100}}}));
  add("negative id", subscribe({.entries = {{.version = {}, .entryId = -7}}}));
  for (const int n : {0, 9999, 10000, 39999, 40001, 65535}) {
    add("tag id " + std::to_string(n), taggedObject({.tagId = n}));
  }
  for (const int n : {0, 8, 30, 60, 61, -1}) {
    add("language " + std::to_string(n), taggedObject({.language = n}));
  }
  for (const int n : {45, 200, 255}) add("unknown code", empty(n));
  return parts;
}

/// Reads a part over another one; the rows have a copy and, at last, a moved part by what differs.
Rows layoutOf(DrawPart& part, DrawPart& copy, const Part& source, int version, bool wide) {
  part.ownerTag = 17;  // not the reader's, and copied
  readOver(part, source, version, wide);
  Rows rows = rowsOf(part);
  const auto changes = [&rows](std::string name, const DrawPart& other) {
    for (const std::string& row : rowsOf(other)) {
      if (std::ranges::find(rows, row) == rows.end()) name += " [" + row + "]";
    }
    return name;
  };
  copyPart(copy, readFresh(rect()));  // stays where nothing is copied
  copyPart(copy, part);
  shiftPart(part, 0, 0);
  EXPECT_EQ(rowsOf(part), rows);
  shiftPart(part, 5, -7);
  const std::string shifted = changes("shifted", part);
  makeBlank(part);  // the copy has all that it shows for itself
  rows.push_back(changes("copy", copy));
  if (version == kNewestPart) rows.push_back(shifted);
  return rows;
}

TEST(Layouts, PartsOfEveryTypeAndVersion) {
  NamedParts parts;
  const std::vector<Part> all = allParts();
  for (const Part& part : all) parts.emplace_back("in full", part);
  for (auto& [name, part] : specialParts()) {
    part.extraId = 0;
    parts.emplace_back(name, part);
  }
  DrawPart slot, copy;
  std::string text;
  for (const auto& [name, part] : parts) {
    Deltas deltas;
    for (const int v : versionGates()) {
      if (part.version.value_or(v) != v) continue;
      readOver(slot, all[static_cast<std::size_t>(v + 157) % all.size()], v);
      const Rows rows = layoutOf(slot, copy, part, v, false);
      EXPECT_EQ(layoutOf(slot, copy, part, v, true), rows) << name << ' ' << v;
      deltas.add(std::to_string(v), rows);
    }
    const auto type = static_cast<std::size_t>(part.type);
    text += type < kPartTypeCount ? toNative(kPartTypeNames[type]) : std::to_string(type);
    text += ", " + name + "\n" + deltas.text();
  }
  expectFrozen("parts.txt", text);
}

/// Reads a whole record, and shorter ones, which fail.
template <class Record>
void readRecord(Record& record, void (*read)(Record&, eArchive&), const std::string& bytes) {
  for (std::size_t length = 0; length < bytes.size(); ++length) {
    LoadedBytes shorter(bytes.substr(0, length));
    Record cut;
    read(cut, shorter.archive);
    ASSERT_TRUE(shorter.archive.failed()) << length;
  }
  LoadedBytes file(bytes);
  read(record, file.archive);
  EXPECT_FALSE(file.archive.failed());
  EXPECT_EQ(file.archive.GetPosition(), static_cast<i32>(bytes.size()));
}

TEST(Layouts, ListsOfEveryVersion) {
  std::string text;
  for (const int hasBytes : {0, 3}) {
    Deltas deltas;
    for (const int v : {-107, -106, 0, 100, 101, 102, 103, 104, 105, 106, 107}) {
      DrawList l;
      l.byteA = l.byteB = l.listMark = 9;  // from the page before
      l.valueA = l.contentTally = 9;
      for (const std::size_t count : {2U, 0U, 1U}) {
        ListFields f{.version = v, .originX = -5, .originY = 6, .hasBytes = hasBytes};
        f.parts.assign(count, rect());
        f.byteA = 0x104;
        f.listFlags = 0x91;
        f.sections = {"unknown"};
        ByteWriter w;
        writeList(w, f);
        readRecord(l, readDrawList, w.bytes);
        EXPECT_EQ(l.parts().size(), count);
      }
      deltas.add(std::to_string(v),
                 {Shown::row("head", l.capacity(), l.originX, l.originY),
                  Shown::row("bytes", l.byteA, l.byteB, l.listMark, l.listFlags),
                  Shown::row("values", l.contentTally, l.valueA, l.valueB, l.listExtra)});
    }
    text += "hasBytes " + std::to_string(hasBytes) + "\n" + deltas.text();
  }
  expectFrozen("lists.txt", text);
}

TEST(Layouts, StaticObjectsOfEveryVersion) {
  std::string text;
  for (const bool hasSecond : {false, true}) {
    Deltas deltas;
    for (const int v : {-111, -107, 0, 100, 101, 102, 103, 104, 105, 106, 107, 108, 110, 111}) {
      StaticFields f{.version = v, .first = {.parts = {rect()}}, .sections = {"unknown", ""}};
      if (hasSecond) f.second = ListFields{.parts = {rect(), line()}};
      ByteWriter w, lists;
      writeStatic(w, f);
      writeList(lists, f.first);
      DrawStatic o;
      readRecord(o, readDrawStatic, w.bytes);
      deltas.add(std::to_string(v),
                 {Shown::row("head", o.name, o.hasSecond, o.firstList.count, o.secondList.count),
                  Shown::row("values", o.valueA, o.valueB, o.valueC, o.valueD, o.valueE, o.valueF),
                  Shown::row("tail", o.indexA, o.indexB, o.loadLists)});
      LoadedBytes again(w.bytes);
      o.loadLists = 0;  // stops in front of the lists
      readDrawStatic(o, again.archive);
      EXPECT_EQ(w.bytes.find(lists.bytes), static_cast<std::size_t>(again.archive.GetPosition()));
      EXPECT_EQ(o.loadLists, 0);
    }
    text += std::string(hasSecond ? "two lists" : "one list") + "\n" + deltas.text();
  }
  expectFrozen("static-objects.txt", text);
}

}  // namespace
}  // namespace rvf::test
