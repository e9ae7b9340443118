#include "pagemodel/DrawList.h"

#include <gtest/gtest.h>

#include <map>
#include <vector>

#include "pagemodel/AreaParts.h"
#include "pagemodel/ImageParts.h"
#include "pagemodel/PartSweep.h"
#include "pagemodel/TextParts.h"
#include "pagemodel/VectorParts.h"

namespace rvf {
namespace {

using test::Values;

constexpr i32 kDx = 5, kDy = -7;

// How the words of a type's fields move; types that are not here do not.
const std::map<int, std::vector<i32>> kMovedWords = {
    {3, {kDx, kDy, kDx, kDy}},       // RECT
    {6, {kDx, kDy, kDx, kDy}},       // STARTEND
    {9, {0, 0, 0, 0, 0, kDx, kDy}},  // STATICREF
    {10, {0, 0, kDx, kDy}},          // RESOURCE
    {30, {kDx, kDx, kDy, kDy}},      // JUST1LINE
    {31, {0, kDx, kDx}},             // LINESET, horizontal
    {33, {0, 0, kDx, kDy}},          // IMPORTPAGE
    {40, {kDx, kDy, kDx, kDy}},      // HYPERLINKAREA
};

TEST(ShiftPart, FieldsOfEveryType) {
  for (const test::Part& source : test::allParts()) {
    DrawPart part = test::readFresh(source);
    const PartFields before = part.fields;
    shiftPart(part, 0, 0);
    EXPECT_EQ(part.fields.words, before.words);
    shiftPart(part, kDx, kDy);
    const auto row = kMovedWords.find(source.type);
    for (std::size_t i = 0; i < kFieldWords; ++i) {
      const bool moves = row != kMovedWords.end() && i < row->second.size();
      const i32 by = moves ? row->second[i] : 0;
      EXPECT_EQ(part.fields.words[i], before.words[i] + static_cast<u32>(by)) << source.type;
    }
  }
  DrawPart unknownCode = test::readFresh(test::empty(200));
  shiftPart(unknownCode, 1, 1);
  EXPECT_TRUE(test::hasNoFields(unknownCode));
}

TEST(ShiftPart, WhatLiesInPayloads) {
  const std::vector<test::Part> all = test::allParts();
  const auto shifted = [&](std::size_t type) {
    DrawPart part = test::readFresh(all[type]);
    shiftPart(part, kDx, kDy);
    return part;
  };
  DrawPart text = shifted(1);
  const TextRun &run = textRuns(text)[1], &extension = extensionRuns(text)[0];
  EXPECT_EQ((Values{run.x, run.y, extension.x, extension.y}),
            (Values{11 + kDx, 21 + kDy, 12 + kDx, 22 + kDy}));
  EXPECT_EQ(text.payload.at<u16>(3 * sizeof(TextRun) + 4)[1], 1);  // outlines stay
  DrawPart line = shifted(2);
  EXPECT_EQ((Values{linePoints(line)[1].x, linePoints(line)[1].y}), (Values{30 + kDx, 40 + kDy}));
  DrawPart poly = shifted(4);
  EXPECT_EQ((Values{polyPoints(poly)[2].x, polyPoints(poly)[2].y}), (Values{50 + kDx, 25 + kDy}));
  EXPECT_EQ(polyStyle(poly).gradient->originX, 1.5 + kDx);
  EXPECT_EQ(polyStyle(poly).gradient->originY, 2.5 + kDy);
  const DrawPart image = shifted(5);
  const ImageInfo& info = imageInfo(image);
  EXPECT_EQ((Values{info.left, info.top, info.right, info.bottom}),
            (Values{100 + kDx, 200 + kDy, 300 + kDx, 400 + kDy}));
  DrawPart lines = shifted(31);
  EXPECT_EQ(lineOffsets(lines)[2], 70 + kDy);
  lines = test::readFresh(test::lineSet({.horizontal = 0}));
  shiftPart(lines, kDx, kDy);
  EXPECT_EQ(lineOffsets(lines)[0], 20 + kDx);
  EXPECT_EQ(lines.fields.lineSet.end, 500 + kDy);
  DrawPart barcode = shifted(32);
  EXPECT_EQ((Values{barcodeOrigin(barcode).x, barcodeOrigin(barcode).y}),
            (Values{10 + kDx, 20 + kDy}));
  const DrawPart field = shifted(44);
  const SignatureInfo& signature = *signatureInfo(field);
  EXPECT_EQ((Values{signature.left, signature.top, signature.right, signature.bottom}),
            (Values{100 + kDx, 200 + kDy, 300 + kDx, 400 + kDy}));
  DrawPart oldField = test::readFresh(test::signatureField(), 142);
  shiftPart(oldField, 1, 1);  // has no rectangle
}

TEST(CopyPart, OntoItselfAndFromTypesThatAreNotCopied) {
  DrawPart image = test::readFresh(test::image({.link = test::LinkFields{}}));
  copyPart(image, image);
  EXPECT_NE(imageInfo(image).hyperlink, nullptr);
  ImageInfo& info = imageInfo(image);
  info.narrowName = std::make_unique<char[]>(3);
  info.wideName = std::make_unique<char16_t[]>(2);
  info.narrowNameLength = 3;
  info.wideNameLength = 2;
  info.wideName[1] = u'x';
  DrawPart copy;
  copyPart(copy, image);
  EXPECT_EQ(imageInfo(copy).wideName[1], u'x');
  EXPECT_NE(imageInfo(copy).wideName, info.wideName);
  releasePart(copy, kKeepHyperlink);
  EXPECT_EQ(imageInfo(copy).narrowName, nullptr);
  EXPECT_EQ(imageInfo(copy).imageFlag + imageInfo(copy).wideNameLength, 0);
  EXPECT_NE(imageInfo(copy).hyperlink, nullptr);

  for (const test::Part& source : {test::barcode(), test::bookmark(), test::subscribe(),
                                   test::empty(14), test::locSearchKey(), test::empty(200)}) {
    DrawPart target = test::readFresh(test::rect());
    copyPart(target, test::readFresh(source));
    EXPECT_EQ(target.type, PartType::kRect);
    EXPECT_EQ(target.fields.rect.left, 100);
  }
  DrawPart target = test::readFresh(test::poly());
  copyPart(target, test::readFresh(test::empty(0)));
  EXPECT_EQ(target.type, PartType::kUnknown);
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
  test::readOver(appendSlot(source), test::rect(), 157);
  test::readOver(appendSlot(source), test::bookmark(), 157);
  source.originX = kDx;
  source.originY = kDy;
  source.contentTally = 3;
  target.ownerTag = 77;
  target.contentTally = 4;
  appendList(target, source, false);
  EXPECT_EQ(target.listFlags, 0);
  test::readOver(appendSlot(source), test::poly(), 157);
  appendList(target, source, true);
  EXPECT_EQ(target.count, 5);
  EXPECT_EQ(target.contentTally, 10);
  EXPECT_EQ(target.listFlags, list_flag::kPolyAdded);
  EXPECT_EQ(target[0].fields.rect.left, 100);
  EXPECT_EQ(target[2].fields.rect.left, 100 + kDx);
  EXPECT_EQ(target[3].type, PartType::kUnknown);  // a bookmark is not copied
  EXPECT_EQ(polyPoints(target[4])[0].y, 20 + kDy);
  for (const DrawPart& part : target.parts()) EXPECT_EQ(part.ownerTag, 77U);
}

}  // namespace
}  // namespace rvf
