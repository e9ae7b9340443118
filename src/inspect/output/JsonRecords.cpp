#include "inspect/output/JsonRecords.h"

#include "inspect/model/BitNames.h"

namespace rvf::inspect {

JsonLine& openRecord(JsonLine& json, std::string_view record) {
  return json.open().field("record", record);
}

void writeRecord(Output& output, JsonLine& json) {
  output.line(json.text());
  json.clear();
}

void writeBeginning(Output& output, JsonLine& json) { output.write(json.takeBeginning()); }

JsonLine& addBits(JsonLine& json, DiffFlags bits) {
  json.field("bits", bits).name("names").openList();
  for (const std::string& name : bitNames(bits)) {
    json.value(std::string_view(name));
  }
  return json.closeList();
}

}  // namespace rvf::inspect
