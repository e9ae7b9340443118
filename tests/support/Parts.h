#pragma once

#include <array>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "Bytes.h"

namespace rvf::test {

// Draw parts as a test writes them: each type has its fields, named as in the file's description
// and given values that are unlike each other, and a function that makes the `Part`:
//
//   ByteWriter file;
//   writePart(file, text({.text = u"Hello", .fontId = 3}), 118);
//
// Every number is an `int`, or unsigned for a packed colour, and is cut to the width that the
// version gives it. A field that the version does not have is left out.

inline constexpr int kNewestPart = 157;
inline constexpr int kNewestLink = 102;
inline constexpr unsigned kRed = 0x0000FFu, kBlue = 0xFF0000u;

/// A record of link information, in the tagged form or in the old one.
struct LinkFields {
  int tag = kNewestLink;
  int value1 = 31, value2 = 32, value3 = 33;
  std::u16string text = u"http://a";
  std::optional<int> capacity{};  // one more than the text is long, if not given
  std::u16string firstLabel = u"first", secondLabel = u"second";
  Sections sections{};
};
void writeLink(ByteWriter& w, const LinkFields& f);
/// The old form knows no tag; its text has two bytes a character in parts below version 133.
void writeOldLink(ByteWriter& w, const LinkFields& f, int partVersion);

/// The colour of an image. Without the kind word only the value is stored.
struct ColourFields {
  int kind = 0;
  unsigned value = kRed;
  int version = 100;
  Sections sections{};
};
void writeColour(ByteWriter& w, const ColourFields& f, bool withKindWord);

struct Part {
  int type = 0;
  std::function<void(ByteWriter&, int version)> payload{};  // none: the type has no fields
  std::optional<LinkFields> link{};  // in the tail of the record; only images have one
  bool emptyLinkSection = false;     // versions 127 to 131: section 127 has no content
  int extraId = 99;
  std::optional<int> version{};  // of this part alone, whatever the rest of its list has

