#include "inspect/output/SummaryRecords.h"

#include "inspect/model/BitNames.h"
#include "inspect/output/JsonChange.h"
#include "inspect/output/JsonRecords.h"
#include "text/NativeText.h"

namespace rvf::inspect {

namespace {

void addOptional(JsonLine& json, std::string_view name, const auto& value) {
  json.name(name);
  value ? json.value(*value) : json.null();
}

void addOptionalText(JsonLine& json, std::string_view name,
                     const std::optional<std::u16string>& text) {
  json.name(name);
  text ? json.value(std::u16string_view(*text)) : json.null();
}

void addNames(JsonLine& json, const NamedPairs& pairs) {
  json.field("count", pairs.count).name("names").openList();
  for (const std::u16string& name : pairs.names) {
    json.value(std::u16string_view(name));
  }
  json.closeList();
}

void addBitCounts(JsonLine& json, const ResultsSummary& summary) {
  json.name("byBit").openList();
  for (const auto& [bit, pairs] : summary.pairsByBit()) {
    json.open().field("bit", bit).field("name", std::string_view(bitNames(bit).front()));
    json.field("pairs", pairs).close();
  }
  json.closeList();
}

void addReasons(JsonLine& json, const ResultsSummary& summary) {
  json.name("reasons").openList();
  for (const FailedPairs* failed : summary.reasons()) {
    json.open().field("state", std::string_view(failed->state));
    json.field("reason", std::u16string_view(failed->reason));
    addNames(json, *failed);
    json.close();
  }
  json.closeList().field("reasonsLeftOut", summary.reasonsLeftOut());
}

void addGreatest(JsonLine& json, std::string_view name, std::string_view what,
                 const auto& greatest) {
  json.name(name).openList();
  for (const auto& [value, pair] : greatest.entries()) {
    json.open().field("name", std::u16string_view(pair)).field(what, value).close();
  }
  json.closeList();
}

}  // namespace

void addPair(JsonLine& json, const PairResult& pair, const PairInspection* inspection) {
  json.field("name", std::u16string_view(pair.name));
  json.field("folder", fromNative(pair.folder).view());
  addOptionalText(json, "first", pair.first);
  addOptionalText(json, "second", pair.second);
  json.name("options").openList();
  for (const std::u16string& option : pair.options) {
    json.value(std::u16string_view(option));
  }
  json.closeList().field("state", std::string_view(pair.state));
  json.field("reason", std::u16string_view(pair.reason));
  addOptional(json, "status", pair.status);
  if (pair.bits) {
    addBits(json, *pair.bits);
  } else {
    json.name("bits").null();
  }
  addOptional(json, "seconds", pair.seconds);
  addOptional(json, "firstBytes", pair.firstBytes);
  addOptional(json, "secondBytes", pair.secondBytes);
  if (inspection != nullptr) {
    json.name("inspected").open().field("changes", inspection->changes);
    json.field("changesAccepted", inspection->changesAccepted);
    json.field("isAccepted", inspection->isAccepted);
    json.field("trouble", std::string_view(inspection->trouble)).close();
  }
}

void addGroupOfPairs(JsonLine& json, const GroupOfPairs& entry) {
  json.name("inPairs").open();
  addNames(json, entry.pairs);
  addGroup(json.close(), entry.group);
}

void addResultsSummary(JsonLine& json, const ResultsSummary& summary) {
  json.field("pairs", summary.pairs());
  json.field("identical", summary.count(Outcome::kIdentical));
  json.field("different", summary.count(Outcome::kDifferent));
  json.field("accepted", summary.accepted());
  json.field("oneSided", summary.count(Outcome::kOneSided));
  json.field("failed", summary.count(Outcome::kFailed));
  json.field("notExplained", summary.unexplained());
  addBitCounts(json, summary);
  addReasons(json, summary);
  addGreatest(json, "slowest", "seconds", summary.slowest());
  addGreatest(json, "largest", "bytes", summary.largest());
  json.field("changesNotGrouped", summary.changesNotGrouped());
  json.field("complete", summary.isComplete());
}

}  // namespace rvf::inspect
