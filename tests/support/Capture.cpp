#include "Capture.h"

#include <utility>

namespace rvf::test {

void writeList(ByteWriter& w, const ListFields& f) {
  const int v = f.version;
  w.i32(v, f.originX, f.originY, told(f.count, f.parts.size()));
  w.put(v >= 102 ? 4 : 0, f.contentTally).put(v >= 103 ? 1 : 0, f.skippedByte);
  w.put(v >= 101 ? 4 : 0, f.hasBytes);
  w.put(v >= 101 && f.hasBytes != 0 ? 4 : 0, f.byteA, f.byteB);
  for (const Part& part : f.parts) writePart(w, part, f.partVersion);
  w.put(v >= 104 ? 1 : 0, f.listFlags).put(v >= 105 ? 4 : 0, f.valueA, f.valueB);
  w.put(v >= 106 ? 2 : 0, f.listExtra).endRecord(v, 106, f.sections);
}

void writeStatic(ByteWriter& w, const StaticFields& f) {
  const int v = f.version;
  w.i32(v, f.second.has_value(), f.valueC, f.valueD).put(v >= 101 ? 4 : 0, f.valueF);
  if (v >= 103) w.string(f.name);
  w.i32(f.valueA, f.valueB).put(v >= 102 ? 4 : 0, f.valueE);
  writeList(w, f.first);
  if (f.second) writeList(w, *f.second);
  w.put(v >= 104 ? 4 : 0, f.indexA).put(v >= 105 ? 4 : 0, f.skipped);
  w.put(v >= 105 && f.second ? 4 : 0, f.skipped).put(v >= 108 && v <= 110 ? 4 : 0, f.skipped);
  w.put(v >= 106 ? 4 : 0, f.indexB).endRecord(v, 106, f.sections);
}

void writePageBody(ByteWriter& w, const PageBody& f) {
  writeList(w.i32(f.extentA, f.extentB), f.list);
  w.i32(told(f.staticCount, f.placed.size()));
  for (const PlacedList& placed : f.placed) {
    writeList(w, placed.list);
    w.i32(placed.x, placed.y);
  }
}

void writeCustomer(ByteWriter& w, const CustomerFields& f, const std::vector<int>& filePositions) {
  w.put(f.tag == kNoTag ? 0 : 4, f.tag).i32(f.leadValue).string(f.id);
  w.i32(told(f.pageCount, f.pages.size()));
  auto filePosition = filePositions.begin();
  for (const PageFields& page : f.pages) {
    w.i32(page.leadValue).string(page.name).i32(*filePosition++);
    w.put(page.tag == kNoTag ? 0 : 4, page.tag).i32(page.tailValue);
    w.endRecord(page.tag, -101, page.sections);
  }
  w.endRecord(f.tag, -101, f.sections);
}

Capture writeCapture(const CaptureFields& f) {
  ByteWriter w(f.wide.value_or(f.magic == kWideMagic));
  w.i32(0, f.magic, f.version, f.resolution);
  for (const auto* table : {&f.statics21, &f.statics24, &f.statics23, &f.statics175}) {
    if (table == &f.statics175 && f.version < 2) break;
    w.i32(table->size());
    for (const StaticFields& item : *table) writeStatic(w, item);
  }

  Capture capture;
  ByteWriter customers(w.wide);
  for (const CustomerFields& customer : f.customers) {
    std::vector<int> positions;  // as the index gives them
    for (const PageFields& page : customer.pages) {
      capture.bodyOffsets.push_back(page.body ? w.size() : -1);
      positions.push_back(page.filePosition.value_or(capture.bodyOffsets.back()));
      if (page.body) writePageBody(w, *page.body);
    }
    writeCustomer(customers, customer, positions);
  }

  capture.indexOffset = w.size();
  w.string(f.label).f64(f.firstDate).i32(f.firstStatus).f64(f.secondDate).i32(f.secondStatus);
  w.i32(told(f.customerCount, f.customers.size())).raw(customers.bytes);
  if (f.magic == kTrailerMagic) {
    w.i32(capture.indexOffset, kNarrowMagic);
  } else {
    w.bytes.replace(0, 4, ByteWriter().i32(capture.indexOffset).bytes);
  }
  capture.bytes = std::move(w.bytes);
  return capture;
}

PageFields page(std::vector<Part> parts, int partVersion) {
  return {.body = PageBody{.list = {.partVersion = partVersion, .parts = std::move(parts)}}};
}

CaptureFields captureOf(std::vector<PageFields> pages) {
  return {.customers = {{.pages = std::move(pages)}}};
}

std::string onePage(std::vector<Part> parts, int partVersion) {
  return writeCapture(captureOf({page(std::move(parts), partVersion)})).bytes;
}

std::string smallestCapture(bool trailer) {
  return writeCapture({.magic = trailer ? kTrailerMagic : kNarrowMagic}).bytes;
}

}  // namespace rvf::test
