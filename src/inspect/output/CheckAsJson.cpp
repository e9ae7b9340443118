#include "inspect/output/CheckWriter.h"
#include "inspect/output/JsonRecords.h"
#include "text/NativeText.h"

namespace rvf::inspect {

namespace {

class JsonCheckWriter final : public CheckWriter {
 public:
  using CheckWriter::CheckWriter;

  void end() override {
    openRecord(json_, "check").field("format", kJsonFormat);
    json_.field("path", fromNative(file_.path()).view());
    json_.field("result", result()).field("damage", damage()).field("warnings", warnings());
    json_.close();
    writeRecord(output_, json_);
  }

 protected:
  void write(const Finding& finding) override {
    openRecord(json_, "finding").field("path", fromNative(file_.path()).view());
    json_.field("severity", finding.severity == Severity::kDamage ? "damage" : "warning");
    json_.field("what", std::string_view(finding.what));
    addNumber("offset", finding.offset);
    addNumber("customer", finding.customer);
    if (finding.customer >= 0) {
      json_.field("id", file_.customer(finding.customer).id.view());
    }
    addNumber("page", finding.page);
    json_.field("expected", std::string_view(finding.expected));
    json_.field("found", std::string_view(finding.found)).close();
    writeRecord(output_, json_);
  }

 private:
  void addNumber(const char* name, i64 number) {
    json_.name(name);
    number < 0 ? json_.null() : json_.value(number);
  }

  JsonLine json_;
};

}  // namespace

std::unique_ptr<CheckWriter> makeJsonCheckWriter(Output& output, const CaptureFile& file) {
  return std::make_unique<JsonCheckWriter>(output, file);
}

}  // namespace rvf::inspect
