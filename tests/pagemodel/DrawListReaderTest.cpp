#include "pagemodel/DrawListReader.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

#include "pagemodel/DrawStatic.h"
#include "pagemodel/ImageParts.h"
#include "pagemodel/PartSweep.h"
#include "storage/RecordFrame.h"
#include "support/Capture.h"
#include "support/Reporting.h"

namespace rvf {
namespace {

using test::ByteWriter;
using test::HeldMessages;
using test::LoadedBytes;
using test::since;
using test::Values;

constexpr int kLowest = std::numeric_limits<int>::min();

TEST(DrawListReader, PartsWithoutFieldsInEveryVersion) {
  for (const int type : {0,  11, 12, 13, 14, 16, 17, 18, 19, 20, 21, 22,
                         24, 25, 26, 27, 28, 29, 35, 38, 39, 45, 255}) {
    for (const int v : test::versionGates()) {
      DrawPart part = test::readFresh(test::rect(), v);
      test::readOver(part, test::empty(type), v);
      EXPECT_EQ(static_cast<int>(part.type), type);
      EXPECT_TRUE(test::hasNoFields(part));
      EXPECT_EQ(part.poolKind, type == 0 || type == 14 ? 7 : 0);
    }
  }
  test::Part rect = test::rect();
  rect.type = 0x1F203;  // of four bytes the low one counts
  EXPECT_EQ(test::readFresh(rect, 104).type, PartType::kRect);
}

TEST(DrawListReader, ListsOfEveryVersion) {
  for (const int v : {-107, -106, 0, 100, 101, 102, 103, 104, 105, 106, 107}) {
    for (const int hasBytes : {0, 3}) {
      DrawList list;
      list.byteA = list.byteB = list.listMark = 9;  // from the page before
      list.valueA = list.contentTally = 9;
      for (const int count : {2, 0, 1}) {
        ByteWriter w;
        const std::vector<test::Part> parts(static_cast<std::size_t>(count), test::rect());
        writeList(w, {.version = v,
                      .parts = parts,
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
        const bool stored = v >= 101 && hasBytes != 0;
        EXPECT_EQ(
            (Values{list.count, list.originX, list.originY, list.contentTally, list.listMark}),
            (Values{count, -5, 6, since(102, v, 1), 0}));
        EXPECT_EQ((Values{list.byteA, list.byteB, list.listFlags}),
                  (Values{stored ? 4 : 255, stored ? 5 : 0, since(104, v, 0x91)}));
        EXPECT_EQ((Values{list.valueA, list.valueB, list.listExtra}),
                  (Values{since(105, v, 6), since(105, v, 7), since(106, v, 8)}));
      }
      EXPECT_EQ(list.capacity(), 2);
    }
  }
}

TEST(DrawListReader, EveryShorterListStopsAtItsLastWholePart) {
  for (const auto& [v, wide] : {std::pair{157, false}, {157, true}, {131, false}, {105, false}}) {
    const std::vector<test::Part> parts = test::allParts();
    ByteWriter w(wide);
    std::vector<int> ends;
    for (const test::Part& part : parts) {
      test::writePart(w, part, v);
      ends.push_back(w.size());
    }
    ByteWriter head(wide), whole(wide);
    writeList(head, {.count = 45});
    const int headSize = head.size() - 15;  // flags, two values, extra, end mark
    writeList(whole, {.partVersion = v, .parts = parts});
    DrawList list;
    for (int length = 0; length < whole.size(); ++length) {
      LoadedBytes file(whole.bytes.substr(0, static_cast<std::size_t>(length)), wide);
      readDrawList(list, file.archive);
      ASSERT_TRUE(file.archive.failed()) << length;
      const bool countFits = length >= 16 + 45 * 5;
      i32 complete = 0;
      while (complete < 45 && headSize + ends[static_cast<std::size_t>(complete)] <= length) {
        complete += 1;
      }
      ASSERT_EQ(list.count, countFits ? complete : 0) << length;
    }
  }
}

TEST(DrawListReader, DamageInLists) {
  const auto part = [](const std::string& bytes) {
    return test::Part{.type = 2, .payload = [=](ByteWriter& w, int) { w.raw(bytes); }};
  };
  const auto count = [](int n) { return ByteWriter().i32(n).bytes; };
  struct Row {
    test::ListFields list;
    std::string whatever;
    int messages;  // of damage
    i32 count;
  };
  const std::vector<Row> rows = {
      {{.parts = {test::rect()}, .count = 0x7FFFFFFF}, "", 1, 0},
      {{.parts = {test::rect()}, .count = -1}, "", 0, 0},  // no parts: the rest is misread
      {{.parts = {test::rect(), part(count(0x10000000))}}, "", 1, 1},
      {{.partVersion = 131, .parts = {test::rect(), test::rect()}}, "section", 1, 0},
      {{.partVersion = 121, .parts = {test::rect(), test::rect()}}, "mark", 0, 0},
      {{.parts = {test::rect(), test::rect()}}, "listmark", 0, 2},
  };
  for (const Row& row : rows) {
    ByteWriter w;
    writeList(w, row.list);
    if (row.whatever == "section") w.bytes[w.bytes.find(count(124))] = 125;
    if (row.whatever == "mark") w.bytes[w.bytes.find(ByteWriter().u32(test::kEndMark).bytes)] = 0;
    if (row.whatever == "listmark") w.bytes.back() = 0;
    HeldMessages messages;
    LoadedBytes file(w.bytes);
    DrawList list;
    readDrawList(list, file.archive);
    EXPECT_TRUE(file.archive.failed()) << row.whatever;
    EXPECT_EQ(list.count, row.count);
    EXPECT_LE(list.capacity(), 2);
    EXPECT_EQ(messages.takeNumbers().size(), static_cast<std::size_t>(row.messages));
  }
}

TEST(DrawListReader, NewerRecordsEndTheProcess) {
  const test::CatchProcessEnd catching;
  const auto readPartRecord = [](eArchive& archive) {
    DrawPart part;
    readDrawPart(part, archive);
  };
  const auto readListRecord = [](eArchive& archive) {
    DrawList list;
    readDrawList(list, archive);
  };
  const auto readStaticRecord = [](eArchive& archive) {
    DrawStatic object;
    readDrawStatic(object, archive);
  };
  struct Row {
    std::string label;
    int highest;
    void (*read)(eArchive&);
  };
  for (const Row& row : {Row{"DRAWPART", 157, readPartRecord},
                         {"DRAWLIST", 107, readListRecord},
                         {"DRAWSTATIC", 111, readStaticRecord}}) {
    for (const int v : {row.highest + 1, -row.highest - 1, kLowest}) {
      HeldMessages messages;
      const std::string bytes = ByteWriter().i32(v).bytes;
      LoadedBytes file(bytes);
      EXPECT_THROW(row.read(file.archive), test::ProcessEnded);
      const std::string arguments =
          row.label + "|" + std::to_string(v) + "|" + std::to_string(row.highest);
      EXPECT_EQ(messages.take(), std::vector{"2564 " + arguments});
      LoadedBytes cut(bytes.substr(0, 3));  // the file ends in front of it: damage, not too new
      row.read(cut.archive);
      EXPECT_TRUE(cut.archive.failed());
    }
  }
}

TEST(DrawListReader, LinkSectionsOfOldParts) {
  test::Part image = test::image({.link = test::LinkFields{}});
  image.emptyLinkSection = true;
  const auto linkOf = [](const DrawPart& part) { return imageInfo(part).hyperlink.get(); };
  EXPECT_EQ(linkOf(test::readFresh(image, 131)), nullptr);
  EXPECT_NE(linkOf(test::readFresh(image, 132)), nullptr);  // here a flag tells
  test::Part rect = test::rect();  // has no place for a link: read and dropped
  rect.link = test::LinkFields{};
  for (const int v : {127, 131, 132, 137, 138, 157}) test::readFresh(rect, v);
}

TEST(DrawStatic, EveryVersion) {
  for (const int v : {-111, -107, 0, 100, 101, 102, 103, 104, 105, 106, 107, 108, 109, 110, 111}) {
    for (const bool hasSecond : {false, true}) {
      ByteWriter w;
      test::StaticFields fields{
          .version = v, .first = {.parts = {test::rect()}}, .sections = {"unknown", ""}};
      if (hasSecond) fields.second = test::ListFields{.parts = {test::rect(), test::line()}};
      writeStatic(w, fields);
      LoadedBytes file(w.bytes);
      DrawStatic object;
      readDrawStatic(object, file.archive);
      EXPECT_FALSE(file.archive.failed()) << v;
      EXPECT_EQ(file.archive.GetPosition(), w.size());
      EXPECT_EQ((Values{object.hasSecond, object.firstList.count, object.secondList.count}),
                (Values{hasSecond ? 1 : 0, 1, hasSecond ? 2 : 0}));
      EXPECT_EQ((Values{object.valueA, object.valueB, object.valueC, object.valueD}),
                (Values{1, 2, 3, 4}));
      EXPECT_EQ(
          (Values{object.valueE, object.valueF, object.indexA, object.indexB}),
          (Values{since(102, v, 5), since(101, v, 6), since(104, v, 7, -1), since(106, v, 8, -1)}));
      EXPECT_EQ(object.name.view(), v < 103 ? u"" : u"static");
      EXPECT_EQ(object.loadLists, 1);
      for (int length = 0; length < w.size(); ++length) {
        LoadedBytes shorter(w.bytes.substr(0, static_cast<std::size_t>(length)));
        DrawStatic cut;
        readDrawStatic(cut, shorter.archive);
        ASSERT_TRUE(shorter.archive.failed()) << length;
      }
    }
  }
  ByteWriter w;
  writeStatic(w, {});
  LoadedBytes file(w.bytes);
  DrawStatic object;
  object.loadLists = 0;  // stops in front of the lists
  readDrawStatic(object, file.archive);
  EXPECT_EQ(file.archive.GetPosition(), 6 * 4 + 7 + 4 + 4);
  EXPECT_EQ(object.loadLists, 0);
}

}  // namespace
}  // namespace rvf
