#include "inspect/output/JsonRecords.h"
#include "inspect/output/ListWriter.h"
#include "text/NativeText.h"

namespace rvf::inspect {

namespace {

class JsonListWriter final : public ListWriter {
 public:
  using ListWriter::ListWriter;

  void begin(const std::string& path) override {
    path_ = fromNative(path);
    header_ = {};
    totals_ = {};
  }

  void header(const DifferenceHeader& header) override {
    header_ = header;
    openRecord(json_, "differenceFile").field("format", kJsonFormat).field("path", path_.view());
    json_.field("first", header.firstPath.view()).field("second", header.secondPath.view());
    json_.field("customers", header.customerCount).close();
    writeRecord(output_, json_);
  }

  void customer(const DifferenceCustomer& customer) override { customer_ = customer; }

  void page(i32 index, DiffFlags bits) override {
    openRecord(json_, "verdict")
        .field("customer", customer_.index)
        .field("id", customer_.id.view());
    addBits(json_.field("page", index), bits).close();
    writeRecord(output_, json_);
  }

  void customerEnd(DiffFlags bits) override {
    openRecord(json_, "customerVerdict").field("customer", customer_.index);
    json_.field("id", customer_.id.view()).field("firstPages", customer_.firstPageCount);
    addBits(json_.field("secondPages", customer_.secondPageCount), bits).close();
    writeRecord(output_, json_);
  }

  void totals(const DifferenceTotals& totals) override { totals_ = totals; }

  void end(const std::string& lack) override {
    openRecord(json_, "listSummary").field("path", path_.view());
    addBits(json_, totals_.bits).field("pagesDiffering", totals_.differingPages);
    json_.field("pagesWithoutPartner", totals_.pageCountDelta).field("complete", lack.empty());
    if (!lack.empty()) {
      json_.field("lack", std::string_view(lack));
    }
    writeRecord(output_, json_.close());
  }

 private:
  JsonLine json_;
  eString path_;
  DifferenceHeader header_;
  DifferenceCustomer customer_;
  DifferenceTotals totals_;
};

}  // namespace

std::unique_ptr<ListWriter> makeJsonListWriter(Output& output) {
  return std::make_unique<JsonListWriter>(output);
}

}  // namespace rvf::inspect
