#include "compare/PartComparison.h"

#include <limits>

#include "compare/CompareFixture.h"
#include "pagemodel/TextParts.h"

namespace rvf::test {
namespace {

using namespace std::string_literals;
using Parts = std::vector<Part>;

/// The first part of each type is compared with all others of its type, with each of its bytes
/// changed in turn: the bits for each field, alone and together with other differences.
Parts comparedParts() {
  const std::vector<Point> two = {{10, 20}, {30, 40}}, moved = {{1, 1}, {1, 1}, {1, 1}};
  const std::vector<Point> five = {{10, 20}, {30, 40}, {50, 25}, {900, 900}, {1, 1}};
  const Run left{.x = 9};
  return {
      text({.runs = {{}, {}}, .tint = 1, .extensionRuns = {{}}, .outlines = {{1, 2}}}),
      text({.text = u"abcd", .runs = {{}, {}}}), text(), text({.runs = {{}, left}}),
      text({.runs = {left, {}}, .textFlags = 1, .tint = 1, .extensionRuns = {left}}), line(),
      line({.points = moved}), line({.points = {{1, 1}, {1, 1}}, .width = 900, .tint = 0}),
      justOneLine(), justOneLine({.x1 = 1, .width = 900, .tint = 0}), lineSet(),
      lineSet({.end = 0, .width = 900, .tint = 0}), lineSet({.offsets = {20, 40}, .width = 900}),
      // A width is unsigned with 16 bits, and only the left part determines whether its colours
      // count.
      rect({.lineWidth = 65535}), rect({.area = {.left = 900}, .lineWidth = 0}),
      rect({.noFill = 1, .fillTint = 1}), rect({.noOutline = 1, .lineTint = 1}),
      poly({.gradient = Gradient()}), poly({.points = two}),
      poly({.points = moved, .lineWidth = 900}), poly({.points = five, .fillTint = 0}),
      poly({.noFill = 1, .fillTint = 1}), poly({.noOutline = 1, .lineTint = 1}), image(),
      image({.link = LinkFields()}), image({.nameValues = {{}}}), textProp({.propKind = 1}),
      textProp({.propKind = 2}), clickArea(), resource(), empty(17),
      // A layer byte with its top bit set ends the comparison of layers.
      staticRef({.layerByteA = 127}), staticRef({.x = 900, .refC = 9, .layerByteA = 127}),
      staticRef({.layerByteA = 128}), staticRef({.refD = 9, .layerByteA = 127, .layerByteB = 255}),
      hyperlinkArea({.url = u"a\0b"s}), hyperlinkArea({.url = u"a\0c"s}),
      hyperlinkArea({.url = u""}), signatureField({.fieldName = "ab\0\0cd"s}),
      signatureField().at(142)};
}

std::string comparison(const DrawPart& left, const DrawPart& right,
                       const Tolerances& tolerances = {}) {
  return partsEqual(left, right) ? "=" : std::to_string(classifyParts(left, right, tolerances));
}

/// In both directions, without tolerances, with two different ones, and with negative ones. A
/// change of one bit in the second byte of a number is exactly at the limit of 256.
std::string comparisons(const DrawPart& left, const DrawPart& right) {
  std::string results;
  for (const auto& [position, width] : {std::pair{0, 0}, {256, 255}, {255, 256}, {-1, -1}}) {
    const Tolerances tolerances{position, width};
    const std::string result = comparison(left, right, tolerances);
    const std::string back = comparison(right, left, tolerances);
    results += " " + result + (back == result ? "" : "/" + back);
  }
  return results;
}

std::string sweep(const Part& left, const Part& right) {
  constexpr std::size_t kFirstField = 5;  // after version and type
  const std::string record = recordOf(left);
  const DrawPart read = readFresh(right), unchanged = readFresh(left);
  Deltas deltas;
  deltas.add("unchanged", {comparisons(unchanged, read)});
  for (std::size_t i = kFirstField; i < record.size(); ++i) {
    std::string bytes = record;
    bytes[i] ^= 1;
    DrawPart changed;
    if (!readRecord(changed, bytes)) continue;
    // Changing a byte of a count changes all fields after it, and some bytes are dropped.
    const Rows names = changedNames(fieldsOf(unchanged), fieldsOf(changed));
    if (!names.empty()) deltas.add(names[0], {comparisons(changed, read)});
  }
  return Shown::row("types", left.type, right.type) + "\n" + deltas.text();
}

TEST(PartComparison, BitsForEachByteOfARecord) {
  const Parts parts = comparedParts();
  std::string text;
  for (const Part& right : parts) {
    text += sweep(*std::ranges::find(parts, right.type, &Part::type), right);
  }
  expectFrozen("comparisons.txt", text);
}

/// Parts of all types and, for some, others with nearly the same words.
Parts meetingParts() {
  Parts parts = allParts();
  const auto add = [&parts](const auto&... part) { (parts.push_back(part), ...); };
  add(empty(45), empty(255), poly({.points = {}}), text({.runs = {}}), text({.text = u""}));
  // Parts whose words are those of another type except for a pointer, and the same without it.
  const auto marker = [](int a, int b) { return layerIgnore({.value = a, .kind = b}); };
  add(marker(0, 0), marker(0, 1), marker(1, 0), marker(1, 1), locSearchKey({.keyText = u""}),
      subscribe({.subscriberId = 1}), subscribe({.subscriberId = 1, .entries = {}}),
      line({.points = {}, .tint = 0, .overprint = 0}), line({.tint = 0, .overprint = 0}),
      bookmark({.bookmarkLevel = 0}), bookmark({.bookmarkLevel = 0, .title = u""}),
      resource({.bytes = "resourcE"}), resource({.dataMode = 0}), signatureField().at(142));
  // The words of a text without runs and characters are those of a property, with fontId in the
  // place of the second length. Its extension area begins with FEFE, the count, and the y of a run.
  const auto fontless = [](int fontId, std::vector<Run> runs) {
    return text({.text = u"",
                 .runs = {},
                 .fontId = fontId,
                 .rotation = 0,
                 .colour = 0,
                 .tint = 0,
                 .extensionRuns = std::move(runs)});
  };
  const auto property = [](std::u16string b, std::u16string d) {
    return textProp({.propKind = 0, .propValue = 0, .texts = {u"", b, u"", d}});
  };
  const std::vector<Run> run = {{.x = 0, .y = 0x0201}};
  add(fontless(0, {}), fontless(2, {}), fontless(2, run), fontless(6, run), property(u"", u""),
      property(u"ab", u""), property(u"\uFEFEx", u"abcd"), property(u"\uFEFDx", u"abcd"),
      property(u"\uFEFE\1\u0201yyy", u"abcd"), property(u"\uFEFE\1\u0202yyy", u"abcd"));
  return parts;
}

TEST(PartComparison, TypesMeet) {
  const Parts parts = meetingParts();
  std::string text;
  for (const Part& right : parts) {
    const DrawPart read = readFresh(right);
    Deltas deltas;
    for (std::size_t i = 0; i < parts.size(); ++i) {
      deltas.add(Shown::row("#", i, parts[i].type), {comparison(readFresh(parts[i]), read)});
    }
    text += Shown::row("type", right.type) + "\n" + deltas.text();
    EXPECT_TRUE(partsEqual(read, read));  // the part itself, whatever its type
  }
  expectFrozen("meetings.txt", text);
}

// The flags follow counts of 32 bits, of which 16 are kept.
TEST(PartComparison, TextsWithMoreRecordsThanTheyKeep) {
  for (const int v : {118, 134, 157}) {
    const auto read = [v](const TextFields& fields) {
      DrawPart part;
      readWhole(part, readDrawPart, recordOf(text(fields), v), true);
      return part;
    };
    const DrawPart plain = read({.textFlags = 12});
    for (const std::size_t count : {0U, 1U, 65535U, 65536U, 65537U, 131072U}) {
      const std::vector<test::Run> runs(count);
      const std::vector<std::array<int, 6>> outlines(count);
      for (const TextFields& fields : {TextFields{.extensionRuns = runs}, {.outlines = outlines}}) {
        DrawPart part = read(fields), copy;
        EXPECT_EQ(partsEqual(part, plain), count == 0) << v << ' ' << count;
        EXPECT_EQ(partsEqual(plain, part), count == 0) << v << ' ' << count;
        copyPart(copy, part);
        EXPECT_TRUE(partsEqual(part, copy));
        shiftPart(copy, 1, 1);
        const std::size_t kept = fields.outlines.empty() ? count % 65536 : 0;
        ASSERT_EQ(extensionRuns(copy).size(), kept);
        for (const TextRun& run : extensionRuns(copy)) ASSERT_EQ(run.x, runs[0].x + 1);
        EXPECT_EQ(Shown::of(textCharacters(copy)), Shown::of(textCharacters(plain)));
      }
    }
  }
}

constexpr i32 kLowest = std::numeric_limits<i32>::min(), kHighest = -(kLowest + 1);
static_assert(exceeds(kLowest, kHighest, kHighest) && exceeds(kHighest, kLowest, kHighest));
static_assert(!exceeds(-3, kHighest - 3, kHighest) && !exceeds(7, 7, 0) && exceeds(7, 7, -1));

}  // namespace
}  // namespace rvf::test
