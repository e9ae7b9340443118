#include "compare/PartComparison.h"

#include <gtest/gtest.h>

#include <limits>

#include "compare/CompareFixture.h"
#include "support/FrozenText.h"
#include "support/Reporting.h"

namespace rvf::test {
namespace {

using namespace std::string_literals;
using Parts = std::vector<Part>;

/// A part that has just these words, and no pointer.
Part words(const std::array<u32, 8>& w) {
  const auto at = [&w](std::size_t i) { return static_cast<int>(w[i]); };
  const Rectangle area{at(0), at(1), at(2), at(3)};
  return clickArea({area, at(4), at(5), at(6), at(7), at(7) >> 16});
}

/// The first part of each type is compared with all of its type, with every byte of it changed in
/// its turn: what each field earns, alone and beside other differences.
Parts comparedParts() {
  const std::vector<Point> two = {{10, 20}, {30, 40}}, moved = {{1, 1}, {1, 1}, {1, 1}};
  const std::vector<Point> four = {{10, 20}, {30, 40}, {50, 25}, {900, 900}};
  const std::vector<Point> five = {{10, 20}, {30, 40}, {50, 25}, {900, 900}, {1, 1}};
  const Run left{.x = 9};
  return {
      text({.runs = {{}, {}}, .tint = 1, .extensionRuns = {{}}, .outlines = {{1, 2}}}),
      text({.text = u"abcd", .runs = {{}, {}}}), text(), text({.text = u"abc", .runs = {{}, left}}),
      text({.runs = {left, {}}, .textFlags = 1, .tint = 1, .extensionRuns = {left}}), line(),
      line({.points = moved}), line({.points = {{1, 1}, {1, 1}}, .width = 900, .tint = 0}),
      justOneLine(), justOneLine({.x1 = 1, .width = 900, .tint = 0}),
      justOneLine({.lineStyle = 0, .width = 900}), lineSet(),
      lineSet({.end = 0, .width = 900, .tint = 0}), lineSet({.offsets = {20, 40}, .width = 900}),
      // A width has 16 bits and no sign, and only the left part tells whether its colours count.
      rect({.lineWidth = 65535}), rect({.area = {.left = 900}, .lineWidth = 0}),
      rect({.noFill = 1, .fillTint = 1}), rect({.noOutline = 1, .lineTint = 1}),
      poly({.gradient = Gradient()}), poly({.points = two}),
      poly({.points = moved, .lineWidth = 900}), poly({.points = four, .lineWidth = 900}),
      poly({.points = five, .fillTint = 0}), poly({.noFill = 1, .fillTint = 1}),
      poly({.noOutline = 1, .lineTint = 1}), image(), image({.imageKind = 11}),
      image({.link = LinkFields()}), image({.nameValues = {{}}}), textProp({.propKind = 1}),
      textProp({.propKind = 2}), clickArea(),
      // A layer byte with its top bit set ends the tests of the layer.
      staticRef({.layerByteA = 127}), staticRef({.x = 900, .refC = 9, .layerByteA = 127}),
      staticRef({.layerByteA = 128}), staticRef({.refD = 9, .layerByteA = 127, .layerByteB = 255}),
      hyperlinkArea({.url = u"a\0b"s}), hyperlinkArea({.url = u"a\0c"s}),
      hyperlinkArea({.url = u""}), signatureField({.fieldName = "ab\0\0cd"s}),
      signatureField().at(142), resource(), empty(17)};
}

/// Words of a click area that are read in the layout of the right part.
const std::pair<Part, Part> kWordPairs[] = {
    {words({77, 8, 10, 20, 0x0028001E, 77, 0x04020003, 77}), resource()},
    {words({77, 0, 0, 77, 77, 0, 77, 77}), empty(14)},
    {words({}), empty(17)},
    {words({1, 2, 77, 77, 77, 77, 77, 77}), layerIgnore()},
    {words({3, 8, 9, 0, 0, 0, 0, 77}), textProp({.texts = {}})}};

std::string comparison(const DrawPart& left, const DrawPart& right) {
  return partsEqual(left, right) ? "=" : std::to_string(classifyParts(left, right));
}

/// Both ways, with no tolerance, with two different ones, and with negative ones. What differs by
/// one bit in the second byte of a number is just at the border of 256.
std::string comparisons(const std::string& record, const DrawPart& right) {
  const CatchProcessEnd catching;
  LoadedBytes loaded(record, true);
  DrawPart left;
  try {
    readDrawPart(left, loaded.archive);
  } catch (const ProcessEnded&) {
    return "not readable";
  }
  if (loaded.archive.failed()) return "not readable";
  std::string results;
  for (const auto& [position, width] : {std::pair{0, 0}, {256, 255}, {255, 256}, {-1, -1}}) {
    const WithTolerances tolerances(position, width);
    const std::string result = comparison(left, right), back = comparison(right, left);
    results += " " + result + (back == result ? "" : "/" + back);
  }
  return results;
}

std::string sweep(const Part& left, const Part& right) {
  constexpr std::size_t kFirstField = 5;  // behind version and type
  ByteWriter w(true);
  writePart(w, left);
  const DrawPart read = readPart(right);
  Deltas deltas;
  deltas.add("unchanged", {comparisons(w.bytes, read)});
  for (std::size_t i = kFirstField; i < w.bytes.size(); ++i) {
    std::string changed = w.bytes;
    changed[i] ^= 1;
    deltas.add("byte " + std::to_string(i), {comparisons(changed, read)});
  }
  return "types " + std::to_string(left.type) + " and " + std::to_string(right.type) + "\n" +
         deltas.text();
}

TEST(PartComparison, WhatEachByteOfARecordEarns) {
  const Parts parts = comparedParts();
  std::string text;
  for (const Part& right : parts) {
    text += sweep(*std::ranges::find(parts, right.type, &Part::type), right);
  }
  for (const auto& [left, right] : kWordPairs) text += sweep(left, right);
  expectFrozen("comparisons.txt", text);
}

/// Parts of all types and then, for some, others that are near to them in their words.
Parts meetingParts() {
  Parts parts = allParts();
  const auto add = [&parts](const auto&... part) { (parts.push_back(part), ...); };
  add(empty(45), empty(255), poly({.points = {}}));
  // Parts whose words are those of another type but for a pointer, and the same without it.
  const TextFields bare{.text = u"", .runs = {}, .rotation = 0, .tint = 0};
  const auto marker = [](int a, int b) { return layerIgnore({.value = a, .kind = b}); };
  add(marker(0, 0), marker(0, 1), marker(1, 0), marker(1, 1), text(bare), text({.runs = {}}));
  add(text({.text = u""}), subscribe({.subscriberId = 1}), locSearchKey({.keyText = u""}));
  add(subscribe({.subscriberId = 1, .entries = {}}), signatureField().at(142));
  add(line({.points = {}, .tint = 0, .overprint = 0}), line({.tint = 0, .overprint = 0}));
  add(bookmark({.bookmarkLevel = 0}), bookmark({.bookmarkLevel = 0, .title = u""}));
  add(resource({.bytes = "resourcE"}), resource({.dataMode = 0}));
  // The words of a text without runs and characters are those of a property: fontId stands where
  // the second length is. Its extension area begins with FEFE, the count, and y of a run.
  const auto fontless = [&bare](int fontId, std::vector<Run> runs) {
    TextFields f = bare;
    f.fontId = fontId;
    f.colour = 0;
    f.extensionRuns = std::move(runs);
    return text(f);
  };
  const auto property = [](std::u16string b, std::u16string d) {
    return textProp({.propKind = 0, .propValue = 0, .texts = {u"", b, u"", d}});
  };
  const std::vector<Run> run = {{.x = 0, .y = 0x0201}};
  add(fontless(0, {}), fontless(2, {}), fontless(2, run), fontless(6, run), fontless(21, run));
  add(property(u"", u""), property(u"ab", u""), property(u"\uFEFEx", u"abcd"));
  add(property(u"\uFEFDx", u"abcd"), property(u"\uFEFE\1\u0201yyy", u"abcd"));
  add(property(u"\uFEFE\1\u0202yyy", u"abcd"), property(std::u16string(21, u'a'), u"abcd"));

  return parts;
}

TEST(PartComparison, TypesMeet) {
  const Parts parts = meetingParts();
  std::string text;
  for (const Part& right : parts) {
    Deltas deltas;
    for (std::size_t i = 0; i < parts.size(); ++i) {
      const std::string name =
          "#" + std::to_string(i) + " of type " + std::to_string(parts[i].type);
      deltas.add(name, {comparison(readPart(parts[i]), readPart(right))});
    }
    text += "type " + std::to_string(right.type) + "\n" + deltas.text();
  }
  expectFrozen("meetings.txt", text);

  const DrawPart itself = readPart(startEnd());
  EXPECT_TRUE(partsEqual(itself, itself));
  // Not even the same fields make a part of another type equal to one of these.
  for (const Part& part : {rect(), staticRef(), justOneLine(), signatureField().at(142)}) {
    const DrawPart right = readPart(part);
    DrawPart left = readPart(clickArea());
    left.fields = right.fields;
    EXPECT_EQ(comparison(left, right), "128") << part.type;
  }
}

TEST(PartComparison, FieldsOfTextThatNoFileHolds) {
  const DrawPart plain = readPart(text());
  DrawPart other = readPart(text());
  other.fields.text.fontVariant = 1;
  EXPECT_EQ(comparison(plain, other), "512");
  other.fields.text.fontVariant = 0;
  other.fields.text.fontExtra = 1;
  EXPECT_EQ(comparison(plain, other), "8192");
}

TEST(PartComparison, TolerancesIncludeTheirLimit) {
  constexpr i32 kLowest = std::numeric_limits<i32>::min();
  constexpr i32 kHighest = std::numeric_limits<i32>::max();
  EXPECT_TRUE(exceeds(kLowest, kHighest, kHighest) && exceeds(kHighest, kLowest, kHighest));
  EXPECT_FALSE(exceeds(-3, kHighest - 3, kHighest) || exceeds(kHighest - 3, -3, kHighest));
  EXPECT_TRUE(exceeds(-3, 3, 5) && exceeds(3, -3, 5) && exceeds(7, 7, -1));
  EXPECT_FALSE(exceeds(-3, 2, 5) || exceeds(2, -3, 5) || exceeds(7, 7, 0));
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
    EXPECT_EQ(classifyParts(a[i], b[i]), 0U) << i;  // what differs inside earns nothing here
  }
}

}  // namespace
}  // namespace rvf::test
