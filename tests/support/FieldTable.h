#pragma once

#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "Paths.h"

namespace rvf::test {

/// One line of data/fields.txt, which describes its columns.
struct FieldRow {
  explicit FieldRow(const std::string& line) {
    std::istringstream columns(line);
    std::string bytes, history;
    columns >> name >> bytes >> how >> earns >> std::ws;
    std::getline(columns, history);
    isAltered = bytes[0] != '#';
    disk = std::stoul(isAltered ? bytes : bytes.substr(1));
    kept =
        bytes.find('>') == std::string::npos ? disk : std::stoul(bytes.substr(bytes.find('>') + 1));
    std::istringstream values(history);
    for (std::string value; std::getline(values >> std::ws, value, ',');) {
      const std::size_t at = value.rfind('@');
      const bool isOldest = at == std::string::npos;
      since.emplace_back(isOldest ? 0 : std::stoi(value.substr(at + 1)), value.substr(0, at));
    }
  }

  [[nodiscard]] std::string valueAt(int version) const {
    for (const auto& [first, value] : since) {
      if (version >= first) return value;
    }
    return "none";
  }
  [[nodiscard]] bool is(char property) const { return how.find(property) != std::string::npos; }

  std::string name, how, earns;
  std::size_t disk = 0, kept = 0;
  bool isAltered = true;
  std::vector<std::pair<int, std::string>> since;  // newest first
};

/// The tables by the names of their types.
inline std::map<std::string, std::vector<FieldRow>> fieldTables() {
  std::map<std::string, std::vector<FieldRow>> tables;
  std::ifstream file(sourcePath("tests/data/fields.txt"));
  std::string type;
  for (std::string line; std::getline(file, line);) {
    if (line.empty() || line[0] == '#') continue;
    if (line.find(' ') == std::string::npos) {
      type = line;
    } else {
      tables[type].emplace_back(line);
    }
  }
  return tables;
}

}  // namespace rvf::test
