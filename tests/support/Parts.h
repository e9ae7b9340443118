#pragma once

#include <algorithm>
#include <array>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "Bytes.h"

namespace rvf::test {

// Draw parts as a test writes them. Each type is a struct: its fields, named as in
// docs/capture-file.md and with distinct values, and its record at version `v`, each field with the
// bytes that it takes there. A function makes the `Part`:
//
//   ByteWriter file;
//   writePart(file, text({.text = u"Hello", .fontId = 3}), 118);
//
// Every number is an `int`, or unsigned for a packed colour.

inline constexpr int kNewestPart = 157;
inline constexpr int kNewestLink = 102;
inline constexpr unsigned kRed = 0x0000FFu, kBlue = 0xFF0000u;

/// The item count in a file: the one given by a test, or the real one.
inline int told(const std::optional<int>& wanted, std::size_t real) {
  return wanted.value_or(static_cast<int>(real));
}

/// A record of link information, in the tagged form or the old one.
struct LinkFields {
  int tag = kNewestLink, value1 = 31, value2 = 32, value3 = 33;
  std::u16string text = u"http://a";
  std::optional<int> capacity{};  // by default, the length of the text plus 1
  std::u16string firstLabel = u"first", secondLabel = u"second";
  Sections sections{};

  void writeHead(ByteWriter& w) const {  // of both forms
    w.i32(value1, value2).u16(told(capacity, text.size() + 1), text.size()).i32(value3);
  }
};
void writeLink(ByteWriter& w, const LinkFields& f);
/// The old form has no tag; its text has two bytes per character in parts below version 133.
void writeOldLink(ByteWriter& w, const LinkFields& f, int partVersion);

/// The colour of an image. Without the kind word only the value is stored.
struct ColourFields {
  int kind = 0;
  unsigned value = kRed;
  int version = 100;
  Sections sections{};

  void write(ByteWriter& w, int v) const {
    if (v >= 108) w.i32(version, kind);
    w.u32(value).endRecord(v >= 108 ? version : 100, 100, sections);
  }
};

struct Part {
  int type = 0;
  std::function<void(ByteWriter&, int version)> payload{};  // empty: the type has no fields
  std::optional<LinkFields> link{};  // in the tail of the record; only images have one
  bool emptyLinkSection = false;     // versions 127 to 131: section 127 has no content
  int extraId = 99;
  std::optional<int> version{};  // of this part, whatever the rest of its list has

  Part at(int v) const;
};
void writePart(ByteWriter& w, const Part& part, int version = kNewestPart);

/// A part with this code and no fields.
inline Part empty(int type) { return {.type = type}; }
template <class Fields>
Part filled(int type, const Fields& fields) {
  return {.type = type, .payload = [fields](ByteWriter& w, int v) { fields.write(w, v); }};
}

struct Point {
  int x = 1, y = 2;
  void write(ByteWriter& w, int) const { w.i32(x, y); }
};
struct Rectangle {
  int left = 100, top = 200, right = 300, bottom = 400;
  void write(ByteWriter& w) const { w.i32(left, top, right, bottom); }
};

struct Run {
  int x = 10, y = 20, charCount = 3, runClass = 4, extra = 5;

  void write(ByteWriter& w, int v) const {
    w.put(v >= 106 && v <= 110 ? 2 : 4, x, y).put(v >= 106 ? 2 : 4, charCount);
    w.put(v >= 135 ? 1 : v == 134 ? 4 : 0, runClass).put(v >= 151 ? 2 : 0, extra);
  }
};
struct TextFields {
  std::u16string text = u"abc";
  std::vector<Run> runs = {{}};
  int fontId = 7, rotation = 45;  // as stored: degrees below version 118, then steps of 5
  int textFlags = 0;              // bits 2 and 3 are added for the last two fields
  unsigned colour = kBlue;
  int tint = 80;
  std::vector<Run> extensionRuns{};
  std::vector<std::array<int, 6>> outlines{};

