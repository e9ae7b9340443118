#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "support/Paths.h"
#include "support/Shown.h"

namespace rvf::test {

// Expected values that are many and regular are kept in reviewed text files in data/ instead of in
// tests. If the environment variable RVF_WRITE_DATA is set, the tests write these files anew from
// what the program does; every changed line must then be reviewed.

inline void expectFrozen(std::string_view name, const std::string& actual) {
  const std::string path = sourcePath("tests/data/" + std::string(name));
  if (std::getenv("RVF_WRITE_DATA") != nullptr) std::ofstream(path) << actual;
  std::ifstream file(path);
  std::istringstream found(actual);
  std::string expectedLine, foundLine;
  for (int number = 1; file || found; ++number) {
    if (!std::getline(file, expectedLine)) expectedLine = "(end)";
    if (!std::getline(found, foundLine)) foundLine = "(end)";
    ASSERT_EQ(foundLine, expectedLine) << path << ", line " << number;
  }
}

/// A sequence of objects, each shown by the rows that differ from those of the previous one. Equal
/// ones share an entry: "100 to 105". All have rows with the same names, so that no change is
/// missed.
class Deltas {
 public:
  void add(const std::string& name, const Rows& rows) {
    if (rows != before_) {
      finish();
      first_ = name;
      for (const std::string& row : rows) {
        if (std::ranges::find(before_, row) == before_.end()) changes_ += "    " + row + "\n";
      }
      before_ = rows;
    }
    last_ = name;
  }
  std::string text() {
    finish();
    return text_;
  }

 private:
  void finish() {
    if (first_.empty()) return;
    text_ += "  " + first_ + (last_ == first_ ? "" : " to " + last_) + "\n" + changes_;
    changes_.clear();
  }

  Rows before_;
  std::string first_, last_, changes_, text_;
};

}  // namespace rvf::test
