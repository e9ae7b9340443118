#pragma once

#include <gtest/gtest.h>

#include <deque>
#include <string>
#include <utility>
#include <vector>

#include "compare/CustomerWalk.h"
#include "compare/Tolerances.h"
#include "pagemodel/DrawListReader.h"
#include "pagemodel/DrawStatic.h"
#include "storage/MemFile.h"
#include "support/Capture.h"
#include "support/LoadedBytes.h"
#include "support/Reporting.h"

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

/// Reads a list as the program does, with references to the objects of `tables`.
inline void readInto(DrawList& list, const std::vector<Part>& parts,
                     const StaticLookup* tables = nullptr) {
  ByteWriter w(true);
  writeList(w, {.parts = parts});
  LoadedBytes loaded(w.bytes, true);
  currentContext = tables;
  readDrawList(list, loaded.archive);
  currentContext = nullptr;
  EXPECT_FALSE(loaded.archive.failed());
}
inline DrawPart readPart(const Part& part) {
  DrawList list;
  readInto(list, {part});
  return std::move(list.slots.front());
}

/// One file's lists and the objects that their groups refer to. Two of these are two files.
class Side final : public StaticLookup {
 public:
  /// A reference to a new object with these children. The first one of each side has the same
  /// record as the first one of another, and so on.
  Part group(const std::vector<Part>& children, int x = 10) {
    readInto(objects_.emplace_back().firstList, children);
    return staticRef({.staticIndex = static_cast<int>(objects_.size()) - 1, .x = x});
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
  std::deque<DrawStatic> objects_;
};

/// A capture file in memory with its index loaded.
class LoadedCapture {
 public:
  explicit LoadedCapture(std::string bytes, bool dbcsMode = false)
      : bytes_(std::move(bytes)),
        file_(reinterpret_cast<std::byte*>(bytes_.data()), static_cast<i32>(bytes_.size()), 0),
        reader(context, dbcsMode) {
    reader.load(file_);
  }
  /// Makes a byte of the file unlike what it was, so that a read of it shows.
  void scramble(int offset) {
    bytes_[static_cast<std::size_t>(offset)] ^= 0x55;
    file_.contentChanged();
  }
  explicit LoadedCapture(const CaptureFields& fields) : LoadedCapture(writeCapture(fields).bytes) {}

 private:
  std::string bytes_;
  eMemFile file_;

 public:
  CompareContext context;
  RvfReader reader;
};

/// One walk over two files, what it leaves in the difference file, and its messages.
struct Walk {
  Walk(RvfReader& a, RvfReader& b, bool stop, bool usesShortCut, WalkObserver* observer = nullptr) {
    HeldMessages held;
    eMemFile file(64);
    const WalkOutput output{file, u"first.rvf", u"second.rvf", observer, usesShortCut};
    status = walkCustomers(a, b, stop, output);
    const auto* start = reinterpret_cast<const char*>(file.data());
    bytes.assign(start, static_cast<std::size_t>(file.Tell()));
    messages = held.take();
  }
  bool operator==(const Walk&) const = default;

  DiffFlags status = 0;
  std::string bytes;
  std::vector<std::string> messages;
};

}  // namespace rvf::test
