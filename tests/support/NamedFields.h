#pragma once

#include <algorithm>
#include <iomanip>
#include <sstream>
#include <string>
#include <vector>

#include "Shown.h"
#include "pagemodel/FieldVisitor.h"

namespace rvf::test {

/// The fields of a part, a list or a static object as rows: "runs[0].x 10". Colours are
/// hexadecimal; bytes that are not plain text are shown as numbers.
class NamedFields : public FieldVisitor {
 public:
  void number(std::string_view name, i64 value) override { add(name, std::to_string(value)); }
  void floating(std::string_view name, f64 value) override {
    std::ostringstream exact;
    exact << std::setprecision(17) << value;
    add(name, exact.str());
  }
  void colour(std::string_view name, u32 packed) override {
    std::ostringstream hex;
    hex << '#' << std::hex << packed;
    add(name, hex.str());
  }
  void text(std::string_view name, std::u16string_view value) override { add(name, quoted(value)); }
  void bytes(std::string_view name, std::span<const std::byte> value) override {
    std::u16string units;
    std::ostringstream numbers;
    for (const std::byte byte : value) {
      units += std::to_integer<char16_t>(byte);
      numbers << ' ' << std::to_integer<int>(byte);
    }
    add(name,
        std::ranges::all_of(units, isPlain) ? test::quoted(units) : "(" + numbers.str() + " )");
  }
  void enter(std::string_view name, i32 index) override {
    lengths_.push_back(path_.size());
    path_ += (path_.empty() ? "" : ".") + std::string(name);
    if (index != kSingle) path_ += "[" + std::to_string(index) + "]";
  }
  void leave() override {
    path_.resize(lengths_.back());
    lengths_.pop_back();
  }

  Rows rows;

 private:
  void add(std::string_view name, const std::string& value) {
    const char* dot = path_.empty() || name.empty() ? "" : ".";
    rows.push_back(path_ + dot + std::string(name) + " " + value);
  }

  std::string path_;
  std::vector<std::size_t> lengths_;
};

template <class Object>
Rows fieldsOf(const Object& object) {
  NamedFields fields;
  forEachField(object, fields);
  return fields.rows;
}

/// The rows of `rows` that are not in `others`: "[x 5] [y 7]".
inline std::string changedRows(const Rows& rows, const Rows& others) {
  std::string text;
  for (const std::string& row : rows) {
    if (std::ranges::find(others, row) == others.end()) text += " [" + row + "]";
  }
  return text;
}

/// The names of the fields that differ between two objects of the same shape, and of all fields
/// after the first one that only one of them has.
inline Rows changedNames(const Rows& rows, const Rows& others) {
  Rows names;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    if (i >= others.size() || rows[i] != others[i]) {
      names.push_back(rows[i].substr(0, rows[i].find(' ')));
    }
  }
  if (others.size() > rows.size()) names.emplace_back("more fields");
  return names;
}

}  // namespace rvf::test
