#pragma once

#include <gtest/gtest.h>

#include <concepts>
#include <ranges>

#include "pagemodel/DrawListReader.h"
#include "pagemodel/PartOperations.h"
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

/// Reads a record over what there is; it has to be taken up to its last byte.
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

/// Values as text. Numbers of more than 16 bits, which mostly are packed, are hexadecimal.
struct Shown {
  template <class... Values>
  static std::string row(std::string name, const Values&... values) {
    return ((name += " " + of(values)), ..., name);
  }
  template <std::integral T>
  static std::string of(T value) {
    const auto number = static_cast<i64>(value);
    if (number > -0x10000 && number < 0x10000) return std::to_string(number);
    std::ostringstream text;
    text << "0x" << std::hex << static_cast<u32>(number);
    return text.str();
  }
  static std::string of(f64 value) { return std::to_string(value); }
  static std::string of(const eString& text) { return quoted(text.view()); }
  template <std::ranges::range T>
  static std::string of(const T& values) {
    std::string text = "(";
    for (const auto& value : values) text += " " + of(value);
    return text + " )";
  }
};

/// All that a part holds: its fields by name, and those of its frame.
inline Rows rowsOf(const DrawPart& part) {
  Rows rows = fieldsOf(part);
  rows.push_back(Shown::row("type", partIndex(part.type)));
  rows.push_back(Shown::row("poolKind", part.poolKind));
  rows.push_back(Shown::row("ownerTag", part.ownerTag));
  return rows;
}

}  // namespace rvf::test
