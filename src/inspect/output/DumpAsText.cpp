#include <charconv>

#include "inspect/model/ListExplanation.h"
#include "inspect/output/DumpWriter.h"
#include "inspect/output/ShownText.h"
#include "inspect/output/ValueText.h"
#include "pagemodel/FieldVisitor.h"

namespace rvf::inspect {

namespace {

/// Appends fields to a line: `fontId 3 runs[0](x 250 y 900)`.
class LineVisitor final : public FieldVisitor {
 public:
  explicit LineVisitor(std::string& line) : line_(line) {}

  void number(std::string_view name, i64 value) override {
    startField(name);
    char digits[24];
    const auto end = std::to_chars(digits, digits + sizeof digits, value).ptr;
    line_.append(digits, end);
  }
  void floating(std::string_view name, f64 value) override { other(name, value); }
  void colour(std::string_view name, u32 packed) override { other(name, Colour{packed}); }
  void text(std::string_view name, std::u16string_view value) override {
    startField(name);
    line_ += '"';
    appendShown(line_, value);
    line_ += '"';
  }
  void bytes(std::string_view name, std::span<const std::byte> value) override {
    FieldCollector collector;
    collector.bytes(name, value);
    other(name, collector.take().front().value);
  }
  void enter(std::string_view name, i32 index) override {
    startField(name);
    line_.pop_back();
    if (index != kSingle) {
      line_ += '[';
      char digits[12];
      const auto end = std::to_chars(digits, digits + sizeof digits, index).ptr;
      line_.append(digits, end);
      line_ += ']';
    }
    line_ += '(';
  }
  void leave() override { line_ += ')'; }

 private:
  void startField(std::string_view name) {
    if (!line_.empty() && line_.back() != '(') {
      line_ += ' ';
    }
    line_ += name;
    if (!name.empty()) {
      line_ += ' ';
    }
  }
  void other(std::string_view name, const FieldValue& value) {
    startField(name);
    line_ += valueText(value);
  }

  std::string& line_;
};

class TextDumpWriter final : public DumpWriter {
 public:
  using DumpWriter::DumpWriter;

  void file(const CaptureFile& file) override {
    const RvfReader& reader = file.reader();
    output_.line("File " + shownText(std::string_view(file.path())) + ": version " +
                 std::to_string(reader.version) + ", resolution " +
                 std::to_string(reader.resolution) + ", " +
                 (file.context().doubleByteText ? "two bytes" : "one byte") +
                 " a character, label \"" + shownText(reader.fileLabel.view()) + "\"");
    output_.line("Dates " + valueText(reader.firstDate.value) + " status " +
                 std::to_string(reader.firstDate.status) + ", " +
                 valueText(reader.secondDate.value) + " status " +
                 std::to_string(reader.secondDate.status));
    output_.line("Bytes: header 0 to 16, tables to " + std::to_string(reader.tablesEnd) +
                 ", index " + std::to_string(reader.indexPosition) + " to " +
                 std::to_string(reader.indexEnd));
  }

  void object(i32 objectType, i32 index, const DrawStatic& object) override {
    line_ = "Object " + std::to_string(objectType) + "/" + std::to_string(index);
    writeFields(object);
  }

  void customer(i32 index, const CustomerRecord& customer) override {
    output_.line("Customer " + std::to_string(i64{index} + 1) + " \"" +
                 shownText(customer.id.view()) + "\" leadValue " +
                 std::to_string(customer.leadValue) + " pageCount " +
                 std::to_string(customer.pageCount));
  }

  void page(i32, i32 index, const PageRecord& page) override {
    output_.line(
        "  Page " + std::to_string(i64{index} + 1) + " \"" + shownText(page.name.text().view()) +
        "\" leadValue " + std::to_string(page.leadValue) + " filePosition " +
        std::to_string(page.filePosition) + " tailValue " + std::to_string(page.tailValue));
  }

  void body(const CompareContext& page, i64 end) override {
    output_.line("    Body " + std::to_string(page.cachedPagePosition) + " to " +
                 (end < 0 ? "damage" : std::to_string(end)) + " pageExtentA " +
                 std::to_string(page.pageExtentA) + " pageExtentB " +
                 std::to_string(page.pageExtentB) + " staticCount " +
                 std::to_string(page.staticCount));
    list("page", page.pageList);
    for (i32 i = 0; i < page.staticCount; ++i) {
      const auto at = static_cast<std::size_t>(i);
      list("placed " + std::to_string(i) + " at (" + std::to_string(page.staticPlacementX[at]) +
               ", " + std::to_string(page.staticPlacementY[at]) + ")",
           page.staticList(i));
    }
  }

  void damage(const std::string& what) override { output_.line("    " + what); }

 protected:
  void listHead(const std::string& name, const DrawList& list) override {
    line_ = "    List " + name;
    writeFields(list);
  }

  void part(const std::string&, i32 index, const DrawPart& part) override {
    line_ = "      ";
    line_ += std::to_string(index);
    line_ += ' ';
    line_ += typeName(part.type);
    writeFields(part);
  }

 private:
  void writeFields(const auto& object) {
    LineVisitor visitor(line_);
    forEachField(object, visitor);
    output_.line(line_);
  }

  std::string line_;
};

}  // namespace

void DumpWriter::list(const std::string& name, const DrawList& list) {
  listHead(name, list);
  i32 index = 0;
  for (const DrawPart& item : list.parts()) {
    part(name, index++, item);
  }
}

std::unique_ptr<DumpWriter> makeTextDumpWriter(Output& output) {
  return std::make_unique<TextDumpWriter>(output);
}

}  // namespace rvf::inspect
