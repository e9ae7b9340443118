#include "compare/PartComparison.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <limits>
#include <string>
#include <vector>

#include "compare/CompareFixture.h"

namespace rvf {
namespace {

using namespace test;
using namespace std::string_literals;
using Parts = std::vector<Part>;

constexpr bool kEqual = true;
constexpr DiffFlags kNone = 0;

void expectComparison(const Part& left, const Part& right, bool equal, DiffFlags bits) {
  const DrawPart a = readPart(left);
  const DrawPart b = readPart(right);
  EXPECT_EQ(partsEqual(a, b), equal);
  EXPECT_EQ(classifyParts(a, b), bits);
}

/// Parts that differ from another in one or more fields, by what that earns.
struct Changes {
  DiffFlags bits;
  Parts parts;
  bool equal = false;
};

// In both directions.
void expectChanges(const Part& base, const std::vector<Changes>& table) {
  expectComparison(base, base, kEqual, kNone);
  for (const Changes& changes : table) {
    for (std::size_t i = 0; i < changes.parts.size(); ++i) {
      SCOPED_TRACE("type " + std::to_string(base.type) + ", " + std::to_string(changes.bits) +
                   (changes.equal ? ", equal" : "") + ", part " + std::to_string(i));
      expectComparison(base, changes.parts[i], changes.equal, changes.bits);
      expectComparison(changes.parts[i], base, changes.equal, changes.bits);
    }
  }
}

TEST(PartComparison, EveryFieldOfText) {
  Part other = text();
  other.extraId = 98;
  expectChanges(
      text(),
      {{kNone, {other}, kEqual},
       {2176, {text({.text = u"abd"}), text({.text = u"abcd"}), text({.runs = {{}, {}}})}},
       {2080, {text({.runs = {{.x = 11}}}), text({.runs = {{.y = 19}}})}},
       {kNone, {text({.runs = {{.charCount = 2}}}), text({.runs = {{.runClass = 5}}})}},
       {kNone, {text({.runs = {{.extra = 6}}}), text({.textFlags = 1})}},
       {kNone, {text({.extensionRuns = {{}}}), text({.outlines = {{1, 2}}})}},
       {8192, {text({.fontId = 8})}},
       {512, {text({.rotation = 46})}},
       {256, {text({.colour = kRed}), text({.tint = 81})}},
       {8192 + 2080, {text({.runs = {{.x = 11}}, .fontId = 8})}},
       {8192 + 512 + 256 + 2176, {text({.text = u"", .fontId = 8, .rotation = 1, .tint = 1})}}});
  expectChanges(text({.extensionRuns = {{}}, .outlines = {{1, 2}}}),
                {{kNone, {text({.extensionRuns = {{.x = 9}}, .outlines = {{1, 3}}})}, kEqual}});

  // Two fields that no file holds.
  const DrawPart plain = readPart(text());
  DrawPart variant = readPart(text());
  variant.fields.text.fontVariant = 1;
  EXPECT_FALSE(partsEqual(plain, variant));
  EXPECT_EQ(classifyParts(plain, variant), 512U);
  variant.fields.text.fontVariant = 0;
  variant.fields.text.fontExtra = 1;
  EXPECT_FALSE(partsEqual(plain, variant));
  EXPECT_EQ(classifyParts(plain, variant), 8192U);
}

TEST(PartComparison, EveryFieldOfLines) {
  const std::vector<test::Point> moved = {{1, 1}, {1, 1}};
  expectChanges(
      line(),
      {{16384, {line({.points = {{10, 20}}}), line({.lineKind = 0}), line({.lineStyle = 0})}},
       {16384, {line({.overprint = 0}), line({.points = moved, .lineKind = 0, .width = 1})}},
       {1056, {line({.points = {{11, 20}, {30, 40}}}), line({.points = {{10, 20}, {30, 39}}})}},
       {1056, {line({.points = moved, .width = 1})}},
       {64, {line({.width = 16})}},
       {256, {line({.colour = kRed}), line({.tint = 0})}},
       {256 + 64, {line({.width = 1, .tint = 1})}},
       {256 + 16384, {line({.points = moved, .lineKind = 0, .width = 1, .tint = 0})}}});
  expectChanges(
      justOneLine(),
      {{1056, {justOneLine({.x1 = 11}), justOneLine({.x2 = 31}), justOneLine({.y1 = 21})}},
       {1056, {justOneLine({.y2 = 41}), justOneLine({.x1 = 0, .shapeCode = 0, .width = 0})}},
       {1024, {justOneLine({.shapeCode = 0}), justOneLine({.shapeFlag = 0})}},
       {1024, {justOneLine({.lineStyle = 0}), justOneLine({.lineStyle = 0, .width = 0})}},
       {64, {justOneLine({.width = 14})}},
       {256, {justOneLine({.colour = kRed}), justOneLine({.tint = 81})}},
       {256 + 1056, {justOneLine({.y2 = 0, .tint = 0})}},
       {256 + 1024, {justOneLine({.lineStyle = 0, .width = 0, .tint = 0})}},
       {256 + 64, {justOneLine({.width = 0, .tint = 0})}}});
  expectChanges(
      lineSet(),
      {{1024, {lineSet({.offsets = {20, 40}}), lineSet({.horizontal = 0})}},
       {1024, {lineSet({.lineStyle = 3}), lineSet({.start = 0, .lineStyle = 0, .width = 0})}},
       {1056, {lineSet({.start = 11}), lineSet({.end = 501}), lineSet({.offsets = {20, 40, 71}})}},
       {1056, {lineSet({.end = 0, .width = 0})}},
       {64, {lineSet({.width = 16})}},
       {256, {lineSet({.colour = kRed}), lineSet({.tint = 81})}},
       {256 + 1056, {lineSet({.start = 0, .tint = 0})}},
       {256 + 1024, {lineSet({.lineStyle = 0, .width = 0, .tint = 0})}},
       {256 + 64, {lineSet({.width = 0, .tint = 0})}}});
}

TEST(PartComparison, EveryFieldOfShapes) {
  expectChanges(
      rect(),
      {{32800, {rect({.area = {.left = 99}}), rect({.area = {.top = 201}})}},
       {32800, {rect({.area = {.right = 301}}), rect({.area = {.bottom = 401}})}},
       {32768, {rect({.noFill = 1}), rect({.noOutline = 1}), rect({.shapeCode = 4})}},
       {32768, {rect({.shapeFlag = 5}), rect({.area = {}, .shapeCode = 0, .lineWidth = 0})}},
       {64, {rect({.lineWidth = 16})}},
       {256, {rect({.fillColour = kRed}), rect({.fillTint = 81}), rect({.lineColour = kBlue})}},
       {256, {rect({.lineTint = 91})}},
       {256 + 32800 + 64, {rect({.area = {.left = 1}, .lineWidth = 0, .fillTint = 0})}}});

  std::vector<test::Point> points = {{1, 1}, {2, 2}, {3, 3}, {4, 4}, {5, 5}, {900, 900}};
  const Part six = poly({.points = points}), thinSix = poly({.points = points, .lineWidth = 0});
  points[4].y = 6;
  const Part movedSix = poly({.points = points});
  points.push_back({7, 7});
  const Part seven = poly({.points = points}), paleSeven = poly({.points = points, .fillTint = 0});
  points = {{1, 1}, {2, 2}, {3, 3}, {4, 4}, {6, 5}};
  const auto five = [](test::PolyFields f = {}) {
    f.points = {{1, 1}, {2, 2}, {3, 3}, {4, 4}, {5, 5}};
    return poly(f);
  };
  expectChanges(
      five(),
      {{kNone, {five({.shapeCodeD = 0}), five({.gradient = test::Gradient()})}, kEqual},
       {kNone, {six}},  // one point more or less is allowed, and is not looked at
       {64, {thinSix, five({.lineWidth = 14})}},
       {32800, {movedSix, poly({.points = points}), poly({.points = points, .lineWidth = 0})}},
       {32768, {seven, five({.shapeCodeA = 0}), five({.shapeCodeB = 0}), five({.shapeCodeC = 0})}},
       {32768, {five({.noFill = 1}), five({.noOutline = 1}), five({.polyCode = 0})}},
       {32768, {five({.polyExtra = 0}), five({.lineWidth = 0, .polyExtra = 0})}},
       {256, {five({.fillColour = kRed}), five({.fillTint = 0}), five({.lineColour = kBlue})}},
       {256, {five({.lineTint = 0})}},
       {256 + 32768, {paleSeven, five({.lineTint = 0, .polyCode = 0})}},
       {256 + 32800, {poly({.points = points, .fillTint = 0})}},
       {256 + 64, {five({.lineWidth = 0, .fillTint = 0, .lineTint = 0})}}});

  // Only the left part tells whether a colour counts.
  expectComparison(rect({.noFill = 1}), rect({.noFill = 1, .fillTint = 1}), false, kNone);
  expectComparison(rect({.noOutline = 1}), rect({.noOutline = 1, .lineTint = 1}), false, kNone);
  expectComparison(rect(), rect({.noFill = 1, .fillTint = 1}), false, 256 + 32768);
  expectComparison(rect({.noFill = 1, .fillTint = 1}), rect(), false, 32768);
  expectComparison(poly({.noFill = 1}), poly({.noFill = 1, .fillTint = 1}), false, kNone);
  expectComparison(poly(), poly({.noOutline = 1, .lineTint = 1}), false, 256 + 32768);
  expectComparison(poly({.noOutline = 1, .lineTint = 1}), poly(), false, 32768);
}

TEST(PartComparison, EveryFieldOfImages) {
  const std::vector<Changes> changes = {
      {4096, {image({.area = {.left = 1}}), image({.area = {.top = 1}})}},
      {4096, {image({.area = {.right = 1}}), image({.area = {.bottom = 1}})}},
      {4096, {image({.pixelWidth = 1}), image({.pixelHeight = 1}), image({.imageKind = 1})}},
      {4096, {image({.kindValue = 1}), image({.bytes = "image bytez"}), image({.bytes = "i"})}},
      {4096, {image({.flagA = 9}), image({.flagB = 9}), image({.flagC = 9}), image({.flagD = 9})}},
      {4096, {image({.byteE = 9}), image({.imageFlag = 9}), image({.valueA = 9})}},
      {4096, {image({.valueB = 9}), image({.valueC = 9}), image({.valueD = 9})}},
      {4096, {image({.valueE = 9}), image({.valueF = 9}), image({.valueG = 9})}},
      {4096, {image({.colourA = {.kind = 1}}), image({.colourA = {.value = 0xA1}})}},
      {4096, {image({.colourB = {}}), image({.colourC = {}}), image({.colourE = {}})}},
      {4096, {image({.nameValues = {{}}}), image({.link = LinkFields()})}},
      {kNone, {image({.droppedColour = {}})}, kEqual}};
  expectChanges(image(), changes);
  // No tolerance applies, not to the place either.
  const WithTolerances wide(100000, 100000);
  expectChanges(image(), changes);

  // What an image owns counts by its identity.
  expectComparison(image({.nameValues = {{}}}), image({.nameValues = {{}}}), false, 4096);
  expectComparison(image({.link = LinkFields()}), image({.link = LinkFields()}), false, 4096);
  for (const int kind : {11, -11}) {
    const Part bare = image({.imageKind = kind, .bytes = "abc"});
    expectComparison(bare, image({.imageKind = kind, .bytes = "xyz"}), kEqual, kNone);
    expectComparison(bare, image({.imageKind = kind, .bytes = "abcd"}), false, 4096);
  }
}

TEST(PartComparison, EveryFieldOfReferencesAndAreas) {
  expectChanges(
      staticRef(),
      {{128, {staticRef({.objectType = 24}), staticRef({.staticIndex = 1})}},
       {128, {staticRef({.useSecond = 1}), staticRef({.secondIsHidden = 1})}},
       {128, {staticRef({.width = 31}), staticRef({.height = 41}), staticRef({.refA = 9})}},
       {128, {staticRef({.refB = 9}), staticRef({.refC = 9}), staticRef({.refD = 9})}},
       {128, {staticRef({.layerByteA = 9}), staticRef({.layerByteB = 127})}},
       {32, {staticRef({.x = 11}), staticRef({.y = 21})}},
       {160, {staticRef({.x = 9, .refA = 9}), staticRef({.y = 9, .refC = 9})}},
       // A layer byte with its top bit set ends the tests of the layer.
       {kNone, {staticRef({.refC = 9, .layerByteA = 255})}},
       {kNone, {staticRef({.refD = 9, .layerByteB = 128})}},
       {32, {staticRef({.x = 9, .layerByteA = 128})}},
       {128, {staticRef({.refB = 9, .layerByteA = 128})}}});
  expectChanges(clickArea(), {{kNone,
                               {clickArea({.area = {}, .areaA = 9, .areaB = 9}),
                                clickArea({.areaScale = 9, .areaCode = 9, .areaFlag = 9})},
                               kEqual}});
  expectChanges(
      hyperlinkArea(),
      {{kNone, {hyperlinkArea({.url = u"http://b"}), hyperlinkArea({.url = u""})}},
       {kNone, {hyperlinkArea({.area = {.left = 1}}), hyperlinkArea({.area = {.top = 1}})}},
       {kNone, {hyperlinkArea({.area = {.right = 1}}), hyperlinkArea({.area = {.bottom = 1}})}},
       {kNone, {hyperlinkArea({.linkFlagA = 9})}},
       {kNone, {hyperlinkArea({.url = u"http://a\0b"s}), hyperlinkArea({.linkValue = 9})}, kEqual},
       {kNone, {hyperlinkArea({.linkFlagB = 9}), hyperlinkArea({.linkCode = 9})}, kEqual},
       {kNone, {hyperlinkArea({.linkValueB = 9}), hyperlinkArea({.linkValueC = 9})}, kEqual}});
  expectComparison(hyperlinkArea({.url = u""}), hyperlinkArea({.url = u""}), false, kNone);
}

TEST(PartComparison, EveryFieldOfSignatureFields) {
  expectChanges(
      signatureField(),
      {{128, {signatureField({.area = {.left = 1}}), signatureField({.area = {.top = 1}})}},
       {128, {signatureField({.area = {.right = 1}}), signatureField({.area = {.bottom = 1}})}},
       {128, {signatureField({.fieldFlagA = 9}), signatureField({.fieldFlagB = 9})}},
       {128, {signatureField({.fieldId = 9}), signatureField({.fieldName = "nama"})}},
       {128, {signatureField({.fieldValue = "valua"}), signatureField({.attributes = {{}, {}}})}},
       {128, {signatureField({.attributes = {}}), signatureField({.attributes = {{.name = u""}}})}},
       {128, {signatureField({.attributes = {{.value = u""}}})}},
       {128, {signatureField({.attributes = {{.hasValue = 2}}})}}});
  // Texts count up to their first zero character.
  expectComparison(signatureField({.fieldName = "ab\0\0cd"s}),
                   signatureField({.fieldName = "ab\0\0ef"s}), kEqual, kNone);
  // Old ones have no rectangle and no texts.
  const Part old = signatureField().at(142);
  expectComparison(old, signatureField({.fieldName = "x"}).at(142), kEqual, kNone);
  expectComparison(signatureField({.fieldFlagA = 0, .fieldFlagB = 0}).at(143), old, false, 128);
}

TEST(PartComparison, OnlyAStretchOfBytesOfPropertiesCounts) {
  const auto texts = [](std::u16string b, std::u16string c, std::u16string d, int kind = 3) {
    return textProp({.propKind = kind, .texts = {u"a", b, c, d}});
  };
  // The lengths a and b are 1 and 2: three bytes count, up to the low byte of "b". Two properties
  // that differ earn Content, whatever differs.
  expectChanges(
      textProp(),
      {{128, {textProp({.propKind = 4}), textProp({.propValue = 0}), textProp({.propExtra = 0})}},
       {128, {texts(u"bcx", u"defg", u"hijkl"), texts(u"bc", u"def", u"hijkl")}},
       {128, {texts(u"bc", u"defg", u"hijk"), texts(u"xc", u"defg", u"hijkl")}},
       {kNone, {texts(u"\u0162c", u"defg", u"hijkl"), texts(u"bx", u"xxxx", u"xxxxx")}, kEqual}});
  // With kind 1 the third length counts too: seven bytes.
  expectChanges(texts(u"bc", u"defg", u"hijkl", 1),
                {{128, {texts(u"bc", u"xefg", u"hijkl", 1)}},
                 {kNone, {texts(u"bc", u"\u0164efg", u"hijkl", 1)}, kEqual}});
}

TEST(PartComparison, TypesMeet) {
  // Nothing equals these, and nothing differs from them. Codes above the last one are like them.
  const std::vector<int> absorbing = {6,  11, 12, 13, 15, 16, 18, 19, 20, 21, 22, 23, 24, 25, 26,
                                      27, 28, 29, 32, 33, 35, 36, 37, 38, 39, 41, 42, 43, 45, 255};
  const std::vector<int> strict = {1, 2, 3, 4, 5, 8, 9, 30, 31, 44};
  const auto isIn = [](const std::vector<int>& codes, int code) {
    return std::ranges::find(codes, code) != codes.end();
  };
  Parts rights = allParts();
  rights.insert(rights.end(), {empty(45), empty(255)});
  for (const Part& right : rights) {
    for (const Part& left : rights) {
      SCOPED_TRACE(std::to_string(left.type) + " and " + std::to_string(right.type));
      const bool isOther = left.type != right.type;
      if (isIn(absorbing, right.type) || (right.type == 40 && isOther)) {
        expectComparison(left, right, false, kNone);
      } else if (isIn(strict, right.type) && isOther) {
        expectComparison(left, right, false, 128);
      } else if (right.type == 7 && isOther) {
        expectComparison(left, right, false, 2048);  // the reverse of what all others earn
      } else if (right.type == 0) {
        expectComparison(left, right, kEqual, kNone);
      }
    }
    const DrawPart itself = readPart(right);
    EXPECT_TRUE(partsEqual(itself, itself));
  }
  expectComparison(text(), poly({.points = {}}), kEqual, kNone);
  // Not even the same fields make a part of another type equal to one of these.
  for (const Part& part : {rect(), staticRef(), justOneLine(), signatureField().at(142)}) {
    const DrawPart right = readPart(part);
    DrawPart left = readPart(clickArea());
    left.fields = right.fields;
    EXPECT_FALSE(partsEqual(left, right)) << part.type;
    EXPECT_EQ(classifyParts(left, right), 128U) << part.type;
  }
}

// A part of another type that has just these words, and no pointer.
using Words = std::array<u32, 8>;
Part words(const Words& w) {
  const auto at = [&w](std::size_t i) { return static_cast<int>(w[i]); };
  return clickArea({.area = {at(0), at(1), at(2), at(3)},
                    .areaA = at(4),
                    .areaB = at(5),
                    .areaScale = at(6),
                    .areaCode = at(7),
                    .areaFlag = at(7) >> 16});
}

TEST(PartComparison, WordsOfOtherTypesAreReadInTheLayoutOfTheRightPart) {
  struct Layout {
    Part right;
    Words words;
    std::vector<std::size_t> compared;
    DiffFlags bits = kNone;
  };
  const test::TextPropFields noTexts{.texts = {}};
  const Layout layouts[] = {
      {resource(), {77, 8, 10, 20, 0x0028001E, 77, 0x04020003, 77}, {1, 2, 3, 4, 6}},
      {empty(14), {77, 0, 0, 77, 77, 0, 77, 77}, {1, 2, 5}},
      {empty(17), {}, {0, 1, 2, 3, 4, 5, 6, 7}},
      {layerIgnore(), {1, 2, 77, 77, 77, 77, 77, 77}, {0, 1}},
      {textProp(noTexts), {3, 8, 9, 0, 0, 0, 0, 77}, {0, 1, 2, 3, 4, 5, 6}, 2048}};
  for (const Layout& layout : layouts) {
    expectComparison(words(layout.words), layout.right, kEqual, kNone);
    for (std::size_t i = 0; i < layout.words.size(); ++i) {
      const bool isEqual = std::ranges::find(layout.compared, i) == layout.compared.end();
      for (const int bit : {0, 8, 16, 23}) {
        SCOPED_TRACE(std::to_string(layout.right.type) + ", word " + std::to_string(i));
        Words changed = layout.words;
        changed[i] ^= 1U << bit;
        const DiffFlags bits = isEqual ? kNone : layout.bits;
        expectComparison(words(changed), layout.right, isEqual, bits);
      }
    }
  }
  for (const Part& same : {resource({.bytes = "resourcE"}), resource({.dataMode = 0})}) {
    expectComparison(same, resource(), kEqual, kNone);
  }
}

TEST(PartComparison, PointersThatAreSetEqualNoNumber) {
  const Part line1 = empty(14);
  const auto marker = [](int a, int b) { return layerIgnore({.value = a, .kind = b}); };
  const test::TextFields bare{.text = u"", .runs = {}, .rotation = 0, .tint = 0};
  const test::SignatureFieldFields noFlags{.fieldFlagA = 0, .fieldFlagB = 0};
  const test::ResourceFields flat{.bytes = "", .x = 0, .y = 0, .scaleX = 1, .scaleY = 0};
  struct Case {
    Part left, right;
    bool equal;
  };
  const Case cases[] = {
      {barcode(), marker(1, 1), false},
      {subscribe({.subscriberId = 1}), marker(1, 1), false},
      {subscribe({.subscriberId = 1, .entries = {}}), marker(1, 0), true},
      {taggedObject({.tagText = u"", .altText = u"x"}), marker(0, 1), false},
      {taggedObject({.tagText = u"x", .altText = u""}), marker(1, 0), false},
      {taggedObject({.tagText = u"", .altText = u""}), marker(0, 0), true},
      {text({.runs = {}}), marker(0, 1), false},
      {text({.text = u""}), marker(1, 0), false},
      {text(bare), marker(0, 0), true},
      {locSearchKey(), marker(1, 1), false},
      {locSearchKey({.keyText = u""}), marker(1, 0), true},
      {signatureField(noFlags), marker(1, 0), false},
      {signatureField().at(142), marker(0, 0), true},
      {text(bare), line1, true},
      {line({.tint = 0, .overprint = 0}), line1, false},
      {line({.points = {}, .tint = 0, .overprint = 0}), line1, true},
      {bookmark({.bookmarkLevel = 0}), line1, false},
      {bookmark({.bookmarkLevel = 0, .title = u""}), line1, true},
      {startEnd({.area = {0, 0, 0, 0}}), line1, false},
      {image({.pixelHeight = 0, .bytes = ""}), line1, false},
      {words({0, 0, 0, 0, 1, 0, 0x04020003, 0}), resource(flat), true},
      {hyperlinkArea({.area = {0, 0, 0, 0}, .linkFlagA = 3, .linkFlagB = 0, .linkCode = 0x0402}),
       resource(flat), false},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::to_string(c.left.type) + " and " + std::to_string(c.right.type));
    expectComparison(c.left, c.right, c.equal, kNone);
  }
}

/// A part that has a value at one place, and what it earns when that is out of tolerance.
struct Placed {
  Part part;
  DiffFlags bits;
};

std::vector<Placed> withPosition(int d) {
  return {{text({.runs = {{}, {.x = d}}}), 2080},
          {text({.runs = {{.y = d}, {}}}), 2080},
          {line({.points = {{1, 2}, {d, 4}}}), 1056},
          {line({.points = {{1, d}, {3, 4}}}), 1056},
          {poly({.points = {{d, 2}, {3, 4}}}), 32800},
          {poly({.points = {{1, 2}, {3, d}}}), 32800},
          {staticRef({.x = d}), 32},
          {staticRef({.y = d}), 32},
          {justOneLine({.x1 = d}), 1056},
          {justOneLine({.x2 = d}), 1056},
          {justOneLine({.y1 = d}), 1056},
          {justOneLine({.y2 = d}), 1056},
          {lineSet({.start = d}), 1056},
          {lineSet({.end = d}), 1056},
          {lineSet({.offsets = {1, d}}), 1056}};
}

TEST(PartComparison, BytesOfOtherTypesAreComparedAsThoseOfProperties) {
  const auto property = [](std::u16string b, std::u16string d) {
    return textProp({.propKind = 0, .propValue = 0, .texts = {u"", b, u"", d}});
  };
  // The words of a text without runs and characters: fontId stands where the second length is, the
  // flags where the fourth is. Its extension area begins with FEFE, the count, and y of a run.
  const auto bare = [](int fontId, std::vector<test::Run> extensionRuns) {
    test::TextFields f{.text = u"", .runs = {}, .fontId = fontId, .rotation = 0};
    f.colour = 0;
    f.tint = 0;
    f.extensionRuns = std::move(extensionRuns);
    return text(f);
  };
  const std::vector<test::Run> run = {{.x = 0, .y = 0x0201}};
  expectComparison(bare(0, {}), property(u"", u""), kEqual, kNone);
  expectComparison(bare(2, run), property(u"\uFEFEx", u"abcd"), kEqual, kNone);
  expectComparison(bare(2, run), property(u"\uFEFDx", u"abcd"), false, 2048);
  expectComparison(bare(6, run), property(u"\uFEFE\1\u0201yyy", u"abcd"), kEqual, kNone);
  expectComparison(bare(6, run), property(u"\uFEFE\1\u0202yyy", u"abcd"), false, 2048);
  expectComparison(bare(6, run), property(u"\uFEFE\1\u0201yyy", u"abc"), false, 2048);
  // Nothing behind the end of a payload is looked at.
  expectComparison(bare(2, {}), property(u"ab", u""), false, 2048);
  expectComparison(bare(21, run), property(std::u16string(21, u'a'), u"abcd"), false, 2048);
  expectComparison(words({0, 0, 0, 0, 1, 0, 0, 0}), property(u"a", u""), false, 2048);
}

std::vector<Placed> withWidth(int d) {
  return {{line({.width = d}), 64},
          {poly({.lineWidth = d}), 64},
          {justOneLine({.width = d}), 64},
          {lineSet({.width = d}), 64}};
}

TEST(PartComparison, TolerancesIncludeTheirLimit) {
  constexpr i32 kLowest = std::numeric_limits<i32>::min();
  constexpr i32 kHighest = std::numeric_limits<i32>::max();
  const auto expectLimit = [](auto partsAt, i32 start, i32 end, bool isWithin) {
    const std::vector<Placed> a = partsAt(start);
    const std::vector<Placed> b = partsAt(end);
    for (std::size_t i = 0; i < a.size(); ++i) {
      SCOPED_TRACE("part " + std::to_string(i) + " to " + std::to_string(end));
      expectComparison(a[i].part, b[i].part, false, isWithin ? kNone : a[i].bits);
      expectComparison(b[i].part, a[i].part, false, isWithin ? kNone : a[i].bits);
    }
  };
  for (const i32 limit : {5, kHighest - 9}) {
    const WithTolerances positions(limit, 0);
    expectLimit(withPosition, -3, -3 + limit - 1, true);
    expectLimit(withPosition, -3, -3 + limit, true);
    expectLimit(withPosition, -3, -3 + limit + 1, false);
    expectLimit(withPosition, kLowest, kHighest, false);
  }
  for (const i32 limit : {5, kHighest - 9}) {
    const WithTolerances lines(0, limit);
    expectLimit(withWidth, -3, -3 + limit - 1, true);
    expectLimit(withWidth, -3, -3 + limit, true);
    expectLimit(withWidth, -3, -3 + limit + 1, false);
    expectLimit(withWidth, kLowest, kHighest, false);
  }
  // The width of a rectangle has 16 bits and no sign. Its place has a tolerance of one step.
  const Part wide = rect({.lineWidth = 65535});
  const Part far = rect({.area = {.left = -2000000000}});
  const WithTolerances lines(0, 5);
  expectChanges(wide, {{kNone, {rect({.lineWidth = 65530})}},
                       {64, {rect({.lineWidth = 65529}), rect({.lineWidth = 0})}}});
  expectChanges(rect(), {{32800, {far, rect({.area = {.left = 99}})}}});
  for (const i32 limit : {1, 2, 1000}) {
    const WithTolerances positions(limit, 0);
    expectChanges(rect(), {{kNone, {far, rect({.area = {.left = 99}})}}});
  }
}

TEST(PartComparison, NothingIsWithinANegativeTolerance) {
  const WithTolerances negative(-1, -1);
  // What is not reached is not out of tolerance, nor is a run of equal bytes.
  expectChanges(text(), {{kNone, {text({.textFlags = 1})}},
                         {8192, {text({.fontId = 9})}},
                         {2080, {text({.runs = {{.charCount = 2}}})}}});
  expectChanges(line(), {{256 + 1056, {line({.tint = 0})}}, {16384, {line({.lineKind = 0})}}});
  expectChanges(line({.points = {}}), {{256 + 64, {line({.points = {}, .tint = 0})}}});
  expectChanges(rect(), {{256 + 32800 + 64, {rect({.lineTint = 0})}}});
  expectChanges(poly(), {{256 + 32800, {poly({.fillTint = 0})}}});
  expectChanges(staticRef(), {{160, {staticRef({.refA = 9})}}, {32, {staticRef({.x = 9})}}});
  expectChanges(staticRef({.layerByteA = 255}), {{32, {staticRef({.layerByteA = 254})}}});
  expectChanges(justOneLine(), {{256 + 1056, {justOneLine({.tint = 0})}}});
  expectChanges(lineSet(), {{256 + 1056, {lineSet({.tint = 0})}}});
  const WithTolerances lines(0, -1);
  expectChanges(line(), {{256 + 64, {line({.tint = 0})}}});
}

TEST(PartComparison, GroupsEqualByTheirChildren) {
  Side first, second;
  const DrawList a = first.list({first.group({text()}), first.group({text(), line()}),
                                 first.group({}), staticRef({.staticIndex = 3})});
  const DrawList b = second.list({second.group({text()}), second.group({text(), rect()}),
                                  second.group({line()}), second.group({line()})});
  const bool expected[] = {true, false, false, true};  // the last one has no list on one side
  for (i32 i = 0; i < 4; ++i) {
    EXPECT_EQ(partsEqual(a[i], b[i]), expected[i]) << i;
    EXPECT_EQ(partsEqual(b[i], a[i]), expected[i]) << i;
    EXPECT_EQ(classifyParts(a[i], b[i]), kNone) << i;  // what differs inside earns nothing here
  }
}

}  // namespace
}  // namespace rvf
