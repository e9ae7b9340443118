#include "pagemodel/ImageParts.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

#include "pagemodel/PartSweep.h"
#include "pagemodel/colour/UsedColourList.h"
#include "support/Reporting.h"

namespace rvf {
namespace {

using test::image;
using test::readFresh;
using test::since;
using test::Values;

std::string bytesOf(const DrawPart& part) {
  const auto bytes = imageBytes(part);
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

TEST(ImageParts, ImageOfEveryVersion) {
  test::forEveryVersion(5, true, [](DrawPart& part, int v, bool) {
    const ImageFields& f = part.fields.image;
    const ImageInfo& i = imageInfo(part);
    EXPECT_EQ((Values{f.pixelWidth, f.pixelHeight, f.imageKind, f.dataLength}),
              (Values{64, 32, 7, 11}));
    EXPECT_EQ(bytesOf(part), "image bytes");
    EXPECT_EQ((Values{i.left, i.top, i.right, i.bottom}), (Values{100, 200, 300, 400}));
    EXPECT_EQ((Values{i.flagA, i.flagB, i.flagC, i.flagD}),
              (Values{1, since(101, v, 2), since(102, v, 3), since(124, v, 4, since(102, v, 3))}));
    EXPECT_EQ((Values{i.kindValue, i.valueA, i.valueB, i.valueC, i.valueD, i.valueE}),
              (Values{since(103, v, 8), 21, 22, since(123, v, 23), since(142, v, 24),
                      since(128, v, 25)}));
    EXPECT_EQ(
        (Values{i.valueF, i.valueG, i.byteE, i.imageFlag}),
        (Values{since(150, v, 26), since(150, v, 27, -1), since(146, v, 5), since(147, v, 6)}));
    EXPECT_EQ((Values{i.colourA.kind, i.colourA.value, i.colourB.kind, i.colourB.value}),
              (Values{since(108, v, 1), 0xA1, 0, 0xB2}));
    EXPECT_EQ((Values{i.colourC.kind, i.colourC.value, i.colourE.kind, i.colourE.value}),
              (Values{0, since(126, v, 0xC3, 0x00FF00), 0, since(150, v, 0xE5)}));
    EXPECT_EQ(i.colourD, ColourValue{});  // what is stored for it is dropped
    EXPECT_EQ(i.reservedA + i.reservedB + i.wideNameLength + i.narrowNameLength, 0);
    ASSERT_EQ(i.nameValueCount, since(136, v, 2));
    ASSERT_EQ(i.nameValues != nullptr, v >= 136);
    if (v >= 136) {
      const NameValue &full = i.nameValues->at(0), &bare = i.nameValues->at(1);
      EXPECT_TRUE(full.name == eString(u"name") && full.value == eString(u"value"));
      EXPECT_EQ((Values{full.number, full.hasValue, bare.number, bare.hasValue}),
                (Values{9, 1, 8, 0}));
    }
    ASSERT_EQ(i.hyperlink != nullptr, std::abs(v) >= 127);  // in a section before 132
    if (i.hyperlink == nullptr) return;
    EXPECT_EQ(std::u16string(i.hyperlink->text.get()), u"http://a");
    EXPECT_EQ(i.hyperlink->firstLabel.view(), v < 138 ? u"" : u"first");
  });
}

TEST(ImageParts, KindsOfOldImagesAreMapped) {
  const int rows[][4] = {{102, 0, 1, 0},     {102, 1, 1, 0},  {102, 2, 2, 0}, {102, 3, 7, 0},
                         {102, 10, 7, 0},    {102, -5, 7, 0}, {0, 3, 7, 0},   {102, 11, 101, 11},
                         {102, 77, 101, 77}, {103, 3, 3, 8},  {103, 0, 0, 8}, {103, 77, 77, 8}};
  for (const auto& [v, stored, kind, value] : rows) {
    const DrawPart part = readFresh(image({.imageKind = stored}), v);
    EXPECT_EQ((Values{part.fields.image.imageKind, imageInfo(part).kindValue}),
              (Values{kind, value}));
    EXPECT_EQ(bytesOf(part), "image bytes");
  }
}

TEST(ImageParts, LengthsAndKindsWithoutBytes) {
  for (const int kind : {11, -11}) {
    for (const int length : {0, 5, -5, std::numeric_limits<int>::max()}) {
      const DrawPart part = readFresh(image({.imageKind = kind, .dataLength = length}), 126);
      EXPECT_EQ(part.fields.image.dataLength, std::abs(length));
      EXPECT_EQ(bytesOf(part), "");
    }
  }
  EXPECT_EQ(bytesOf(readFresh(image({.bytes = "12345", .dataLength = -5}))), "12345");
  for (const int length : {1000, -1000, std::numeric_limits<int>::min()}) {
    test::HeldMessages messages;
    test::ByteWriter w;
    writePart(w, image({.dataLength = length}));
    test::LoadedBytes file(w.bytes);
    DrawPart part;
    readDrawPart(part, file.archive);
    EXPECT_EQ(messages.takeNumbers(), std::vector{9042});
    EXPECT_EQ(part.payload.capacity(), 0U);
  }
}

TEST(ImageParts, OldRecordsOfImageBytesAreWidened) {
  std::string bytes;
  for (int i = 0; i < 70; ++i) bytes += static_cast<char>(i);
  const std::string zeroes(4, '\0');
  const std::string widened =
      bytes.substr(0, 32) + zeroes + bytes.substr(32, 32) + zeroes + bytes.substr(64);
  EXPECT_EQ(bytesOf(readFresh(image({.imageKind = 10, .bytes = bytes}), 125)), widened);
  EXPECT_EQ(bytesOf(readFresh(image({.imageKind = 10, .bytes = bytes}), 126)), bytes);
  EXPECT_EQ(bytesOf(readFresh(image({.imageKind = 9, .bytes = bytes}), 125)), bytes);
  EXPECT_EQ(bytesOf(readFresh(image({.imageKind = 10, .bytes = "31"}), 125)), "31");
  const DrawPart legacy =
      readFresh(image({.imageKind = 10, .bytes = bytes, .colourC = {.kind = -126, .value = 5}}));
  EXPECT_EQ(bytesOf(legacy), widened);
  EXPECT_EQ(legacy.fields.image.dataLength, 78);
  EXPECT_EQ(imageInfo(legacy).colourC, (ColourValue{0, 5}));
}

TEST(ImageParts, NamedColoursAreEnteredOnce) {
  const NamedColour rows[] = {{7, u"Process Yellow"}, {9, u"HEXACHROME Cyan"}};
  NamedColourTables tables;
  tables.lists[2] = tables.lists[3] = rows;
  setNamedColourTables(&tables);
  hexachromeCase = true;
  const test::ColourFields newer{.kind = 2, .value = 0x02000007, .version = 102, .sections = {"x"}};
  const test::Part part = image({.colourA = newer,
                                 .colourB = {.kind = 2, .value = 0x03000009},
                                 .droppedColour = {.kind = 2, .value = 0x02000000},
                                 .colourE = {.kind = 2}});
  for (int i = 0; i < 2; ++i) EXPECT_EQ(imageInfo(readFresh(part)).colourA.value, 0x02000007U);
  ASSERT_EQ(usedColours().size(), 2U);  // unique by row; list 0 is not there
  EXPECT_EQ(usedColours()[0].plainName, "PANTONE Process Yellow U");
  EXPECT_EQ(usedColours()[0].encodedName, "PANTONE#20Process#20Yellow#20U");
  EXPECT_EQ(usedColours()[1].plainName, "PANTONE Hexachrome Cyan C");
  EXPECT_EQ(findNamedColour(2, 8), rows);
  EXPECT_EQ(findNamedColour(4, 7), nullptr);
  setNamedColourTables(nullptr);
  hexachromeCase = false;
  EXPECT_EQ(colourList(ColourValue{1, 0x02000007}), 0);
}

TEST(ImageParts, ResourceOfEveryVersion) {
  test::forEveryVersion(10, true, [](DrawPart& part, int v, bool) {
    const ResourceFields& f = part.fields.resource;
    EXPECT_TRUE(v >= 110 || test::hasNoFields(part));
    if (v < 110) return;
    EXPECT_EQ(std::string(part.payload.at<char>(0)), "resource");
    EXPECT_EQ((Values{f.byteCount, f.x, f.y, f.scaleX, f.scaleY, f.hyperlink}),
              (Values{8, 10, 20, 30, 40, kNullPointer}));
    EXPECT_EQ((Values{f.resourceKind, f.resourceFlag, f.resourceExtra}),
              (Values{4, 2, since(157, v, 3)}));
  });
  struct Row {
    int v, dataMode;
    std::string bytes;
    i32 count;
    bool hasBytes;
  };
  for (const Row& row : {Row{122, 0, "12345", 5, false},
                         {122, 1, "12345", 5, true},
                         {122, 1, "", 0, false},
                         {121, 0, "12345", 5, true},
                         {157, 5, "12345", 5, true},
                         {157, -2, "", 0, false}}) {
    const ResourceFields f =
        readFresh(test::resource({.dataMode = row.dataMode, .bytes = row.bytes}), row.v)
            .fields.resource;
    EXPECT_EQ((Values{f.byteCount, f.bytes, f.y}), (Values{row.count, row.hasBytes ? 1 : 0, 20}));
  }
}

TEST(ImageParts, ImportPageAndBarcodeOfEveryVersion) {
  test::forEveryVersion(33, true, [](DrawPart& part, int v, bool) {
    const ImportPageFields& f = part.fields.importPage;
    EXPECT_EQ((Values{f.pageObject, f.pageNumber, f.x, f.y, f.valueA, f.valueB}),
              (Values{1, 2, 10, 20, 3, 4}));
    EXPECT_EQ((Values{f.byteA, f.byteB, f.importFlag, f.clip}),
              (Values{6, 7, since(146, v, 5), since(120, v, kSetPointer)}));
    EXPECT_TRUE(v < 120 || part.payload.at<i32>(0)[3] == 400);
  });
  test::forEveryVersion(32, false, [](DrawPart& part, int, bool) {
    const BcocaBarcodeFields& f = part.fields.barcode;
    EXPECT_EQ(std::u16string(part.payload.at<char16_t>(16), f.textLength), u"12345");
    EXPECT_EQ((Values{barcodeOrigin(part).x, barcodeOrigin(part).y, f.angle}),
              (Values{10, 20, 90}));
    EXPECT_EQ((Values{f.barcodeKind, f.barcodeFlag, f.barcodeCode, f.barcodeValue, f.barcodeExtra}),
              (Values{1, 2, 3, 4, 6}));
    EXPECT_EQ((Values{f.byteA, f.byteB, f.tint, f.colour}), (Values{8, 7, 80, test::kBlue}));
  });
}

}  // namespace
}  // namespace rvf
