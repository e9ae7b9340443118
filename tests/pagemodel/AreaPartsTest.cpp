#include "pagemodel/AreaParts.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "pagemodel/DrawStatic.h"
#include "pagemodel/PartSweep.h"
#include "pagemodel/ReferenceParts.h"
#include "pagemodel/StaticLookup.h"

namespace rvf {
namespace {

using test::readFresh;
using test::since;
using test::Values;
using namespace std::string_literals;

TEST(AreaParts, ClickAreaOfEveryVersion) {
  test::forEveryVersion(8, true, [](DrawPart& part, int v, bool) {
    const ClickAreaFields& f = part.fields.clickArea;
    EXPECT_EQ((Values{f.left, f.top, f.right, f.bottom}), (Values{100, 200, 300, 400}));
    EXPECT_EQ((Values{f.areaA, f.areaB, f.areaScale, f.areaCode, f.areaFlag}),
              (Values{1, 2, since(129, v, 3, 300), 4, 5}));
  });
}

TEST(AreaParts, HyperlinkAreaOfEveryVersion) {
  test::forEveryVersion(40, true, [](DrawPart& part, int v, bool isCopy) {
    const HyperlinkAreaFields& f = part.fields.hyperlinkArea;
    EXPECT_EQ(hyperlinkUrl(part), u"http://a");
    EXPECT_EQ((Values{f.left, f.top, f.right, f.bottom}), (Values{100, 200, 300, 400}));
    EXPECT_EQ((Values{f.linkValue, f.linkFlagA, f.linkCode}),
              (Values{1, since(156, v, 2, 1), since(141, v, 4)}));
    // These three are not taken over by a copy.
    EXPECT_EQ((Values{f.linkFlagB, f.linkValueB, f.linkValueC}),
              isCopy ? (Values{0, 0, 0}) : (Values{3, since(156, v, 5), since(156, v, 6)}));
  });
  const DrawPart bare = readFresh(test::hyperlinkArea({.url = u"", .linkFlagA = 0}), 155);
  EXPECT_EQ(bare.fields.hyperlinkArea.url, kNullPointer);
  EXPECT_EQ(bare.fields.hyperlinkArea.linkFlagA, 0);
}

TEST(AreaParts, SignatureFieldOfEveryVersion) {
  test::forEveryVersion(44, true, [](DrawPart& part, int v, bool) {
    const SignatureFieldFields& f = part.fields.signatureField;
    EXPECT_EQ((Values{f.fieldFlagA, f.fieldFlagB, f.fieldId}),
              (Values{since(143, v, 1), since(143, v, 2), since(144, v, 3, -1)}));
    EXPECT_EQ(f.fieldName + f.fieldValue + f.attributes, since(143, v, 3));
    const SignatureInfo* info = signatureInfo(part);
    ASSERT_EQ(info != nullptr, v >= 143);
    if (info == nullptr) return;
    EXPECT_EQ((Values{info->left, info->top, info->right, info->bottom}),
              (Values{100, 200, 300, 400}));
    // As many bytes as the text has characters: they fill its first half.
    EXPECT_EQ(info->fieldName, u"\u616E\u656D\0\0"s);
    EXPECT_EQ(info->fieldValue, u"\u6176\u756C\u0065\0\0"s);
    ASSERT_EQ(info->attributes.size(), 2U);
    EXPECT_EQ(info->attributes[0].value.view(), u"value");
    EXPECT_EQ(info->attributes[1].name.view(), u"bare");
  });
  // A pointer to nothing counts as one that is not set.
  const DrawPart bare =
      readFresh(test::signatureField({.fieldName = "", .fieldValue = "", .attributes = {}}));
  EXPECT_EQ(partWords(bare).setPointers, 1);
}

TEST(ReferenceParts, StaticRefOfEveryVersion) {
  test::forEveryVersion(9, true, [](DrawPart& part, int v, bool) {
    const StaticRefFields& f = part.fields.staticRef;
    EXPECT_EQ((Values{f.objectType, f.staticIndex, f.useSecond, f.secondIsHidden, f.x, f.y}),
              (Values{21, 12, 13, 14, 10, 20}));
    EXPECT_EQ((Values{f.width, f.height, f.refA, f.refB, f.refC, f.refD}),
              (Values{30, since(129, v, 40, 4000), 1, since(104, v, 2), 3, since(117, v, 4)}));
    EXPECT_EQ((Values{f.layerByteA, f.layerByteB}),
              (Values{since(117, v, 5, 255), since(117, v, 6, 255)}));
    EXPECT_EQ(childList(part), nullptr);  // no page is being read
  });
}

/// Holds one object, of type 24 with index 3.
class OneStatic final : public StaticLookup {
 public:
  OneStatic() { currentContext = this; }
  ~OneStatic() override { currentContext = nullptr; }
  const DrawStatic* FindStatic(i32 objectType, i32 index) const override {
    return objectType == 24 && index == 3 ? &object : nullptr;
  }
  DrawStatic object;
};

TEST(ReferenceParts, ChildLists) {
  const OneStatic context;
  const DrawList* const first = &context.object.firstList;
  const DrawList* const second = &context.object.secondList;
  struct Row {
    int type, index, useSecond, isHidden;
    const DrawList* expected;
  };
  for (const Row& row : {Row{24, 3, 0, 0, first},
                         {24, 3, 0, 1, first},
                         {24, 3, 1, 0, second},
                         {24, 3, 1, 1, first},
                         {24, 4, 1, 0, nullptr},
                         {21, 3, 0, 0, nullptr}}) {
    for (const int v : {100, 106, 117, 157}) {
      const DrawPart part = readFresh(test::staticRef({.objectType = row.type,
                                                       .staticIndex = row.index,
                                                       .useSecond = row.useSecond,
                                                       .secondIsHidden = row.isHidden}),
                                      v);
      EXPECT_EQ(childList(part), row.expected) << v;
      DrawPart copy;
      copyPart(copy, part);
      EXPECT_EQ(childList(copy), row.expected);
    }
  }
}

}  // namespace
}  // namespace rvf