  void write(ByteWriter& w, int v) const {
    const int flags = textFlags | (extensionRuns.empty() ? 0 : 4) | (outlines.empty() ? 0 : 8);
    w.put(v >= 106 ? 2 : 4, runs.size(), text.size()).characters(text).all(runs, v).i32(fontId);
    w.put(v >= 118 ? 1 : 0, flags).put(v >= 118 ? 1 : v >= 106 ? 2 : 4, rotation);
    w.u32(colour).put(v >= 108 ? 4 : 0, tint);
    if (v >= 118 && (flags & 4) != 0) {  // these runs never have their last field
      w.i32(extensionRuns.size()).all(extensionRuns, std::min(v, 150));
    }
    if (v >= 118 && (flags & 8) != 0) {
      w.i32(outlines.size());
      for (const auto& [a, b, c, d, e, f] : outlines) w.i32(a, b, c, d, e, f);
    }
  }
};
inline Part text(const TextFields& f = {}) { return filled(1, f); }

/// The four texts give the four lengths; before version 116 there is no fourth.
struct TextPropFields {
  int propKind = 3, propValue = 8, propExtra = 9;
  std::array<std::u16string, 4> texts = {u"a", u"bc", u"defg", u"hijkl"};

  void write(ByteWriter& w, int v) const {
    const auto& [a, b, c, d] = texts;
    w.i32(propKind, propValue, a.size(), b.size());
    w.put(v >= 116 ? 2 : 4, c.size()).put(v >= 116 ? 2 : 0, d.size());
    w.put(propKind == 3 || propKind == 4 ? 4 : 0, propExtra);
    w.characters(a).characters(b).characters(c).characters(v >= 116 ? d : u"");
  }
};
inline Part textProp(const TextPropFields& f = {}) { return filled(7, f); }

struct LineFields {
  std::vector<Point> points = {{10, 20}, {30, 40}};
  int lineKind = 5, lineStyle = 6, width = 15;
  unsigned colour = kBlue;
  int tint = 80, overprint = 7;

  void write(ByteWriter& w, int v) const {
    w.i32(points.size()).all(points, v).i32(lineKind, lineStyle, width, colour);
    w.put(v >= 108 ? 4 : 0, tint).put(v >= 109 ? 1 : 0, overprint);
  }
};
inline Part line(const LineFields& f = {}) { return filled(2, f); }

struct JustOneLineFields {
  int x1 = 10, x2 = 30, y1 = 20, y2 = 40;
  int shapeCode = 1, shapeFlag = 2, lineStyle = 3, width = 15;
  unsigned colour = kBlue;
  int tint = 80;

  void write(ByteWriter& w, int) const {
    w.i32(x1, x2, y1, y2).u8(shapeCode, shapeFlag, lineStyle).i32(width, colour, tint);
  }
};
inline Part justOneLine(const JustOneLineFields& f = {}) { return filled(30, f); }

struct LineSetFields {
  int start = 10, end = 500;
  std::vector<int> offsets = {20, 40, 70};
  int horizontal = 1, lineStyle = 2, width = 15;
  unsigned colour = kBlue;
  int tint = 80;

  void write(ByteWriter& w, int) const {
    w.u16(offsets.size()).i32(start, end);
    for (const int offset : offsets) w.i32(offset);
    w.i32(horizontal).u8(lineStyle).i32(width, colour, tint);
  }
};
inline Part lineSet(const LineSetFields& f = {}) { return filled(31, f); }

struct RectFields {
  Rectangle area{};
  int noFill = 0, noOutline = 0, shapeCode = 3, shapeFlag = 4, lineWidth = 15;
  unsigned fillColour = kBlue, lineColour = kRed;
  int fillTint = 80, lineTint = 90;

