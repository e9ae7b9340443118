#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "pagemodel/DrawStatic.h"
#include "pagemodel/PartRows.h"
#include "support/Capture.h"
#include "support/Reporting.h"
#include "text/NativeText.h"

namespace rvf::test {
namespace {

using namespace std::string_literals;

constexpr int kLowest = std::numeric_limits<int>::min(), kHighest = -(kLowest + 1);

/// A POLY of version 154, where the colour of a gradient is a floating-point number.
Part oldGradient(double colour) {
  const auto write = [colour](ByteWriter& w, int v) {
    poly({.gradient = test::Gradient{}}).payload(w, v);
    const std::size_t found = w.bytes.find(ByteWriter().f64(double{kRed}).bytes);
    w.bytes.replace(found, 8, ByteWriter().f64(colour).bytes);
  };
  return Part{.type = 4, .payload = write}.at(154);
}

/// Parts whose fields take branches that those of allParts() do not.
std::vector<Part> specialParts() {
  std::vector<Part> parts;
  const auto add = [&parts](const auto&... part) { (parts.push_back(part), ...); };
  for (const int n : {-90, -3, -2, 2, 3, -1, 358, 200, -400, kLowest}) add(text({.rotation = n}));
  const Run high{.x = -1, .y = -1, .charCount = -2, .runClass = 0x1F4, .extra = -3};
  const std::array<int, 6> outline = {1, 2, 3, 4, 5, 6};
  add(text({.runs = {high}, .textFlags = 0xF3}), text({.text = u"", .runs = {}, .textFlags = 12}),
      text({.text = u"a\0b"s, .outlines = {outline, outline}}));
  for (const int n : {2, 3, 4, 5, -3}) add(textProp({.propKind = n}));
  // The sum of the lengths wraps at 32 bits, and one that is not above 0 means no characters.
  for (const auto& [a, b] : {std::pair{kHighest, kHighest}, {-5, 5}, {kHighest, 1}}) {
    const std::string bytes = ByteWriter().i32(1, 2, a, b).u16(0, 0).bytes;
    add(Part{7, [=](ByteWriter& w, int) { w.raw(bytes); }});
  }
  for (const int n : {0, 1, 2, 3, 10, -5, 12, 77}) add(image({.imageKind = n}));
  for (const int n : {0, 5, -5, kHighest}) {  // a kind without bytes
    add(image({.imageKind = 11, .dataLength = n}).at(157),
        image({.imageKind = -11, .dataLength = n}).at(126));
  }
  const ColourFields newer{.kind = 2, .version = 102, .sections = {"x"}};
  add(image({.bytes = "12345", .dataLength = -5, .colourA = newer}));
  // Two records of 32 bytes, each of which grows by a word in old images, and an incomplete one.
  std::string records;
  for (int i = 0; i < 70; ++i) records += static_cast<char>(i);
  const ColourFields legacy{.kind = -126, .value = 5};
  add(image({.imageKind = 9, .bytes = records}), image({.imageKind = 10, .bytes = records}),
      image({.imageKind = 10, .bytes = records, .colourC = legacy}),
      image({.imageFlag = 0, .link = LinkFields{}}));
  parts.back().emptyLinkSection = true;
  for (const int n : {0, 1, 5, -2}) add(resource({.dataMode = n, .bytes = n < 0 ? "" : "12345"}));
  add(resource({.bytes = ""}), poly({.points = {}, .gradient = test::Gradient{}}));
  for (const double n : {255.9, 4294967295.0, -1.0, std::nan(""), 1e300}) add(oldGradient(n));
  // A link that cannot be kept, in a part whose type takes more than a byte.
  add(lineSet({.offsets = {20}}), lineSet({.horizontal = 0}), rect());
  parts.back().type = 0x1F203;
  parts.back().link = LinkFields{};
  add(hyperlinkArea({.url = u"", .linkFlagA = 0}),
      signatureField({.fieldName = "", .fieldValue = "", .attributes = {}}),
      taggedObject({.tagText = u"", .altText = u""}), bookmark({.title = u""}),
      locSearchKey({.keyText = u""}), locSearchKey({.keyText = u"k"}), startEnd());
  const SubscribeEntryFields form{.version = 500, .entryId = 7, .sections = {"one", "two"}};
  add(subscribe({.entries = {}}), subscribe({.entries = {{.version = {}, .entryId = -7}}}),
      subscribe({.entries = {form, {.version = {}, .entryId = 100}}}));
  for (const int n : {0, 9999, 10000, 39999, 40001}) add(taggedObject({.tagId = n}));
  add(empty(45), empty(200), empty(255));
  // A zero character belongs to its text, which does not end there.
  add(taggedObject({.tagText = u"a\0b"s, .altText = u"\0"s, .actualText = u"\0c"s}),
      locSearchKey({.keyText = u"a\0b"s, .keySecondText = u"\0c"s}), bookmark({.title = u"\0d"s}));
  for (const int n : {0, 2, 256}) add(startEnd({.hasHyperlinkFlag = n}));
  // Entries beyond 65535 are read and dropped.
  const std::vector<NameValueFields> entries(65537, {.name = u"n"});
  add(startEnd({.nameValues = entries, .pairs = {{7, 8}}}).at(157));
  for (Part& part : parts) part.extraId = 0;
  return parts;
}

/// Reads a part over another one. The rows end with the differences of a copy and, at the newest
/// version, of a moved part.
Rows layoutOf(DrawPart& part, DrawPart& copy, const Part& source, int version, bool wide) {
  part.ownerTag = 17;  // not set by the reader, but copied
  readWhole(part, readDrawPart, recordOf(source, version, wide), wide);
  Rows rows = rowsOf(part);
  copyPart(copy, readFresh(rect()));  // remains if nothing is copied
  copyPart(copy, part);
  shiftPart(part, 5, -7);
  const std::string shifted = "shifted" + changedRows(rowsOf(part), rows);
  makeBlank(part);  // the copy owns everything that it shows
  rows.push_back("copy" + changedRows(rowsOf(copy), rows));
  if (version == kNewestPart) rows.push_back(shifted);
  return rows;
}

TEST(Layouts, PartsOfEveryTypeAndVersion) {
  const std::vector<Part> all = allParts(), special = specialParts();
  std::vector<Part> parts = all;
  parts.insert(parts.end(), special.begin(), special.end());
  HeldMessages messages;
  DrawPart slot, copy;
  std::string text;
  for (const Part& part : parts) {
    Deltas deltas;
    for (const int v : versionGates()) {
      if (part.version.value_or(v) != v) continue;
      const Part& before = all[static_cast<std::size_t>(v + 157) % all.size()];
      readWhole(slot, readDrawPart, recordOf(before, v), true);
      const Rows rows = layoutOf(slot, copy, part, v, false);
      EXPECT_EQ(layoutOf(slot, copy, part, v, true), rows) << part.type << ' ' << v;
      deltas.add(std::to_string(v), rows);
    }
    const auto type = static_cast<std::size_t>(part.type);
    text += type < kPartTypeCount ? toNative(kPartTypeNames[type]) : std::to_string(type);
    text += "\n" + deltas.text();
  }
  for (const std::string& message : messages.take()) text += message + "\n";
  expectFrozen("parts.txt", text);
}

// A count is tested against the bytes that are left, so a record must fit that ends its file.
TEST(Layouts, ManySmallItemsFit) {
  const auto many = []<class T>(T item) { return std::vector<T>(200, std::move(item)); };
  const NameValueFields nameless{.name = u"", .value = u"", .hasValue = 0};
  const SubscribeEntryFields entry{.version = {}, .entryName = u""};
  const Part parts[] = {text({.text = u"", .runs = many(test::Run())}),
                        text({.text = u"", .extensionRuns = many(test::Run())}),
                        text({.text = u"", .outlines = many(std::array<int, 6>())}),
                        text({.text = std::u16string(200, u'a')}),
                        line({.points = many(Point())}),
                        lineSet({.offsets = many(1)}),
                        poly({.points = many(Point())}),
                        poly({.gradient = test::Gradient{.stops = many(Stop())}}),
                        startEnd({.nameValues = many(nameless)}),
                        startEnd({.pairs = many(Point())}),
                        subscribe({.entries = many(entry)}),
                        signatureField({.attributes = many(nameless)})};
  DrawPart slot;
  for (const Part& part : parts) {
    for (const int v : versionGates()) {
      SCOPED_TRACE(std::to_string(part.type) + " " + std::to_string(v));
      for (const bool wide : {false, true}) {
        readWhole(slot, readDrawPart, recordOf(part, v, wide), wide);
      }
    }
  }
}

TEST(Layouts, WhatARefusedCopyLeavesBehind) {
  for (const Part& owner : allParts()) {
    DrawPart target = readFresh(owner), copy = readFresh(rect());
    copyPart(target, readFresh(bookmark()));
    EXPECT_EQ(static_cast<int>(target.type), owner.type);
    copyPart(copy, target);
    shiftPart(copy, 1, 1);
    if (std::ranges::count(std::array{4, 5, 6, 41, 44}, owner.type) > 0) {
      EXPECT_EQ(partWords(target).setPointers, 0) << owner.type;
      EXPECT_EQ(partWords(copy).setPointers, 0) << owner.type;
    }
  }
}

TEST(Layouts, ListsOfEveryVersion) {
  Deltas deltas;
  for (const int hasBytes : {0, 3}) {
    for (const int v : {-107, -106, 0, 100, 101, 102, 103, 104, 105, 106, 107}) {
      ListFields f{.version = v, .originX = -5, .originY = 6, .hasBytes = hasBytes};
      f.parts = {rect(), line()};
      f.byteA = 0x104;
      f.listFlags = 0x91;
      f.sections = {"unknown"};
      DrawList l;
      l.byteA = l.byteB = l.listMark = 9;  // from the previous page
      l.valueA = l.contentTally = 9;
      readWhole(l, readDrawList, bytesOf(writeList, f));
      deltas.add(Shown::row("hasBytes, version", hasBytes, v), fieldsOf(l));
      EXPECT_EQ(l.listMark, 0);
    }
  }
  expectFrozen("lists.txt", deltas.text());
}

TEST(Layouts, StaticObjectsOfEveryVersion) {
  Deltas deltas;
  for (const bool hasSecond : {false, true}) {
    for (const int v : {-111, -107, 0, 100, 101, 102, 103, 104, 105, 106, 107, 108, 110, 111}) {
      StaticFields f{.version = v, .first = {.parts = {rect()}}, .sections = {"unknown", ""}};
      if (hasSecond) f.second = ListFields{.parts = {rect(), line()}};
      DrawStatic o;
      readWhole(o, readDrawStatic, bytesOf(writeStatic, f));
      deltas.add(Shown::row("second, version", hasSecond, v), fieldsOf(o));
      EXPECT_EQ(o.firstList.count, 1);
      EXPECT_EQ(o.secondList.count, hasSecond ? 2 : 0);
    }
  }
  expectFrozen("static-objects.txt", deltas.text());
}

template <class Record>
std::string tooNew(void (*read)(Record&, eArchive&), int version) {
  HeldMessages messages;
  LoadedBytes file(ByteWriter().i32(version).bytes);
  Record record;
  read(record, file.archive);
  EXPECT_TRUE(file.archive.failed() && messages.take().empty());
  const auto& newer = file.archive.newerRecord();
  return newer ? Shown::row("", eString(newer->label), newer->version, newer->highest) : "";
}

TEST(DrawListReader, NewerRecordsAreLeftToTheCaller) {
  EXPECT_EQ(tooNew(readDrawPart, 158), R"( "DRAWPART" 158 157)");
  EXPECT_EQ(tooNew(readDrawPart, -158), R"( "DRAWPART" -158 157)");
  EXPECT_EQ(tooNew(readDrawList, 108), R"( "DRAWLIST" 108 107)");
  EXPECT_EQ(tooNew(readDrawStatic, 112), R"( "DRAWSTATIC" 112 111)");
}

}  // namespace
}  // namespace rvf::test
