#include "inspect/model/BitNames.h"
#include "inspect/output/JsonChange.h"
#include "inspect/output/JsonRecords.h"
#include "inspect/output/ShownText.h"
#include "inspect/output/SummaryWriter.h"
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

class JsonSummaryWriter final : public SummaryWriter {
 public:
  explicit JsonSummaryWriter(Output& output) : output_(output) {}

  void begin(const std::string& folder) override {
    openRecord(json_, "results").field("format", kJsonFormat);
    json_.field("path", fromNative(folder).view());
    finishRecord();
  }

  // As in the folder of results, with the names of the bits and what reading it again brought.
  void pair(const PairResult& pair, const PairInspection* inspection) override {
    openRecord(json_, "pair").field("format", kJsonFormat);
    json_.field("name", std::u16string_view(pair.name));
    json_.field("folder", fromNative(pair.folder).view());
    addOptionalText(json_, "first", pair.first);
    addOptionalText(json_, "second", pair.second);
    json_.name("options").openList();
    for (const std::u16string& option : pair.options) {
      json_.value(std::u16string_view(option));
    }
    json_.closeList().field("state", std::string_view(pair.state));
    json_.field("reason", std::u16string_view(pair.reason));
    addOptional(json_, "status", pair.status);
    if (pair.bits) {
      addBits(json_, *pair.bits);
    } else {
      json_.name("bits").null();
    }
    addOptional(json_, "seconds", pair.seconds);
    addOptional(json_, "firstBytes", pair.firstBytes);
    addOptional(json_, "secondBytes", pair.secondBytes);
    if (inspection != nullptr) {
      json_.name("inspected").open().field("changes", inspection->changes);
      json_.field("changesAccepted", inspection->changesAccepted);
      json_.field("isAccepted", inspection->isAccepted);
      json_.field("trouble", std::string_view(inspection->trouble)).close();
    }
    finishRecord();
  }

  void end(const ResultsSummary& summary) override {
    for (const GroupOfPairs* entry : summary.groups()) {
      openRecord(json_, "groupOfPairs").name("inPairs").open();
      addNames(json_, entry->pairs);
      addGroup(json_.close(), entry->group);
      finishRecord();
    }
    openRecord(json_, "resultsSummary").field("pairs", summary.pairs());
    json_.field("identical", summary.count(Outcome::kIdentical));
    json_.field("different", summary.count(Outcome::kDifferent));
    json_.field("accepted", summary.accepted());
    json_.field("oneSided", summary.count(Outcome::kOneSided));
    json_.field("failed", summary.count(Outcome::kFailed));
    json_.field("notExplained", summary.unexplained());
    addBitCounts(summary);
    addReasons(summary);
    addGreatest("slowest", "seconds", summary.slowest());
    addGreatest("largest", "bytes", summary.largest());
    json_.field("changesNotGrouped", summary.changesNotGrouped());
    json_.field("complete", summary.isComplete());
    finishRecord();
  }

 private:
  void addBitCounts(const ResultsSummary& summary) {
    json_.name("byBit").openList();
    for (const auto& [bit, pairs] : summary.pairsByBit()) {
      json_.open().field("bit", bit).field("name", std::string_view(bitNames(bit).front()));
      json_.field("pairs", pairs).close();
    }
    json_.closeList();
  }

  void addReasons(const ResultsSummary& summary) {
    json_.name("reasons").openList();
    for (const FailedPairs* failed : summary.reasons()) {
      json_.open().field("state", std::string_view(failed->state));
      json_.field("reason", std::u16string_view(failed->reason));
      addNames(json_, *failed);
      json_.close();
    }
    json_.closeList().field("reasonsLeftOut", summary.reasonsLeftOut());
  }

  void addGreatest(std::string_view name, std::string_view what, const auto& greatest) {
    json_.name(name).openList();
    for (const auto& [value, pair] : greatest.entries()) {
      json_.open().field("name", std::u16string_view(pair)).field(what, value).close();
    }
    json_.closeList();
  }

  void finishRecord() {
    json_.close();
    writeRecord(output_, json_);
  }

  Output& output_;
  JsonLine json_;
};

}  // namespace

std::unique_ptr<SummaryWriter> makeJsonSummaryWriter(Output& output) {
  return std::make_unique<JsonSummaryWriter>(output);
}

}  // namespace rvf::inspect
