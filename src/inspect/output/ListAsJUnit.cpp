#include "inspect/model/BitNames.h"
#include "inspect/output/JUnitReport.h"
#include "inspect/output/ListWriter.h"
#include "inspect/output/ShownText.h"

namespace rvf::inspect {

namespace {

class JUnitListWriter final : public ListWriter {
 public:
  explicit JUnitListWriter(Output& output) : ListWriter(output), report_(output) {}

  void begin(const std::string& path) override { path_ = shownText(std::string_view(path)); }

  void customer(const DifferenceCustomer& customer) override {
    report_.beginSuite(shownText(customer.id.view()));
    const i64 delta = i64{customer.firstPageCount} - customer.secondPageCount;
    if (delta != 0) {
      report_.failed("page count",
                     "pages " + std::to_string(customer.firstPageCount) + " / " +
                         std::to_string(customer.secondPageCount),
                     "");
    }
  }

  void page(i32 index, DiffFlags bits) override {
    const std::string name = "page " + std::to_string(i64{index} + 1);
    if (bits == 0) {
      report_.passed(name);
    } else {
      report_.failed(name, bitsInWords(bits), "");
    }
  }

  void end(const std::string& lack) override {
    if (!lack.empty()) {
      report_.beginSuite(path_);
      report_.error("complete", lack);
    }
  }

  void finish() override { report_.finish(); }

 private:
  JUnitReport report_;
  std::string path_;
};

}  // namespace

std::unique_ptr<ListWriter> makeJUnitListWriter(Output& output) {
  return std::make_unique<JUnitListWriter>(output);
}

}  // namespace rvf::inspect
