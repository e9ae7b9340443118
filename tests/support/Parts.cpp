#include "Parts.h"

#include <algorithm>
#include <utility>

namespace rvf::test {
namespace {

// In the writers a field is one line: its value and the bytes that it takes at version `v`, with 0
// for a field that the version does not have.

void writeRectangle(ByteWriter& w, const Rectangle& r) { w.i32(r.left, r.top, r.right, r.bottom); }

void writePoints(ByteWriter& w, const std::vector<Point>& points) {
  for (const Point& p : points) w.i32(p.x, p.y);
}

void writeNameValues(ByteWriter& w, const std::vector<NameValueFields>& items, bool withNumber) {
  for (const NameValueFields& item : items) {
    w.string(item.name).number(item.number, withNumber ? 4 : 0).i32(item.hasValue);
    if (item.hasValue != 0) w.string(item.value);
  }
}

// The middle of both forms of a link, up to the text.
void writeLinkHead(ByteWriter& w, const LinkFields& f) {
  const int length = static_cast<int>(f.text.size());
  w.i32(f.value1, f.value2);
  w.u16(f.capacity.value_or(length + 1), length);
  w.i32(f.value3);
}

void writeTail(ByteWriter& w, const Part& part, int v) {
  ByteWriter info(w.wide);
  info.i32(part.link.has_value() ? 1 : 0);
  if (part.link && v >= 138) writeLink(info, *part.link);
  if (part.link && v < 138) writeOldLink(info, *part.link, std::max(v, 133));
  if (v >= 132) {
    w.raw(info.bytes);
    return;
  }
  const auto newestSection = std::min<std::int64_t>(ByteWriter::magnitude(v), 131);
  for (int section = 122; section <= newestSection; ++section) {
    const bool holdsInfo = section == 127 && !part.emptyLinkSection;
    w.i32(section, holdsInfo ? info.size() : 0).raw(holdsInfo ? info.bytes : "");
  }
  w.endRecord(v, 120);
}

void writeRun(ByteWriter& w, const Run& run, int v) {
  const int position = v >= 106 && v <= 110 ? 2 : 4;
  w.number(run.x, position).number(run.y, position).number(run.charCount, v < 106 ? 4 : 2);
  w.number(run.runClass, v >= 135 ? 1 : v == 134 ? 4 : 0);
  w.number(run.extra, v >= 151 ? 2 : 0);
}

void writeText(ByteWriter& w, const TextFields& f, int v) {
  const int flags = f.textFlags | (f.extensionRuns.empty() ? 0 : 4) | (f.outlines.empty() ? 0 : 8);
  const int count = v < 106 ? 4 : 2;
  w.number(static_cast<int>(f.runs.size()), count).number(static_cast<int>(f.text.size()), count);
  w.characters(f.text);
  for (const Run& run : f.runs) writeRun(w, run, v);
  w.i32(f.fontId);
  w.number(flags, v >= 118 ? 1 : 0);
  w.number(f.rotation, v >= 118 ? 1 : v >= 106 ? 2 : 4);
  w.u32(f.colour).number(f.tint, v >= 108 ? 4 : 0);
  if (v >= 118 && (flags & 4) != 0) {
    w.i32(f.extensionRuns.size());
    for (const Run& run : f.extensionRuns) {
      w.i32(run.x, run.y).u16(run.charCount);
      w.number(run.runClass, v >= 135 ? 1 : v == 134 ? 4 : 0);
    }
  }
  if (v >= 118 && (flags & 8) != 0) {
    w.i32(f.outlines.size());
    for (const auto& outline : f.outlines) {
      for (const int value : outline) w.i32(value);
    }
  }
}

void writeTextProp(ByteWriter& w, const TextPropFields& f, int v) {
  const auto& [a, b, c, d] = f.texts;
  const bool hasFourth = v >= 116;
  w.i32(f.propKind, f.propValue, a.size(), b.size());
  w.number(static_cast<int>(c.size()), hasFourth ? 2 : 4);
  w.number(static_cast<int>(d.size()), hasFourth ? 2 : 0);
  w.number(f.propExtra, f.propKind == 3 || f.propKind == 4 ? 4 : 0);
  w.characters(a).characters(b).characters(c).characters(hasFourth ? d : u"");
}

void writeLine(ByteWriter& w, const LineFields& f, int v) {
  w.i32(f.points.size());
  writePoints(w, f.points);
  w.i32(f.lineKind, f.lineStyle, f.width).u32(f.colour);
  w.number(f.tint, v >= 108 ? 4 : 0).number(f.overprint, v >= 109 ? 1 : 0);
}

void writeJustOneLine(ByteWriter& w, const JustOneLineFields& f, int) {
  w.i32(f.x1, f.x2, f.y1, f.y2).u8(f.shapeCode, f.shapeFlag, f.lineStyle);
  w.i32(f.width).u32(f.colour).i32(f.tint);
}

void writeLineSet(ByteWriter& w, const LineSetFields& f, int) {
  w.u16(f.offsets.size()).i32(f.start, f.end);
  for (const int offset : f.offsets) w.i32(offset);
  w.i32(f.horizontal).u8(f.lineStyle).i32(f.width).u32(f.colour).i32(f.tint);
}

void writeRect(ByteWriter& w, const RectFields& f, int v) {
  writeRectangle(w, f.area);
  if (v < 106) {
    w.i32(f.noFill, f.shapeCode, f.lineWidth).u32(f.fillColour);
    w.i32(f.noOutline).u32(f.lineColour).i32(f.shapeFlag);
    return;
  }
  w.u8(f.noFill, f.noOutline, f.shapeCode, f.shapeFlag).i32(f.lineWidth);
  w.u32(f.fillColour).number(f.fillTint, v >= 108 ? 4 : 0);
  w.u32(f.lineColour).number(f.lineTint, v >= 108 ? 4 : 0);
}

void writeGradient(ByteWriter& w, const Gradient& g, int v) {
  w.u8(g.kind).i16(g.stops.size());
  for (const Stop& stop : g.stops) {
    if (v < 155) w.f64(stop.colour);
    if (v >= 155) w.i32(stop.tint).u32(stop.colour);
    w.f64(stop.position);
  }
  w.i32(g.code).f64(g.originX).f64(g.originY);
}

void writePoly(ByteWriter& w, const PolyFields& f, int v) {
  w.number(static_cast<int>(f.points.size()), v >= 153 ? 2 : 4);
  writePoints(w, f.points);
  if (v < 106) {
    w.i32(f.shapeCodeA, f.noFill, f.shapeCodeB, f.lineWidth).u32(f.fillColour).i32(f.noOutline);
  } else {
    w.u8(f.shapeCodeA, f.noFill, f.noOutline).i32(f.shapeCodeB, f.lineWidth);
    w.u32(f.fillColour).number(f.fillTint, v >= 108 ? 4 : 0);
  }
  w.u32(f.lineColour).number(f.lineTint, v >= 108 ? 4 : 0);
  w.i32(f.polyCode).number(f.shapeCodeC, v >= 113 ? 1 : 0);
  w.number(f.polyExtra, v >= 153 ? 2 : v >= 114 ? 4 : 0);
  w.number(f.shapeCodeD, v >= 152 ? 1 : v >= 150 ? 4 : 0);
  w.number(f.gradient.has_value() ? 1 : 0, v >= 152 ? 1 : 0);
  if (v >= 152 && f.gradient) writeGradient(w, *f.gradient, v);
}

void writeImage(ByteWriter& w, const ImageFields& f, int v) {
  writeRectangle(w, f.area);
  w.i32(f.pixelWidth, f.pixelHeight, f.valueA, f.valueB);
  writeColour(w, f.colourA, v >= 108);
  writeColour(w, f.colourB, v >= 108);
  if (v >= 126) writeColour(w, f.colourC, true);
  w.number(f.flagA, v >= 124 ? 1 : 4);
  w.number(f.flagB, v >= 124 ? 1 : v >= 101 ? 4 : 0);
  w.number(f.flagC, v >= 124 ? 1 : v >= 102 ? 2 : 0);
  w.number(f.flagD, v >= 124 ? 1 : 0);
  w.i32(f.dataLength.value_or(static_cast<int>(f.bytes.size())), f.imageKind);
  w.number(f.kindValue, v >= 103 ? 4 : 0).number(f.valueC, v >= 123 ? 4 : 0);
  // The old kinds are translated before the bytes are read, and none of them becomes an 11.
  if (v <= 102 || ByteWriter::magnitude(f.imageKind) != 11) w.raw(f.bytes);
  w.number(f.valueE, v >= 128 ? 4 : 0);
  if (v >= 136) {
    w.i32(f.nameValues.size());
    writeNameValues(w, f.nameValues, true);
  }
  w.number(f.valueD, v >= 142 ? 4 : 0);
  if (v >= 142) writeColour(w, f.droppedColour, true);
  w.number(f.byteE, v >= 146 ? 1 : 0).number(f.imageFlag, v >= 147 ? 4 : 0);
  if (v >= 150 && f.imageFlag != 0) {
    writeColour(w, f.colourE, true);
    w.i32(f.valueF, f.valueG);
  }
}

void writeResource(ByteWriter& w, const ResourceFields& f, int v) {
  if (v < 110) return;
  const int mode = v >= 122 ? f.dataMode : 1;
  w.i32(f.resourceKind).number(f.dataMode, v >= 122 ? 4 : 0);
  if (mode == 0 || mode == 1) w.i32(f.bytes.size());
  if (mode != 0) w.raw(f.bytes);
  w.i32(f.x, f.y);
  w.number(f.scaleX, v >= 157 ? 2 : 4).number(f.scaleY, v >= 157 ? 2 : 4);
  w.number(f.resourceExtra, v >= 157 ? 2 : 0).i32(f.resourceFlag);
}

void writeImportPage(ByteWriter& w, const ImportPageFields& f, int v) {
  w.i32(f.pageObject).u16(f.pageNumber).i32(f.byteA, f.byteB, f.x, f.y, f.valueA, f.valueB);
  if (v >= 120) writeRectangle(w, f.clip);
  w.number(f.importFlag, v >= 146 ? 1 : 0);
}

void writeBarcode(ByteWriter& w, const BarcodeFields& f, int) {
  w.u8(f.barcodeKind, f.barcodeFlag).u16(f.barcodeCode).i32(f.barcodeValue).i16(f.angle);
  w.u8(f.byteA).i32(f.tint).u32(f.colour).u16(f.barcodeExtra).u8(f.byteB);
  w.u16(f.text.size()).i32(f.x, f.y).characters(f.text);
}

void writeStartEnd(ByteWriter& w, const StartEndFields& f, int v) {
  w.number(f.markerKind, v >= 115 ? 1 : 4).number(f.markerId, v >= 115 ? 2 : 4);
  writeRectangle(w, f.area);
  w.number(f.link.has_value() ? 1 : 0, v >= 115 ? 4 : 0);
  if (f.link && v >= 138) writeLink(w, *f.link);
  if (f.link && v >= 115 && v < 138) writeOldLink(w, *f.link, v);
  if (v >= 136) {
    w.i32(f.nameValueCount.value_or(static_cast<int>(f.nameValues.size())));
    writeNameValues(w, f.nameValues, false);
  }
  w.number(f.hasHyperlinkFlag, v >= 139 ? 1 : v >= 137 ? 4 : 0);
  if (v >= 145) {
    w.i32(f.pairs.size());
    writePoints(w, f.pairs);
  }
}

void writeClickArea(ByteWriter& w, const ClickAreaFields& f, int v) {
  writeRectangle(w, f.area);
  w.i32(f.areaA, f.areaB, f.areaScale);
  w.number(f.areaCode, v >= 106 ? 2 : 4).number(f.areaFlag, v >= 106 ? 1 : 4);
}

void writeStaticRef(ByteWriter& w, const StaticRefFields& f, int v) {
  w.number(f.objectType, v >= 117 ? 2 : 4).i32(f.width, f.height);
  w.number(f.refA, v >= 106 ? 2 : 4);
  w.number(f.refB, v >= 106 ? 2 : v >= 104 ? 4 : 0);
  w.number(f.useSecond, v >= 106 ? 1 : 4).number(f.secondIsHidden, v >= 106 ? 1 : 4);
  w.number(f.staticIndex, v >= 106 ? 2 : 4).i32(f.x, f.y);
  w.number(f.refC, v >= 117 ? 2 : 4).number(f.refD, v >= 117 ? 2 : 0);
  w.number(f.layerByteA, v >= 117 ? 4 : 0).number(f.layerByteB, v >= 117 ? 4 : 0);
}

void writeLocSearchKey(ByteWriter& w, const LocSearchKeyFields& f, int v) {
  w.i32(f.keyValue, f.keyText.size()).characters(f.keyText, 2).u8(f.keyFlagA);
  if (v >= 119) w.i32(f.keySecondText.size()).characters(f.keySecondText, 2).u8(f.keyFlagB);
}

void writeHyperlinkArea(ByteWriter& w, const HyperlinkAreaFields& f, int v) {
  w.counted(f.url);
  writeRectangle(w, f.area);
  w.u8(f.linkFlagB, f.linkFlagA).i32(f.linkValue).number(f.linkCode, v >= 141 ? 2 : 0);
  w.number(f.linkValueB, v >= 156 ? 2 : 0).number(f.linkValueC, v >= 156 ? 2 : 0);
}

void writeSubscribe(ByteWriter& w, const SubscribeFields& f, int) {
  w.i32(f.subscriberId, f.entries.size());
  for (const SubscribeEntryFields& entry : f.entries) {
    w.number(entry.version.value_or(0), entry.version ? 4 : 0);
    w.i32(entry.entryId, entry.entryValue).string(entry.entryName);
    w.endRecord(entry.version.value_or(0), 100, entry.sections);
  }
}

void writeTaggedObject(ByteWriter& w, const TaggedObjectFields& f, int v) {
  w.u8(f.markerState).i32(f.tagKind).u16(f.tagId).counted(f.tagText).counted(f.altText);
  w.number(f.language, v >= 131 ? 4 : 0);
  if (v >= 148) w.counted(f.actualText);
}

void writeBookmark(ByteWriter& w, const BookmarkFields& f, int) {
  w.i32(f.bookmarkId, f.bookmarkLevel).counted(f.title);
}

void writeSignatureField(ByteWriter& w, const SignatureFieldFields& f, int v) {
  if (v >= 143) {
    writeRectangle(w, f.area);
    w.u8(f.fieldFlagA).i32(f.fieldName.size()).raw(f.fieldName);
    w.i32(f.fieldValue.size()).raw(f.fieldValue).u8(f.fieldFlagB).i32(f.attributes.size());
    writeNameValues(w, f.attributes, false);
  }
  w.number(f.fieldId, v >= 144 ? 4 : 0);
}

template <class Fields>
Part make(int type, void (*write)(ByteWriter&, const Fields&, int), Fields fields) {
  return {.type = type,
          .payload = [write, f = std::move(fields)](ByteWriter& w, int v) { write(w, f, v); }};
}

}  // namespace

void writeLink(ByteWriter& w, const LinkFields& f) {
  w.i32(f.tag);
  writeLinkHead(w, f);
  w.characters(f.text);
  if (f.tag >= 102) w.string(f.firstLabel).string(f.secondLabel);
  w.endRecord(f.tag, 100, f.sections);
}

void writeOldLink(ByteWriter& w, const LinkFields& f, int partVersion) {
  writeLinkHead(w, f);
  if (f.capacity != 0) w.characters(f.text, partVersion < 133 ? 2 : 1);
}

void writeColour(ByteWriter& w, const ColourFields& f, bool withKindWord) {
  if (withKindWord) w.i32(f.version, f.kind);
  w.u32(f.value).endRecord(withKindWord ? f.version : 100, 100, f.sections);
}

Part Part::at(int v) const {
  Part pinned = *this;
  pinned.version = v;
  return pinned;
}

void writePart(ByteWriter& w, const Part& part, int version) {
  const int v = part.version.value_or(version);
  w.i32(v).number(part.type, v >= 105 ? 1 : 4);
  if (part.payload) part.payload(w, v);
  writeTail(w, part, v);
  w.number(part.extraId, v >= 149 ? 4 : 0);
}

Part empty(int type) { return {.type = type}; }
Part text(TextFields f) { return make(1, writeText, std::move(f)); }
Part line(LineFields f) { return make(2, writeLine, std::move(f)); }
Part rect(RectFields f) { return make(3, writeRect, f); }
Part poly(PolyFields f) { return make(4, writePoly, std::move(f)); }
Part image(ImageFields f) {
  Part part = make(5, writeImage, f);
  part.link = std::move(f.link);
  return part;
}
Part startEnd(StartEndFields f) { return make(6, writeStartEnd, std::move(f)); }
Part textProp(TextPropFields f) { return make(7, writeTextProp, std::move(f)); }
Part clickArea(ClickAreaFields f) { return make(8, writeClickArea, f); }
Part staticRef(StaticRefFields f) { return make(9, writeStaticRef, f); }
Part resource(ResourceFields f) { return make(10, writeResource, std::move(f)); }
Part locSearchKey(LocSearchKeyFields f) { return make(15, writeLocSearchKey, std::move(f)); }
Part udlIgnore(MarkerFields f) {
  return {.type = 23, .payload = [f](ByteWriter& w, int v) {
            w.i32(f.value, f.kind).number(f.flag, v >= 154 ? 1 : 0);
          }};
}
Part justOneLine(JustOneLineFields f) { return make(30, writeJustOneLine, f); }
Part lineSet(LineSetFields f) { return make(31, writeLineSet, std::move(f)); }
Part barcode(BarcodeFields f) { return make(32, writeBarcode, std::move(f)); }
Part importPage(ImportPageFields f) { return make(33, writeImportPage, f); }
Part layerIgnore(MarkerFields f) {
  return {.type = 34, .payload = [f](ByteWriter& w, int) { w.i32(f.value, f.kind); }};
}
Part inserterBarcode(MarkerFields f) {
  return {.type = 36, .payload = [f](ByteWriter& w, int) { w.i32(f.value).u8(f.state, f.flag); }};
}
Part maskedObject(MarkerFields f) {
  return {.type = 37, .payload = [f](ByteWriter& w, int) { w.i32(f.value).u8(f.state); }};
}
Part hyperlinkArea(HyperlinkAreaFields f) { return make(40, writeHyperlinkArea, std::move(f)); }
Part subscribe(SubscribeFields f) { return make(41, writeSubscribe, std::move(f)); }
Part taggedObject(TaggedObjectFields f) { return make(42, writeTaggedObject, std::move(f)); }
Part bookmark(BookmarkFields f) { return make(43, writeBookmark, std::move(f)); }
Part signatureField(SignatureFieldFields f) { return make(44, writeSignatureField, std::move(f)); }

std::vector<Part> allParts() {
  const std::vector<NameValueFields> names = {{}, {.name = u"bare", .number = 8, .hasValue = 0}};
  TextFields richText{.text = u"Gr\u00FC\u00DFe", .runs = {{}, {11, 21, 2, 6, 7}}, .textFlags = 1};
  richText.extensionRuns = {{12, 22, 1, 8}};
  richText.outlines = {{1, 2, 3, 4, 5, 6}};
  PolyFields richPoly{.noFill = 1, .noOutline = 2};
  richPoly.gradient = Gradient{.stops = {{}, {.colour = kBlue, .tint = 60, .position = 0.75}}};
  StartEndFields richMarker{.link = LinkFields{}, .nameValues = names, .hasHyperlinkFlag = 9};
  richMarker.pairs = {{1, 2}, {3, 4}, {5, 6}};
  const SubscribeEntryFields oldEntry{.version = {}, .entryId = 4, .entryValue = 5};

  std::vector<Part> parts;
  for (int type = 0; type <= 44; ++type) parts.push_back(empty(type));
  const auto add = [&parts](const auto&... part) {
    ((parts[static_cast<std::size_t>(part.type)] = part), ...);
  };
  add(text(richText), textProp(), line(), justOneLine(), lineSet(), poly(richPoly));
  add(rect({.noFill = 1, .noOutline = 2}), image({.nameValues = names, .link = LinkFields{}}));
  add(resource(), importPage(), barcode(), startEnd(richMarker), udlIgnore(), layerIgnore());
  add(inserterBarcode(), maskedObject(), clickArea(), hyperlinkArea(), locSearchKey(), bookmark());
  add(staticRef({.staticIndex = 12, .useSecond = 13, .secondIsHidden = 14}), taggedObject());
  add(subscribe({.entries = {{}, oldEntry}}), signatureField({.attributes = names}));
  return parts;
}

std::vector<int> versionGates() {
  std::vector<int> versions = {-157, -132, -131, -127, -122, -121, -120, 0, 99};
  for (int v = 100; v <= kNewestPart; ++v) versions.push_back(v);
  return versions;
}

}  // namespace rvf::test
