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
  for (const int n : {-90, -3, -2, 0, 2, 3, 4, -1, 358, 200, -400, kLowest}) {
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

/// Slots that parts of all types are read into and copied to, one over the other.
struct Slots {
  DrawPart own, copy;
};

Rows layoutOf(Slots& slots, const Part& part, int version, bool wide) {
  DrawPart& own = slots.own;
  readOver(own, part, version, wide);
  Rows rows = rowsOf(own);
  const auto changes = [&rows](const std::string& name, const DrawPart& other) {
    std::string changed = name;
    for (const std::string& row : rowsOf(other)) {
      if (std::ranges::find(rows, row) == rows.end()) changed += " [" + row + "]";
    }
    return changed;
  };
  // What is not copied leaves the rectangle that is there.
  copyPart(slots.copy, readFresh(rect({.lineWidth = 1})));
  own.ownerTag = 17;
  copyPart(slots.copy, own);
  own.ownerTag = 0;
  shiftPart(own, 0, 0);
  EXPECT_EQ(rowsOf(own), rows);
  shiftPart(own, 5, -7);
  const std::string shifted = changes("shifted", own);
  makeBlank(own);  // the copy has all that it shows for itself
  rows.push_back(changes("copy", slots.copy));
  if (version == kNewestPart) rows.push_back(shifted);
  return rows;
}

TEST(Layouts, PartsOfEveryTypeAndVersion) {
  NamedParts parts;
  for (const Part& part : allParts()) parts.emplace_back("in full", part);
  for (const auto& part : specialParts()) parts.push_back(part);
  Slots slots;
  std::string text;
  for (const auto& [name, part] : parts) {
    Deltas deltas;
    for (const int version : versionGates()) {
      if (part.version.value_or(version) != version) continue;
      const Rows rows = layoutOf(slots, part, version, false);
      EXPECT_EQ(layoutOf(slots, part, version, true), rows) << name << ' ' << version;
      deltas.add(std::to_string(version), rows);
      readOver(slots.own, parts[static_cast<std::size_t>(version + 157) % 45].second, version);
    }
    const auto type = static_cast<std::size_t>(part.type);
    text += type < kPartTypeCount ? toNative(kPartTypeNames[type]) : std::to_string(type);
    text += ", " + name + "\n" + deltas.text();
  }
  expectFrozen("parts.txt", text);
}

TEST(Layouts, ListsOfEveryVersion) {
  std::string text;
  for (const int hasBytes : {0, 3}) {
    Deltas deltas;
    for (const int v : {-107, -106, 0, 100, 101, 102, 103, 104, 105, 106, 107}) {
      DrawList list;
      list.byteA = list.byteB = list.listMark = 9;  // from the page before
      list.valueA = list.contentTally = 9;
      for (const int count : {2, 0, 1}) {
        ByteWriter w;
        writeList(w, {.version = v,
                      .parts = std::vector<Part>(static_cast<std::size_t>(count), rect()),
                      .originX = -5,
                      .originY = 6,
                      .hasBytes = hasBytes,
                      .byteA = 0x104,
                      .listFlags = 0x91,
                      .sections = {"unknown"}});
        LoadedBytes file(w.bytes);
        readDrawList(list, file.archive);
        EXPECT_FALSE(file.archive.failed()) << v;
        EXPECT_EQ(file.archive.GetPosition(), w.size());
        EXPECT_EQ(list.count, count);
      }
      deltas.add(
          std::to_string(v),
          {Shown::row("head", list.capacity(), list.originX, list.originY),
           Shown::row("bytes", list.byteA, list.byteB, list.listMark, list.listFlags),
           Shown::row("values", list.contentTally, list.valueA, list.valueB, list.listExtra)});
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
      StaticFields fields{.version = v, .first = {.parts = {rect()}}, .sections = {"unknown", ""}};
      if (hasSecond) fields.second = ListFields{.parts = {rect(), line()}};
      ByteWriter w;
      writeStatic(w, fields);
      for (int length = 0; length < w.size(); ++length) {
        LoadedBytes shorter(w.bytes.substr(0, static_cast<std::size_t>(length)));
        DrawStatic cut;
        readDrawStatic(cut, shorter.archive);
        ASSERT_TRUE(shorter.archive.failed()) << length;
      }
      LoadedBytes file(w.bytes);
      DrawStatic o;
      readDrawStatic(o, file.archive);
      EXPECT_FALSE(file.archive.failed()) << v;
      EXPECT_EQ(file.archive.GetPosition(), w.size());
      deltas.add(std::to_string(v),
                 {Shown::row("head", o.name, o.hasSecond, o.firstList.count, o.secondList.count),
                  Shown::row("values", o.valueA, o.valueB, o.valueC, o.valueD, o.valueE, o.valueF),
                  Shown::row("tail", o.indexA, o.indexB, o.loadLists)});
      LoadedBytes again(w.bytes);
      o.loadLists = 0;  // stops in front of the lists
      readDrawStatic(o, again.archive);
      ByteWriter lists;
      writeList(lists, fields.first);
      EXPECT_EQ(w.bytes.find(lists.bytes), static_cast<std::size_t>(again.archive.GetPosition()));
      EXPECT_EQ(o.loadLists, 0);
    }
    text += std::string(hasSecond ? "two lists" : "one list") + "\n" + deltas.text();
  }
  expectFrozen("static-objects.txt", text);
}

}  // namespace
}  // namespace rvf::test
