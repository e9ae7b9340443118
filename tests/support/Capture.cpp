#include "Capture.h"

#include <utility>

namespace rvf::test {
namespace {

int countOf(const std::optional<int>& told, std::size_t real) {
  return told.value_or(static_cast<int>(real));
}

}  // namespace

void writeList(ByteWriter& w, const ListFields& f) {
  const int v = f.version;
  w.i32(v, f.originX, f.originY, countOf(f.count, f.parts.size()));
  w.number(f.contentTally, v >= 102 ? 4 : 0).number(f.skippedByte, v >= 103 ? 1 : 0);
  w.number(f.hasBytes, v >= 101 ? 4 : 0);
  if (v >= 101 && f.hasBytes != 0) w.i32(f.byteA, f.byteB);
  for (const Part& part : f.parts) writePart(w, part, f.partVersion);
  w.number(f.listFlags, v >= 104 ? 1 : 0);
  w.number(f.valueA, v >= 105 ? 4 : 0).number(f.valueB, v >= 105 ? 4 : 0);
  w.number(f.listExtra, v >= 106 ? 2 : 0).endRecord(v, 106, f.sections);
}

void writeStatic(ByteWriter& w, const StaticFields& f) {
  const int v = f.version;
  w.i32(v, f.second.has_value() ? 1 : 0, f.valueC, f.valueD).number(f.valueF, v >= 101 ? 4 : 0);
  if (v >= 103) w.string(f.name);
  w.i32(f.valueA, f.valueB).number(f.valueE, v >= 102 ? 4 : 0);
  writeList(w, f.first);
  if (f.second) writeList(w, *f.second);
  w.number(f.indexA, v >= 104 ? 4 : 0).number(f.skipped, v >= 105 ? 4 : 0);
  w.number(f.skipped, v >= 105 && f.second ? 4 : 0);
  w.number(f.skipped, v >= 108 && v <= 110 ? 4 : 0);
  w.number(f.indexB, v >= 106 ? 4 : 0).endRecord(v, 106, f.sections);
}

void writePageBody(ByteWriter& w, const PageBody& f) {
  w.i32(f.extentA, f.extentB);
  writeList(w, f.list);
  w.i32(countOf(f.staticCount, f.placed.size()));
  for (const PlacedList& placed : f.placed) {
    writeList(w, placed.list);
    w.i32(placed.x, placed.y);
  }
}

void writePage(ByteWriter& w, const PageFields& f, int filePosition) {
  w.i32(f.leadValue).string(f.name).i32(filePosition).number(f.tag, f.tag == kNoTag ? 0 : 4);
  w.i32(f.tailValue).endRecord(f.tag, -101, f.sections);
}

void writeCustomer(ByteWriter& w, const CustomerFields& f, const std::vector<int>& filePositions) {
  w.number(f.tag, f.tag == kNoTag ? 0 : 4).i32(f.leadValue).string(f.id);
  w.i32(countOf(f.pageCount, f.pages.size()));
  for (std::size_t i = 0; i < f.pages.size(); ++i) writePage(w, f.pages[i], filePositions[i]);
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
  std::vector<std::vector<int>> positions;  // as the index tells them, for each customer
  for (const CustomerFields& customer : f.customers) {
    positions.emplace_back();
    for (const PageFields& page : customer.pages) {
      capture.bodyOffsets.push_back(page.body ? w.size() : -1);
      positions.back().push_back(page.filePosition.value_or(capture.bodyOffsets.back()));
      if (page.body) writePageBody(w, *page.body);
    }
  }

  capture.indexOffset = w.size();
  w.string(f.label).f64(f.firstDate).i32(f.firstStatus).f64(f.secondDate).i32(f.secondStatus);
  w.i32(countOf(f.customerCount, f.customers.size()));
  for (std::size_t i = 0; i < f.customers.size(); ++i) {
    writeCustomer(w, f.customers[i], positions[i]);
  }
  if (f.magic == kTrailerMagic) {
    w.i32(capture.indexOffset, kNarrowMagic);
  } else {
    w.patch(0, capture.indexOffset);
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
