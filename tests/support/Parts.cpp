#include "Parts.h"

namespace rvf::test {

void writeLink(ByteWriter& w, const LinkFields& f) {
  f.writeHead(w.i32(f.tag));
  w.characters(f.text);
  if (f.tag >= 102) w.string(f.firstLabel).string(f.secondLabel);
  w.endRecord(f.tag, 100, f.sections);
}

void writeOldLink(ByteWriter& w, const LinkFields& f, int partVersion) {
  f.writeHead(w);
  if (f.capacity != 0) w.characters(f.text, partVersion < 133 ? 2 : 1);
}

void writeNameValues(ByteWriter& w, const std::vector<NameValueFields>& items, bool withNumber) {
  for (const NameValueFields& item : items) {
    w.string(item.name).put(withNumber ? 4 : 0, item.number).i32(item.hasValue);
    if (item.hasValue != 0) w.string(item.value);
  }
}

void ImageFields::write(ByteWriter& w, int v) const {
  area.write(w);
  w.i32(pixelWidth, pixelHeight, valueA, valueB).all(std::array{colourA, colourB}, v);
  if (v >= 126) colourC.write(w, v);
  w.put(v >= 124 ? 1 : 4, flagA).put(v >= 124 ? 1 : v >= 101 ? 4 : 0, flagB);
  w.put(v >= 124 ? 1 : v >= 102 ? 2 : 0, flagC).put(v >= 124 ? 1 : 0, flagD);
  w.i32(told(dataLength, bytes.size()), imageKind);
  w.put(v >= 103 ? 4 : 0, kindValue).put(v >= 123 ? 4 : 0, valueC);
  // Old kinds are translated before the bytes are read, and none of them becomes 11.
  if (v <= 102 || ByteWriter::magnitude(imageKind) != 11) w.raw(bytes);
  w.put(v >= 128 ? 4 : 0, valueE);
  if (v >= 136) writeNameValues(w.i32(nameValues.size()), nameValues, true);
  if (v >= 142) droppedColour.write(w.i32(valueD), v);
  w.put(v >= 146 ? 1 : 0, byteE).put(v >= 147 ? 4 : 0, imageFlag);
  if (v >= 150 && imageFlag != 0) colourE.write(w, v);
  w.put(v >= 150 && imageFlag != 0 ? 4 : 0, valueF, valueG);
}

void StartEndFields::write(ByteWriter& w, int v) const {
  w.put(v >= 115 ? 1 : 4, markerKind).put(v >= 115 ? 2 : 4, markerId);
  area.write(w);
  w.put(v >= 115 ? 4 : 0, link.has_value());
  if (link && v >= 138) writeLink(w, *link);
  if (link && v >= 115 && v < 138) writeOldLink(w, *link, v);
  if (v >= 136) {
    writeNameValues(w.i32(told(nameValueCount, nameValues.size())), nameValues, false);
  }
  w.put(v >= 139 ? 1 : v >= 137 ? 4 : 0, hasHyperlinkFlag);
  if (v >= 145) w.i32(pairs.size()).all(pairs, v);
}

void SignatureFieldFields::write(ByteWriter& w, int v) const {
  if (v >= 143) {
    area.write(w);
    w.u8(fieldFlagA).i32(fieldName.size()).raw(fieldName).i32(fieldValue.size()).raw(fieldValue);
    writeNameValues(w.u8(fieldFlagB).i32(attributes.size()), attributes, false);
  }
  w.put(v >= 144 ? 4 : 0, fieldId);
}

Part image(const ImageFields& f) {
  Part part = filled(5, f);
  part.link = f.link;
  return part;
}
Part Part::at(int v) const {
  Part pinned = *this;
  pinned.version = v;
  return pinned;
}

void writePart(ByteWriter& w, const Part& part, int version) {
  const int v = part.version.value_or(version);
  w.i32(v).put(v >= 105 ? 1 : 4, part.type);
  if (part.payload) part.payload(w, v);

  ByteWriter info(w.wide);
  info.i32(part.link.has_value());
  if (part.link && v >= 138) writeLink(info, *part.link);
  if (part.link && v < 138) writeOldLink(info, *part.link, std::max(v, 133));
  if (v >= 132) {
    w.raw(info.bytes);
  } else {
    const auto newestSection = std::min<std::int64_t>(ByteWriter::magnitude(v), 131);
    for (int section = 122; section <= newestSection; ++section) {
      const bool holdsInfo = section == 127 && !part.emptyLinkSection;
      w.i32(section, holdsInfo ? info.size() : 0).raw(holdsInfo ? info.bytes : "");
    }
    w.endRecord(v, 120);
  }
  w.put(v >= 149 ? 4 : 0, part.extraId);
}

std::vector<Part> allParts() {
  const std::vector<NameValueFields> names = {{}, {.name = u"bare", .number = 8, .hasValue = 0}};
  const SubscribeEntryFields oldEntry{.version = {}, .entryId = 4, .entryValue = 5};
  TextFields richText{.text = u"Gr\u00FC\u00DFe", .runs = {{}, {11, 21, 2, 6, 7}}, .textFlags = 1};
  richText.extensionRuns = {{12, 22, 1, 8}};
  richText.outlines = {{1, 2, 3, 4, 5, 6}};
  PolyFields richPoly{.noFill = 1, .noOutline = 2};
  richPoly.gradient = Gradient{.stops = {{}, {.colour = kBlue, .tint = 60, .position = 0.75}}};
  StartEndFields richMarker{.link = LinkFields{}, .nameValues = names, .hasHyperlinkFlag = 9};
  richMarker.pairs = {{1, 2}, {3, 4}, {5, 6}};

  std::vector<Part> parts;
  for (int type = 0; type <= 44; ++type) parts.push_back(empty(type));
  const auto add = [&parts](const auto&... part) {
    ((parts[static_cast<std::size_t>(part.type)] = part), ...);
  };
  add(text(richText), textProp(), line(), justOneLine(), lineSet(), poly(richPoly), resource());
  add(rect({.noFill = 1, .noOutline = 2}), image({.nameValues = names, .link = LinkFields{}}));
  add(importPage(), barcode(), startEnd(richMarker), udlIgnore(), layerIgnore(), clickArea());
  add(inserterBarcode(), maskedObject(), hyperlinkArea(), locSearchKey(), bookmark());
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
