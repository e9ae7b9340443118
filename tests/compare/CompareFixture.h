#pragma once

#include <gtest/gtest.h>

#include <deque>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "capture/RvfReader.h"
#include "compare/DiffFlags.h"
#include "compare/Tolerances.h"
#include "pagemodel/DrawListReader.h"
#include "pagemodel/DrawStatic.h"
#include "storage/MemFile.h"
#include "support/Capture.h"
#include "support/LoadedBytes.h"

namespace rvf::test {

/// The tolerances, for as long as this lives.
class WithTolerances {
 public:
  WithTolerances(i32 position, i32 line) {
    positionTolerance = position;
    lineTolerance = line;
  }
  ~WithTolerances() { positionTolerance = lineTolerance = 0; }
  WithTolerances(const WithTolerances&) = delete;
  WithTolerances& operator=(const WithTolerances&) = delete;
};

/// A part as the program reads it.
inline DrawPart readPart(const Part& part, int version = kNewestPart) {
  ByteWriter w(true);
  writePart(w, part, version);
  LoadedBytes loaded(w.bytes, true);
  DrawPart read;
  readDrawPart(read, loaded.archive);
  EXPECT_FALSE(loaded.archive.failed()) << "type " << part.type;
  return read;
}

/// One file's lists and the objects that their groups refer to. Two of these are two files.
class Side final : public StaticLookup {
 public:
  /// A reference to a new object with these children. The first one of each side has the same
  /// record as the first one of another, and so on.
  Part group(const std::vector<Part>& children, StaticRefFields f = {}) {
    f.staticIndex = static_cast<int>(objects_.size());
    readInto(objects_.emplace_back().firstList, children, nullptr);
    return staticRef(f);
  }
  /// References find the objects that exist by now.
  DrawList list(const std::vector<Part>& parts) {
    DrawList read;
    readInto(read, parts, this);
    return read;
  }
  const DrawStatic* FindStatic(i32, i32 index) const override {
    const auto i = static_cast<std::size_t>(index);
    return i < objects_.size() ? &objects_[i] : nullptr;
  }

 private:
  static void readInto(DrawList& list, const std::vector<Part>& parts, const StaticLookup* tables) {
    ByteWriter w(true);
    writeList(w, {.parts = parts});
    LoadedBytes loaded(w.bytes, true);
    currentContext = tables;
    readDrawList(list, loaded.archive);
    currentContext = nullptr;
    EXPECT_FALSE(loaded.archive.failed());
  }

  std::deque<DrawStatic> objects_;
};

/// A capture file in memory with its index loaded.
class LoadedCapture {
 public:
  explicit LoadedCapture(const CaptureFields& fields)
      : bytes_(writeCapture(fields).bytes),
        file_(reinterpret_cast<std::byte*>(bytes_.data()), static_cast<i32>(bytes_.size()), 0),
        reader(context, false) {
    reader.load(file_);
  }

 private:
  std::string bytes_;
  eMemFile file_;

 public:
  CompareContext context;
  RvfReader reader;
};

}  // namespace rvf::test
