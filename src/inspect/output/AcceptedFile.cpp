#include "inspect/output/AcceptedFile.h"

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <vector>

#include "inspect/model/Trouble.h"
#include "inspect/output/JsonLine.h"
#include "inspect/output/Output.h"
#include "inspect/output/ShownText.h"

namespace rvf::inspect {

namespace {

using nlohmann::json;

std::optional<Place> pointOf(const json& entry, const char* name) {
  if (!entry.contains(name)) {
    return std::nullopt;
  }
  return Place{entry.at(name).at(0).get<i64>(), entry.at(name).at(1).get<i64>()};
}

GroupKey keyOf(const json& entry) {
  GroupKey key;
  key.kind = entry.at("kind").get<std::string>();
  key.type = entry.at("type").get<std::string>();
  key.list = entry.value("list", "");
  key.fields = entry.value("fields", std::vector<std::string>());
  std::ranges::sort(key.fields);
  key.page = entry.at("page").is_null() ? kNone : entry.at("page").get<i32>();
  key.place = pointOf(entry, "place");
  key.distance = pointOf(entry, "distance");
  return key;
}

void addPoint(JsonLine& line, const char* name, const std::optional<Place>& point) {
  if (point) {
    line.name(name).openList().value(point->x).value(point->y).closeList();
  }
}

std::string lineOf(const GroupKey& key) {
  JsonLine line;
  line.open().name("page");
  key.page == kNone ? line.null() : line.value(key.page);
  line.field("type", std::string_view(key.type)).field("kind", std::string_view(key.kind));
  line.name("fields").openList();
  for (const std::string& field : key.fields) {
    line.value(std::string_view(field));
  }
  line.closeList().field("list", std::string_view(key.list));
  addPoint(line, "place", key.place);
  addPoint(line, "distance", key.distance);
  return line.field("id", std::string_view(idText(key.id()))).close().text();
}

}  // namespace

std::map<u64, GroupKey> readAccepted(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) {
    throw Trouble(path, "the file of accepted changes cannot be read");
  }
  const std::string text(std::istreambuf_iterator<char>(file), {});
  std::map<u64, GroupKey> groups;
  try {
    for (const json& entry : json::parse(text)) {
      const GroupKey key = keyOf(entry);
      groups.emplace(key.id(), key);
    }
  } catch (const json::parse_error& error) {
    throw Trouble(path, "invalid JSON at byte " + std::to_string(error.byte));
  } catch (const json::exception&) {
    throw Trouble(path,
                  "not a file of accepted changes, entry " + std::to_string(groups.size() + 1));
  }
  return groups;
}

void writeAccepted(const std::string& path, const std::map<u64, GroupKey>& groups) {
  std::vector<std::string> lines;
  lines.reserve(groups.size());
  for (const auto& [id, key] : groups) {
    lines.push_back(lineOf(key));
  }
  std::ranges::sort(lines);
  Output output(path);
  output.line("[");
  for (const std::string& line : lines) {
    output.line(line + (line == lines.back() ? "" : ","));
  }
  output.line("]");
  output.finish();
}

std::string inWords(const GroupKey& key) {
  std::string words = key.kind + " " + key.type;
  for (const std::string& field : key.fields) {
    words += " " + field;
  }
  return key.page == kNone ? words : words + ", page " + std::to_string(i64{key.page} + 1);
}

void tellUnused(const std::string& path, const std::map<u64, GroupKey>& accepted,
                const std::set<u64>& seen) {
  for (const auto& [id, key] : accepted) {
    if (!seen.contains(id)) {
      std::fprintf(stderr, "rvfinspect: %s: nothing matches %s any more: %s\n",
                   shownText(std::string_view(path)).c_str(), idText(id).c_str(),
                   shownText(std::string_view(inWords(key))).c_str());
    }
  }
}

}  // namespace rvf::inspect