  Part at(int v) const;
};
void writePart(ByteWriter& w, const Part& part, int version = kNewestPart);

struct Point {
  int x = 1, y = 2;
};
struct Rectangle {
  int left = 100, top = 200, right = 300, bottom = 400;
};

/// A part with this code and no fields.
Part empty(int type);

struct Run {
  int x = 10, y = 20, charCount = 3, runClass = 4, extra = 5;
};
struct TextFields {
  std::u16string text = u"abc";
  std::vector<Run> runs = {{}};
  int fontId = 7;
  int rotation = 45;  // as it is stored: degrees below version 118, then steps of 5
  int textFlags = 0;  // bits 2 and 3 are added for what the next two fields hold
  unsigned colour = kBlue;
  int tint = 80;
  std::vector<Run> extensionRuns{};
  std::vector<std::array<int, 6>> outlines{};
};
Part text(TextFields f = {});

/// The four texts give the four lengths; before version 116 there is no fourth.
struct TextPropFields {
  int propKind = 3, propValue = 8, propExtra = 9;
  std::array<std::u16string, 4> texts = {u"a", u"bc", u"defg", u"hijkl"};
};
Part textProp(TextPropFields f = {});

struct LineFields {
  std::vector<Point> points = {{10, 20}, {30, 40}};
  int lineKind = 5, lineStyle = 6, width = 15;
  unsigned colour = kBlue;
  int tint = 80, overprint = 7;
};
Part line(LineFields f = {});

struct JustOneLineFields {
  int x1 = 10, x2 = 30, y1 = 20, y2 = 40;
  int shapeCode = 1, shapeFlag = 2, lineStyle = 3, width = 15;
  unsigned colour = kBlue;
  int tint = 80;
};
Part justOneLine(JustOneLineFields f = {});

struct LineSetFields {
  int start = 10, end = 500;
  std::vector<int> offsets = {20, 40, 70};
  int horizontal = 1, lineStyle = 2, width = 15;
  unsigned colour = kBlue;
  int tint = 80;
};
Part lineSet(LineSetFields f = {});

struct RectFields {
  Rectangle area{};
  int noFill = 0, noOutline = 0, shapeCode = 3, shapeFlag = 4, lineWidth = 15;
  unsigned fillColour = kBlue, lineColour = kRed;
  int fillTint = 80, lineTint = 90;
};
Part rect(RectFields f = {});

struct Stop {
  unsigned colour = kRed;
  int tint = 70;
  double position = 0.5;
};
struct Gradient {
  int kind = 1, code = 2;
  double originX = 1.5, originY = 2.5;
  std::vector<Stop> stops = {{}};
};
struct PolyFields {
  std::vector<Point> points = {{10, 20}, {30, 40}, {50, 25}};
  int shapeCodeA = 11, shapeCodeB = 12, shapeCodeC = 13, shapeCodeD = 14;
  int noFill = 0, noOutline = 0, lineWidth = 15;
  unsigned fillColour = kBlue, lineColour = kRed;
  int fillTint = 80, lineTint = 90, polyCode = 5, polyExtra = 6;
  std::optional<Gradient> gradient{};
};
Part poly(PolyFields f = {});

/// A name with an optional value. Only images store the number.
struct NameValueFields {
  std::u16string name = u"name", value = u"value";
  int number = 9, hasValue = 1;
};
struct ImageFields {
  Rectangle area{};
  int pixelWidth = 64, pixelHeight = 32, imageKind = 7, kindValue = 8;
  std::string bytes = "image bytes";
  std::optional<int> dataLength{};  // what the file says of the bytes, if it is not their count
  int flagA = 1, flagB = 2, flagC = 3, flagD = 4, byteE = 5, imageFlag = 6;
  int valueA = 21, valueB = 22, valueC = 23, valueD = 24, valueE = 25, valueF = 26, valueG = 27;
  ColourFields colourA{.kind = 1, .value = 0xA1}, colourB{.value = 0xB2}, colourC{.value = 0xC3};
  ColourFields droppedColour{.value = 0xD4}, colourE{.value = 0xE5};
  std::vector<NameValueFields> nameValues{};
  std::optional<LinkFields> link{};
};
Part image(ImageFields f = {});

struct ResourceFields {
  int resourceKind = 4, resourceFlag = 2, resourceExtra = 3;
  int dataMode = 1;  // 0: the bytes are counted but not stored; above 1: is itself the count
  std::string bytes = "resource";
  int x = 10, y = 20, scaleX = 30, scaleY = 40;
};
Part resource(ResourceFields f = {});

struct ImportPageFields {
  int pageObject = 1, pageNumber = 2, x = 10, y = 20, valueA = 3, valueB = 4;
  Rectangle clip{};
  int importFlag = 5, byteA = 6, byteB = 7;
};
Part importPage(ImportPageFields f = {});

struct BarcodeFields {
  int x = 10, y = 20;
  std::u16string text = u"12345";
  int barcodeKind = 1, barcodeFlag = 2, barcodeCode = 3, barcodeValue = 4, angle = 90;
  int byteA = 8, tint = 80, barcodeExtra = 6, byteB = 7;
  unsigned colour = kBlue;
};
Part barcode(BarcodeFields f = {});

struct StartEndFields {
  int markerKind = 1, markerId = 2;
  Rectangle area{};
  std::optional<LinkFields> link{};
  std::vector<NameValueFields> nameValues{};
  std::optional<int> nameValueCount{};  // what the file says, if it is not their number
  int hasHyperlinkFlag = 1;
  std::vector<Point> pairs{};
};
Part startEnd(StartEndFields f = {});

/// The markers that hold little more than a value; each writes the fields that it has.
struct MarkerFields {
  int value = 1, kind = 2, state = 3, flag = 4;
};
Part udlIgnore(MarkerFields f = {});        // value, kind, flag
Part layerIgnore(MarkerFields f = {});      // value, kind
Part inserterBarcode(MarkerFields f = {});  // value, state, flag
Part maskedObject(MarkerFields f = {});     // value, state

struct ClickAreaFields {
  Rectangle area{};
  int areaA = 1, areaB = 2, areaScale = 3, areaCode = 4, areaFlag = 5;
};
Part clickArea(ClickAreaFields f = {});

struct StaticRefFields {
  int objectType = 21, staticIndex = 0, useSecond = 0, secondIsHidden = 0;
  int x = 10, y = 20, width = 30, height = 40, refA = 1, refB = 2, refC = 3, refD = 4;
  int layerByteA = 5, layerByteB = 6;
};
Part staticRef(StaticRefFields f = {});

struct LocSearchKeyFields {
  int keyValue = 1;
  std::u16string keyText = u"key", keySecondText = u"second";
  int keyFlagA = 7, keyFlagB = 8;
};
Part locSearchKey(LocSearchKeyFields f = {});

struct HyperlinkAreaFields {
  std::u16string url = u"http://a";
  Rectangle area{};
  int linkValue = 1, linkFlagA = 2, linkFlagB = 3, linkCode = 4, linkValueB = 5, linkValueC = 6;
};
Part hyperlinkArea(HyperlinkAreaFields f = {});

struct SubscribeEntryFields {
  std::optional<int> version = 101;  // none: the old form, which starts with the id
  int entryId = 1, entryValue = 2;
  std::u16string entryName = u"entry";
  Sections sections{};
};
struct SubscribeFields {
  int subscriberId = 6;
  std::vector<SubscribeEntryFields> entries = {{}};
};
Part subscribe(SubscribeFields f = {});

struct TaggedObjectFields {
  int markerState = 1, tagKind = 2, tagId = 5, language = 7;
  std::u16string tagText = u"tag", altText = u"other", actualText = u"actual";
};
Part taggedObject(TaggedObjectFields f = {});

struct BookmarkFields {
  int bookmarkId = 1, bookmarkLevel = 2;
  std::u16string title = u"title";
};
Part bookmark(BookmarkFields f = {});

/// The two texts are the bytes that stand in the file: as many as the length tells characters.
struct SignatureFieldFields {
  Rectangle area{};
  int fieldFlagA = 1, fieldFlagB = 2, fieldId = 3;
  std::string fieldName = "name", fieldValue = "value";
  std::vector<NameValueFields> attributes = {{}};
};
Part signatureField(SignatureFieldFields f = {});

/// One part of every code from 0 to 44, in order, with all that the type can hold.
std::vector<Part> allParts();

/// Every version just before and just behind a change of some part's layout, in rising order: all
/// from 100 to the newest, and some below, where a negative number counts as old for the fields
/// but has the sections and the end mark of its size.
std::vector<int> versionGates();

}  // namespace rvf::test
