#pragma once

#include <gtest/gtest.h>

#include <iterator>

#include "pagemodel/DrawListReader.h"
#include "pagemodel/PartOperations.h"
#include "support/FrozenText.h"
#include "support/LoadedBytes.h"
#include "support/NamedFields.h"
#include "support/Parts.h"

namespace rvf::test {

inline std::string bytesOf(auto write, const auto&... fields) {
  ByteWriter w;
  write(w, fields...);
  return w.bytes;
}
inline std::string recordOf(const Part& part, int v = kNewestPart, bool wide = true) {
  ByteWriter w(wide);
  writePart(w, part, v);
  return w.bytes;
}

/// Reads a record over existing content; all of its bytes must be consumed.
template <class Record>
void readWhole(Record& record, void (*read)(Record&, eArchive&), const std::string& bytes,
               bool wide = false) {
  LoadedBytes file(bytes, wide);
  read(record, file.archive);
  EXPECT_FALSE(file.archive.failed());
  EXPECT_EQ(file.archive.GetPosition(), static_cast<i32>(bytes.size()));
}
inline DrawPart readFresh(const Part& part) {
  DrawPart slot;
  readWhole(slot, readDrawPart, recordOf(part), true);
  return slot;
}

/// What a part holds besides its fields: the frame, its capacity, and which words are set pointers.
inline Rows frameOf(const DrawPart& part) {
  const PartFields& f = part.fields;
  Rows rows = {Shown::row("type", partIndex(part.type)), Shown::row("poolKind", part.poolKind),
               Shown::row("ownerTag", part.ownerTag),
               Shown::row("pointers", partWords(part).setPointers)};
  const auto add = [&rows](const auto&... values) {
    rows.push_back(Shown::row("room", values...));
  };
  if (part.type == PartType::kText) add(f.text.runCapacity, f.text.textCapacity);
  if (part.type == PartType::kLine) add(f.line.pointCapacity);
  if (part.type == PartType::kLineSet) add(f.lineSet.lineCapacity);
  if (part.type == PartType::kBcocaBarcode) add(f.barcode.textCapacity);
  return rows;
}
inline Rows rowsOf(const DrawPart& part) {
  Rows rows = fieldsOf(part);
  std::ranges::move(frameOf(part), std::back_inserter(rows));
  return rows;
}

}  // namespace rvf::test
