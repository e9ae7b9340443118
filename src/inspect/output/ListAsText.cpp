#include "inspect/model/BitNames.h"
#include "inspect/output/ListWriter.h"
#include "inspect/output/ShownText.h"

namespace rvf::inspect {

namespace {

class TextListWriter final : public ListWriter {
 public:
  using ListWriter::ListWriter;

  void begin(const std::string& path) override {
    output_.line("Difference file " + shownText(std::string_view(path)));
  }

  void header(const DifferenceHeader& header) override {
    output_.line("First file:  " + shownText(header.firstPath.view()));
    output_.line("Second file: " + shownText(header.secondPath.view()));
    output_.line("Customers:   " + std::to_string(header.customerCount));
  }

  void customer(const DifferenceCustomer& customer) override {
    output_.line("\nCustomer " + std::to_string(i64{customer.index} + 1) + " \"" +
                 shownText(customer.id.view()) + "\": pages " +
                 std::to_string(customer.firstPageCount) + " / " +
                 std::to_string(customer.secondPageCount));
  }

  void page(i32 index, DiffFlags bits) override {
    output_.line("  page " + std::to_string(i64{index} + 1) + ": " + bitsInWords(bits));
  }

  void customerEnd(DiffFlags bits) override { output_.line("  customer: " + bitsInWords(bits)); }

  void totals(const DifferenceTotals& totals) override {
    output_.line("\nTotal: " + bitsInWords(totals.bits));
    output_.line("Differing pages: " + std::to_string(totals.differingPages));
    output_.line("Pages without a partner: " + std::to_string(totals.pageCountDelta));
  }

  void end(const std::string& lack) override {
    if (!lack.empty()) {
      output_.line("\nIncomplete: " + lack);
    }
  }
};

}  // namespace

std::unique_ptr<ListWriter> makeTextListWriter(Output& output) {
  return std::make_unique<TextListWriter>(output);
}

}  // namespace rvf::inspect
