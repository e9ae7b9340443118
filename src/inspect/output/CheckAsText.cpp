#include "inspect/output/CheckWriter.h"
#include "inspect/output/ShownText.h"

namespace rvf::inspect {

namespace {

class TextCheckWriter final : public CheckWriter {
 public:
  using CheckWriter::CheckWriter;

  void end() override {
    output_.line(path() + ": " + result() + ", " + counted(damage(), "damaged place") + ", " +
                 counted(warnings(), "warning"));
  }

 protected:
  void write(const Finding& finding) override {
    std::string line = path();
    if (finding.offset >= 0) {
      line += ": offset " + std::to_string(finding.offset);
    }
    if (finding.customer >= 0) {
      line += ": customer " + std::to_string(i64{finding.customer} + 1) + " \"" +
              shownText(file_.customer(finding.customer).id.view()) + "\"";
    }
    if (finding.page >= 0) {
      line += ", page " + std::to_string(i64{finding.page} + 1);
    }
    line += finding.severity == Severity::kDamage ? ": damage: " : ": warning: ";
    output_.line(line + finding.what + ": expected " + finding.expected + ", found " +
                 finding.found);
  }

 private:
  [[nodiscard]] std::string path() const { return shownText(std::string_view(file_.path())); }
};

}  // namespace

std::unique_ptr<CheckWriter> makeTextCheckWriter(Output& output, const CaptureFile& file) {
  return std::make_unique<TextCheckWriter>(output, file);
}

}  // namespace rvf::inspect
