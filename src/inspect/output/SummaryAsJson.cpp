#include "inspect/output/JsonRecords.h"
#include "inspect/output/SummaryRecords.h"
#include "inspect/output/SummaryWriter.h"
#include "text/NativeText.h"

namespace rvf::inspect {

namespace {

class JsonSummaryWriter final : public SummaryWriter {
 public:
  explicit JsonSummaryWriter(Output& output) : output_(output) {}

  void begin(const std::string& folder) override {
    openRecord(json_, "results").field("format", kJsonFormat);
    json_.field("path", fromNative(folder).view());
    finishRecord();
  }

  void pair(const PairResult& pair, const PairInspection* inspection) override {
    addPair(openRecord(json_, "pair").field("format", kJsonFormat), pair, inspection);
    finishRecord();
  }

  void end(const ResultsSummary& summary) override {
    for (const GroupOfPairs* entry : summary.groups()) {
      addGroupOfPairs(openRecord(json_, "groupOfPairs"), *entry);
      finishRecord();
    }
    addResultsSummary(openRecord(json_, "resultsSummary"), summary);
    finishRecord();
  }

 private:
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
