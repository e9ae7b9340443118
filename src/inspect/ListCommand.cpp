#include <algorithm>

#include "inspect/Commands.h"
#include "inspect/model/BitNames.h"
#include "inspect/model/SelectedCustomer.h"
#include "inspect/model/Trouble.h"
#include "inspect/output/ListWriter.h"
#include "storage/DiskFile.h"
#include "text/NativeText.h"

namespace rvf::inspect {

namespace {

/// Passes on only what the options select.
class SelectingVisitor final : public DifferenceVisitor {
 public:
  SelectingVisitor(const ListOptions& options, ListWriter& writer)
      : options_(options),
        writer_(writer),
        customer_(options.selection.customer),
        bit_(bitOfName(options.bitName)) {}

  void header(const DifferenceHeader& header) override { writer_.header(header); }

  void customer(const DifferenceCustomer& customer) override {
    isSelected_ = customer_.includes(customer.index, customer.id.view());
    foundCustomer_ = foundCustomer_ || isSelected_;
    if (isSelected_) {
      writer_.customer(customer);
    }
  }

  void page(i32 index, DiffFlags bits) override {
    bits_ |= bits;
    const std::optional<i32> wanted = options_.selection.page;
    if (!isSelected_ || (wanted && index != *wanted - 1)) {
      return;
    }
    foundPage_ = true;
    if ((bit_ == 0 || (bits & bit_) != 0) && (bits != 0 || !options_.onlyDiffering)) {
      writer_.page(index, bits);
    }
  }

  void customerEnd(DiffFlags bits) override {
    bits_ |= bits;
    if (isSelected_) {
      writer_.customerEnd(bits);
    }
  }

  void totals(const DifferenceTotals& totals) override {
    bits_ |= totals.bits;
    writer_.totals(totals);
  }

  [[nodiscard]] DiffFlags bits() const { return bits_; }
  [[nodiscard]] bool foundAll() const {
    return (customer_.isAny() || foundCustomer_) && (!options_.selection.page || foundPage_);
  }

 private:
  const ListOptions& options_;
  ListWriter& writer_;
  SelectedCustomer customer_;
  DiffFlags bit_;
  DiffFlags bits_ = 0;
  bool isSelected_ = false;
  bool foundCustomer_ = false;
  bool foundPage_ = false;
};

std::unique_ptr<ListWriter> makeWriter(Format format, Output& output) {
  switch (format) {
    case Format::kJsonLines:
      return makeJsonListWriter(output);
    case Format::kJUnit:
      return makeJUnitListWriter(output);
    default:
      return makeTextListWriter(output);
  }
}

int listFile(const ListOptions& options, const std::string& path, ListWriter& writer) {
  eDiskFile file;
  if (!file.Open(fromNative(path), open_flags::kRead | open_flags::kUnbuffered,
                 FileContent::kBinary)) {
    throw Trouble(path, toNative(file.failure().view()));
  }
  writer.begin(path);
  SelectingVisitor visitor(options, writer);
  const std::string lack = readDifferenceFile(file, visitor);
  writer.end(lack);
  if (lack.empty() && !visitor.foundAll()) {
    throw Trouble(path, "there is no such customer or page");
  }
  if (!lack.empty()) {
    return status::kTrouble;
  }
  return visitor.bits() == 0 ? status::kSame : status::kDifferent;
}

}  // namespace

int runList(const ListOptions& options) {
  Output output(options.output.path);
  const std::unique_ptr<ListWriter> writer = makeWriter(options.output.format, output);
  int worst = status::kSame;
  for (const std::string& path : options.files) {
    worst = std::max(worst, listFile(options, path, *writer));
  }
  writer->finish();
  output.finish();
  return worst;
}

}  // namespace rvf::inspect