  void write(ByteWriter& w, int v) const {
    area.write(w);
    if (v < 106) {
      w.i32(noFill, shapeCode, lineWidth, fillColour, noOutline, lineColour, shapeFlag);
    } else {
      w.u8(noFill, noOutline, shapeCode, shapeFlag).i32(lineWidth, fillColour);
      w.put(v >= 108 ? 4 : 0, fillTint).u32(lineColour).put(v >= 108 ? 4 : 0, lineTint);
    }
  }
};
inline Part rect(const RectFields& f = {}) { return filled(3, f); }

struct Stop {
  unsigned colour = kRed;
  int tint = 70;
  double position = 0.5;

  void write(ByteWriter& w, int v) const {
    v >= 155 ? w.i32(tint, colour) : w.f64(static_cast<double>(colour));
    w.f64(position);
  }
};
struct Gradient {
  int kind = 1, code = 2;
  double originX = 1.5, originY = 2.5;
  std::vector<Stop> stops = {{}};

  void write(ByteWriter& w, int v) const {
    w.u8(kind).i16(stops.size()).all(stops, v).i32(code).f64(originX, originY);
  }
};
struct PolyFields {
  std::vector<Point> points = {{10, 20}, {30, 40}, {50, 25}};
  int shapeCodeA = 11, shapeCodeB = 12, shapeCodeC = 13, shapeCodeD = 14;
  int noFill = 0, noOutline = 0, lineWidth = 15;
  unsigned fillColour = kBlue, lineColour = kRed;
  int fillTint = 80, lineTint = 90, polyCode = 5, polyExtra = 6;
  std::optional<Gradient> gradient{};

  void write(ByteWriter& w, int v) const {
    w.put(v >= 153 ? 2 : 4, points.size()).all(points, v);
    if (v < 106) {
      w.i32(shapeCodeA, noFill, shapeCodeB, lineWidth, fillColour, noOutline);
    } else {
      w.u8(shapeCodeA, noFill, noOutline).i32(shapeCodeB, lineWidth, fillColour);
      w.put(v >= 108 ? 4 : 0, fillTint);
    }
    w.u32(lineColour).put(v >= 108 ? 4 : 0, lineTint).i32(polyCode);
    w.put(v >= 113 ? 1 : 0, shapeCodeC).put(v >= 153 ? 2 : v >= 114 ? 4 : 0, polyExtra);
    w.put(v >= 152 ? 1 : v >= 150 ? 4 : 0, shapeCodeD).put(v >= 152 ? 1 : 0, gradient.has_value());
    if (v >= 152 && gradient) gradient->write(w, v);
  }
};
inline Part poly(const PolyFields& f = {}) { return filled(4, f); }

/// A name with an optional value. Only images store the number.
struct NameValueFields {
  std::u16string name = u"name", value = u"value";
  int number = 9, hasValue = 1;
};
void writeNameValues(ByteWriter& w, const std::vector<NameValueFields>& items, bool withNumber);

struct ImageFields {
  Rectangle area{};
  int pixelWidth = 64, pixelHeight = 32, imageKind = 7, kindValue = 8;
  std::string bytes = "image bytes";
  std::optional<int> dataLength{};  // what the file says, if not the number of bytes
  int flagA = 1, flagB = 2, flagC = 3, flagD = 4, byteE = 5, imageFlag = 6;
  int valueA = 21, valueB = 22, valueC = 23, valueD = 24, valueE = 25, valueF = 26, valueG = 27;
  ColourFields colourA{.kind = 1, .value = 0xA1}, colourB{.value = 0xB2}, colourC{.value = 0xC3};
  ColourFields droppedColour{.value = 0xD4}, colourE{.value = 0xE5};
  std::vector<NameValueFields> nameValues{};
  std::optional<LinkFields> link{};

  void write(ByteWriter& w, int v) const;
};
Part image(const ImageFields& f = {});

struct ResourceFields {
  int resourceKind = 4, resourceFlag = 2, resourceExtra = 3;
  int dataMode = 1;  // 0: the bytes are counted but not stored; above 1: the count itself
  std::string bytes = "resource";
  int x = 10, y = 20, scaleX = 30, scaleY = 40;

