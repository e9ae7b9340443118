#pragma once

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

#include "support/Fuzz.h"
#include "support/Paths.h"

namespace rvf::fuzz {

/// The schema of the JSON Lines records. Only the vocabulary that it uses is supported.
class RecordSchema {
 public:
  using Json = nlohmann::json;

  RecordSchema()
      : definitions_(
            Json::parse(std::ifstream(test::sourcePath("docs/rvfinspect.schema.json")))["$defs"]) {
    for (const auto& [name, definition] : definitions_.items()) {
      const Json::json_pointer kind("/properties/record/const");
      if (definition.contains(kind)) records_.emplace(definition[kind], &definition);
    }
  }

  /// Ends the process if the record does not follow its definition.
  void requireValid(const Json& record) const {
    const auto found = records_.find(record.is_object() ? record.value("record", "") : "");
    const bool isValid = found != records_.end() && fits(record, *found->second);
    if (!isValid) std::fprintf(stderr, "%s\n", record.dump().c_str());
    require(isValid, "a record is as the schema says");
  }

 private:
  [[nodiscard]] bool fits(const Json& value, const Json& schema) const {
    for (const auto& [keyword, rule] : schema.items()) {
      if (!fits(value, keyword, rule, schema)) return false;
    }
    return true;
  }

  [[nodiscard]] bool fits(const Json& value, const std::string& keyword, const Json& rule,
                          const Json& schema) const {
    const auto fitsTo = [&](const Json& other) { return fits(value, other); };
    const auto isRule = [&](const Json& other) { return value == other; };
    const auto hasType = [&](const Json& name) {
      return typeOf(value) == name.get_ref<const std::string&>();
    };
    if (keyword == "$ref") return fits(value, definitions_.at(rule.get<std::string>().substr(8)));
    if (keyword == "const") return value == rule;
    if (keyword == "enum") return std::ranges::any_of(rule, isRule);
    if (keyword == "oneOf") return std::ranges::count_if(rule, fitsTo) == 1;
    if (keyword == "type")
      return rule.is_array() ? std::ranges::any_of(rule, hasType) : hasType(rule);
    if (keyword == "minimum") return !value.is_number() || value >= rule;
    if (keyword == "maximum") return !value.is_number() || value <= rule;
    if (keyword == "minItems") return value.size() >= rule;
    if (keyword == "maxItems") return value.size() <= rule;
    if (keyword == "items") {
      return std::ranges::all_of(value, [&](const Json& item) { return fits(item, rule); });
    }
    if (keyword == "required") {
      return std::ranges::all_of(rule, [&](const Json& name) { return value.contains(name); });
    }
    if (keyword == "properties" && value.is_object()) return fitMembers(value, rule, schema);
    return true;
  }

  [[nodiscard]] bool fitMembers(const Json& object, const Json& properties,
                                const Json& schema) const {
    const bool isClosed = !schema.value("additionalProperties", true);
    return std::ranges::all_of(object.items(), [&](const auto& member) {
      const auto property = properties.find(member.key());
      return property == properties.end() ? !isClosed : fits(member.value(), *property);
    });
  }

  static std::string_view typeOf(const Json& value) {
    return value.is_number_integer() ? "integer" : value.type_name();
  }

  Json definitions_;
  std::map<std::string, const Json*> records_;  // definitions by kind of record
};

}  // namespace rvf::fuzz
