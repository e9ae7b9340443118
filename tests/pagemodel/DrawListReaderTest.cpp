#include "pagemodel/DrawListReader.h"

#include <cstring>
#include <limits>

#include "pagemodel/DrawStatic.h"
#include "pagemodel/PartRows.h"
#include "pagemodel/TextParts.h"
#include "pagemodel/colour/UsedColourList.h"
#include "support/Capture.h"
#include "support/Reporting.h"

namespace rvf {
namespace {

using namespace test;

constexpr int kLowest = std::numeric_limits<int>::min();

TEST(DrawListReader, EveryShorterListStopsAtItsLastWholePart) {
  for (const auto& [v, wide] : {std::pair{157, false}, {157, true}, {131, false}, {105, false}}) {
    const std::vector<Part> parts = allParts();
    ByteWriter w(wide), head(wide), whole(wide);
    std::vector<int> ends;
    for (const Part& part : parts) {
      writePart(w, part, v);
      ends.push_back(w.size());
    }
    writeList(head, {.count = 45});
    writeList(whole, {.partVersion = v, .parts = parts});
    const int headSize = head.size() - 15;  // flags, two values, extra, end mark
    DrawList list;
    for (int length = 0; length < whole.size(); ++length) {
      LoadedBytes file(whole.bytes.substr(0, static_cast<std::size_t>(length)), wide);
      readDrawList(list, file.archive);
      ASSERT_TRUE(file.archive.failed()) << length;
      const auto complete = std::ranges::upper_bound(ends, length - headSize) - ends.begin();
      const bool countFits = length >= 16 + 45 * 5;
      ASSERT_EQ(list.count, countFits ? complete : 0) << length;
    }
  }
}

TEST(DrawListReader, DamageInLists) {
  const auto bytes = [](auto... words) { return ByteWriter().i32(words...).bytes; };
  const Part manyPoints{.type = 2, .payload = [](ByteWriter& w, int) { w.i32(0x10000000); }};
  struct Row {
    ListFields list;
    std::string damaged;  // the first byte of the first such bytes is another
    std::size_t messages;
    i32 count;
  };
  const Row rows[] = {
      {{.parts = {rect()}, .count = 0x7FFFFFFF}, "", 1, 0},
      {{.parts = {rect()}, .count = -1}, "", 0, 0},  // no parts: the rest is misread
      {{.parts = {rect(), manyPoints}}, "", 1, 1},
      {{.parts = {image({.dataLength = 1000})}}, "", 1, 0},
      {{.parts = {image({.dataLength = kLowest})}}, "", 1, 0},
      {{.partVersion = 131, .parts = {rect(), rect()}}, bytes(124), 1, 0},
      {{.partVersion = 121, .parts = {rect(), rect()}}, bytes(test::kEndMark), 0, 0},
      {{.parts = {rect(), rect()}}, bytes(test::kEndMark), 0, 2},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(&row - rows);
    ByteWriter w;
    writeList(w, row.list);
    if (!row.damaged.empty()) w.bytes[w.bytes.find(row.damaged)] += 1;
    HeldMessages messages;
    LoadedBytes file(w.bytes);
    DrawList list;
    readDrawList(list, file.archive);
    EXPECT_TRUE(file.archive.failed());
    EXPECT_EQ(list.count, row.count);
    EXPECT_LE(list.capacity(), 2);
    EXPECT_EQ(list.slots.empty() ? 0 : list.slots.back().payload.capacity(), 0U);
    EXPECT_EQ(messages.takeNumbers().size(), row.messages);
  }
}

template <class Record>
void expectHighest(const std::string& label, int highest, void (*read)(Record&, eArchive&)) {
  const CatchProcessEnd catching;
  for (const int v : {highest + 1, -highest - 1, kLowest}) {
    HeldMessages messages;
    const std::string bytes = ByteWriter().i32(v).bytes;
    LoadedBytes file(bytes), cut(bytes.substr(0, 3));
    Record record;
    EXPECT_THROW(read(record, file.archive), ProcessEnded);
    const std::string versions = std::to_string(v) + "|" + std::to_string(highest);
    EXPECT_EQ(messages.take(), std::vector{"2564 " + label + "|" + versions});
    read(record, cut.archive);  // the file ends in front of it: damage, not too new
    EXPECT_TRUE(cut.archive.failed());
  }
}

TEST(DrawListReader, NewerRecordsEndTheProcess) {
  expectHighest("DRAWPART", 157, readDrawPart);
  expectHighest("DRAWLIST", 107, readDrawList);
  expectHighest("DRAWSTATIC", 111, readDrawStatic);
}

TEST(DrawList, BorrowedParts) {
  for (const int flags : {32, 96, 0}) {
    DrawList list;
    appendSlot(list);
    list.listFlags = static_cast<u8>(flags);
    list.listExtra = 3;
    list.listState = 3;
    clearParts(list);
    EXPECT_EQ(list.capacity(), flags == 32 ? 1 : 0);
    EXPECT_EQ(list.listExtra, flags == 32 ? 0 : 3);
    EXPECT_EQ(list.listState, 0U);
    resetList(list);
    EXPECT_EQ(list.capacity() + list.count, 0);
  }
}

TEST(DrawList, AppendedLists) {
  DrawList source, target;
  source.originX = 5;
  source.originY = -7;
  source.contentTally = 3;
  target.contentTally = 4;
  target.ownerTag = 77;
  readOver(appendSlot(source), rect());
  appendList(target, source, false);
  EXPECT_EQ(target.listFlags, 0);
  readOver(appendSlot(source), poly());
  appendList(target, source, true);
  EXPECT_EQ(target.count, 3);
  EXPECT_EQ(target.contentTally, 10);
  EXPECT_EQ(target.listFlags, list_flag::kPolyAdded);
  EXPECT_EQ(target[0].fields.rect.left, 100);
  EXPECT_EQ(target[1].fields.rect.left, 105);
  EXPECT_EQ(polyPoints(target[2])[0].y, 20 - 7);
  for (const DrawPart& part : target.parts()) EXPECT_EQ(part.ownerTag, 77U);
}

TEST(PartOperations, ImagesAreCopiedWithAllThatTheyOwn) {
  DrawPart image = readFresh(test::image({.link = LinkFields{}}));
  copyPart(image, image);
  ImageInfo& info = imageInfo(image);
  EXPECT_NE(info.hyperlink, nullptr);
  info.narrowName = std::make_unique<char[]>(3);
  info.wideName = std::make_unique<char16_t[]>(2);
  info.narrowNameLength = 3;
  info.wideNameLength = 2;
  info.wideName[1] = u'x';
  DrawPart copy = readFresh(poly());
  copyPart(copy, image);
  EXPECT_EQ(imageInfo(copy).wideName[1], u'x');
  EXPECT_NE(imageInfo(copy).wideName, info.wideName);
  releasePart(copy, kKeepHyperlink);
  EXPECT_EQ(imageInfo(copy).narrowName, nullptr);
  EXPECT_EQ(imageInfo(copy).imageFlag + imageInfo(copy).wideNameLength, 0);
  EXPECT_NE(imageInfo(copy).hyperlink, nullptr);
}

TEST(TextParts, GrowWithTheirExtensionAreas) {
  const std::array<int, 6> outline = {1, 2, 3, 4, 5, 6};
  DrawPart part = readFresh(text({.extensionRuns = {{}, {}}, .outlines = {outline}}));
  reserveText(part, 5, 10, 2, 1, 2, 1);
  const rvf::TextFields& f = part.fields.text;
  EXPECT_EQ(std::vector({f.textFlags + 0, f.runCapacity + 0, f.textCapacity + 0}),
            std::vector({12, 7, 11}));
  EXPECT_EQ(textCharacters(part)[2], u'c');
  EXPECT_EQ(textRuns(part)[0].x, 10);
  EXPECT_EQ(extensionRuns(part)[1].y, 20);
  const std::byte* record = part.payload.data() + (7 + 2) * sizeof(TextRun) + 4 + 2;
  EXPECT_EQ(std::memcmp(record, outline.data(), sizeof(outline)), 0);
}

TEST(VectorParts, OldGradientColoursAreFloatingNumbers) {
  const std::string stored = ByteWriter().f64(255.0).bytes;
  constexpr double kNoNumber = std::numeric_limits<double>::quiet_NaN();
  for (const auto& [value, colour] : {std::pair{255.9, 255U},
                                      {4294967295.0, 0xFFFFFFFFU},
                                      {-1.0, 0xFFFFFFFFU},
                                      {kNoNumber, 0U},
                                      {1e300, 0U}}) {
    ByteWriter w;
    writePart(w, poly({.gradient = test::Gradient{}}), 154);
    w.bytes.replace(w.bytes.find(stored), 8, ByteWriter().f64(value).bytes);
    LoadedBytes file(w.bytes);
    DrawPart part;
    readDrawPart(part, file.archive);
    EXPECT_EQ(polyStyle(part).gradient->stopColours[0], colour);
  }
}

TEST(MarkerParts, MoreNameValuesThanAPartCounts) {
  for (const int count : {65535, 65536, 70000}) {
    HeldMessages messages;
    const std::vector<NameValueFields> entries(static_cast<std::size_t>(count), {.name = u"n"});
    const DrawPart part = readFresh(startEnd({.nameValues = entries, .pairs = {{7, 8}}}));
    const MarkerInfo& info = markerInfo(part);
    EXPECT_EQ(info.nameValueCount, count % 65536);
    EXPECT_EQ(info.nameValues == nullptr ? 0 : info.nameValues->size(), info.nameValueCount);
    EXPECT_EQ(info.pairs.size(), 1U);  // the entries that are dropped are read all the same
    const std::string warning =
        "9048 You have more than 65535 metadata objects saved. The last 2147418112 will be ignored";
    EXPECT_EQ(messages.take(), std::vector(count > 65535 ? 1U : 0U, warning));
  }
}

TEST(MarkerParts, TagIdsFoldIntoTheirBand) {
  for (const auto& [id, middle, top] : {std::array{9999, 19999, 49999},
                                        {10000, 10000, 40000},
                                        {39999, 39999, 4463},
                                        {40001, 10001, 40001}}) {
    EXPECT_EQ(foldedTagId(static_cast<u16>(id), 1), middle);
    EXPECT_EQ(foldedTagId(static_cast<u16>(id), 2), top);
    EXPECT_EQ(foldedTagId(static_cast<u16>(id), 3), id);
  }
}

TEST(UsedColours, NamedColoursAreEnteredOnce) {
  const NamedColour rows[] = {{7, u"Process Yellow"}, {9, u"HEXACHROME Cyan"}};
  NamedColourTables tables;
  tables.lists[2] = tables.lists[3] = rows;
  setNamedColourTables(&tables);
  hexachromeCase = true;
  const ColourFields newer{.kind = 2, .value = 0x02000007, .version = 102, .sections = {"x"}};
  const ColourFields other{.kind = 2, .value = 0x03000009},
      unknownCode{.kind = 2, .value = 0x02000000};
  const Part part = image({.colourA = newer, .colourB = other, .droppedColour = unknownCode});
  for (int i = 0; i < 2; ++i) EXPECT_EQ(imageInfo(readFresh(part)).colourA.value, 0x02000007U);
  ASSERT_EQ(usedColours().size(), 2U);  // unique by row
  EXPECT_EQ(usedColours()[0].plainName, "PANTONE Process Yellow U");
  EXPECT_EQ(usedColours()[0].encodedName, "PANTONE#20Process#20Yellow#20U");
  EXPECT_EQ(usedColours()[1].plainName, "PANTONE Hexachrome Cyan C");
  EXPECT_EQ(findNamedColour(4, 7), nullptr);
  setNamedColourTables(nullptr);
  hexachromeCase = false;
}

}  // namespace
}  // namespace rvf