  void write(ByteWriter& w, int v) const {
    if (v < 110) return;
    const int mode = v >= 122 ? dataMode : 1;
    w.i32(resourceKind).put(v >= 122 ? 4 : 0, dataMode);
    w.put(mode == 0 || mode == 1 ? 4 : 0, bytes.size()).raw(mode == 0 ? "" : bytes).i32(x, y);
    w.put(v >= 157 ? 2 : 4, scaleX, scaleY).put(v >= 157 ? 2 : 0, resourceExtra).i32(resourceFlag);
  }
};
inline Part resource(const ResourceFields& f = {}) { return filled(10, f); }

// Parts whose fields no test changes.

/// object, number, byteA, byteB, x, y, valueA, valueB, clip, flag
inline Part importPage() {
  return {33, [](ByteWriter& w, int v) {
            w.i32(1).u16(2).i32(6, 7, 10, 20, 3, 4).put(v >= 120 ? 4 : 0, 100, 200, 300, 400);
            w.put(v >= 146 ? 1 : 0, 5);
          }};
}
/// kind, flag, code, value, angle, byteA, tint, colour, extra, byteB, length of the text, x, y,
/// text
inline Part barcode() {
  return {32, [](ByteWriter& w, int) {
            w.u8(1, 2).u16(3).i32(4).i16(90).u8(8).i32(80, kBlue).u16(6).u8(7);
            w.u16(5).i32(10, 20).characters(u"12345");
          }};
}
/// value, kind, flag
inline Part udlIgnore() {
  return {23, [](ByteWriter& w, int v) { w.i32(1, 2).put(v >= 154 ? 1 : 0, 4); }};
}
/// value, state, flag
inline Part inserterBarcode() {
  return {36, [](ByteWriter& w, int) { w.i32(1).u8(3, 4); }};
}
/// value, state
inline Part maskedObject() {
  return {37, [](ByteWriter& w, int) { w.i32(1).u8(3); }};
}
struct LayerIgnoreFields {
  int value = 1, kind = 2;
  void write(ByteWriter& w, int) const { w.i32(value, kind); }
};
inline Part layerIgnore(const LayerIgnoreFields& f = {}) { return filled(34, f); }

struct StartEndFields {
  int markerKind = 1, markerId = 2;
  Rectangle area{};
  std::optional<LinkFields> link{};
  std::vector<NameValueFields> nameValues{};
  std::optional<int> nameValueCount{};  // what the file says, if not their number
  int hasHyperlinkFlag = 1;
  std::vector<Point> pairs{};

  void write(ByteWriter& w, int v) const;
};
inline Part startEnd(const StartEndFields& f = {}) { return filled(6, f); }

struct ClickAreaFields {
  Rectangle area{};
  int areaA = 1, areaB = 2, areaScale = 3, areaCode = 4, areaFlag = 5;

  void write(ByteWriter& w, int v) const {
    area.write(w);
    w.i32(areaA, areaB, areaScale).put(v >= 106 ? 2 : 4, areaCode).put(v >= 106 ? 1 : 4, areaFlag);
  }
};
inline Part clickArea(const ClickAreaFields& f = {}) { return filled(8, f); }

struct StaticRefFields {
  int objectType = 21, staticIndex = 0, useSecond = 0, secondIsHidden = 0;
  int x = 10, y = 20, width = 30, height = 40, refA = 1, refB = 2, refC = 3, refD = 4;
  int layerByteA = 5, layerByteB = 6;

  void write(ByteWriter& w, int v) const {
    w.put(v >= 117 ? 2 : 4, objectType).i32(width, height);
    w.put(v >= 106 ? 2 : 4, refA).put(v >= 106 ? 2 : v >= 104 ? 4 : 0, refB);
    w.put(v >= 106 ? 1 : 4, useSecond, secondIsHidden).put(v >= 106 ? 2 : 4, staticIndex);
    w.i32(x, y).put(v >= 117 ? 2 : 4, refC).put(v >= 117 ? 2 : 0, refD);
    w.put(v >= 117 ? 4 : 0, layerByteA, layerByteB);
  }
};
inline Part staticRef(const StaticRefFields& f = {}) { return filled(9, f); }

struct LocSearchKeyFields {
  int keyValue = 1;
  std::u16string keyText = u"key", keySecondText = u"second";
  int keyFlagA = 7, keyFlagB = 8;

  void write(ByteWriter& w, int v) const {
    w.i32(keyValue, keyText.size()).characters(keyText, 2).u8(keyFlagA);
    if (v >= 119) w.i32(keySecondText.size()).characters(keySecondText, 2).u8(keyFlagB);
  }
};
inline Part locSearchKey(const LocSearchKeyFields& f = {}) { return filled(15, f); }

struct HyperlinkAreaFields {
  std::u16string url = u"http://a";
  Rectangle area{};
  int linkValue = 1, linkFlagA = 2, linkFlagB = 3, linkCode = 4, linkValueB = 5, linkValueC = 6;

  void write(ByteWriter& w, int v) const {
    area.write(w.counted(url));
    w.u8(linkFlagB, linkFlagA).i32(linkValue).put(v >= 141 ? 2 : 0, linkCode);
    w.put(v >= 156 ? 2 : 0, linkValueB, linkValueC);
  }
};
inline Part hyperlinkArea(const HyperlinkAreaFields& f = {}) { return filled(40, f); }

struct SubscribeEntryFields {
  std::optional<int> version = 101;  // empty: the old form, which starts with the id
  int entryId = 1, entryValue = 2;
  std::u16string entryName = u"entry";
  Sections sections{};

  void write(ByteWriter& w, int) const {
    w.put(version ? 4 : 0, version.value_or(0)).i32(entryId, entryValue).string(entryName);
    w.endRecord(version.value_or(0), 100, sections);
  }
};
struct SubscribeFields {
  int subscriberId = 6;
  std::vector<SubscribeEntryFields> entries = {{}};

  void write(ByteWriter& w, int v) const { w.i32(subscriberId, entries.size()).all(entries, v); }
};
inline Part subscribe(const SubscribeFields& f = {}) { return filled(41, f); }

struct TaggedObjectFields {
  int markerState = 1, tagKind = 2, tagId = 5, language = 7;
  std::u16string tagText = u"tag", altText = u"other", actualText = u"actual";

  void write(ByteWriter& w, int v) const {
    w.u8(markerState).i32(tagKind).u16(tagId).counted(tagText).counted(altText);
    w.put(v >= 131 ? 4 : 0, language);
    if (v >= 148) w.counted(actualText);
  }
};
inline Part taggedObject(const TaggedObjectFields& f = {}) { return filled(42, f); }

struct BookmarkFields {
  int bookmarkId = 1, bookmarkLevel = 2;
  std::u16string title = u"title";

  void write(ByteWriter& w, int) const { w.i32(bookmarkId, bookmarkLevel).counted(title); }
};
inline Part bookmark(const BookmarkFields& f = {}) { return filled(43, f); }

/// The two texts are the bytes in the file: as many as the length says there are characters.
struct SignatureFieldFields {
  Rectangle area{};
  int fieldFlagA = 1, fieldFlagB = 2, fieldId = 3;
  std::string fieldName = "name", fieldValue = "value";
  std::vector<NameValueFields> attributes = {{}};

  void write(ByteWriter& w, int v) const;
};
inline Part signatureField(const SignatureFieldFields& f = {}) { return filled(44, f); }

/// One part of every code from 0 to 44, in order, with everything that the type can hold.
std::vector<Part> allParts();

/// Every version just before and just after a change of some part's layout, in ascending order: all
/// from 100 to the newest, and some below, where a negative number counts as old for the fields but
/// has the sections and the end mark of its magnitude.
std::vector<int> versionGates();

}  // namespace rvf::test
