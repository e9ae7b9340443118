#include "inspect/model/ListExplanation.h"
#include "inspect/output/DumpWriter.h"
#include "inspect/output/JsonRecords.h"
#include "inspect/output/ValueText.h"
#include "pagemodel/FieldVisitor.h"
#include "text/NativeText.h"

namespace rvf::inspect {

namespace {

/// Adds fields under their full names, as in changes.
class JsonVisitor final : public FieldVisitor {
 public:
  explicit JsonVisitor(JsonLine& json) : json_(json) {}

  void number(std::string_view name, i64 value) override { json_.field(full(name), value); }
  void floating(std::string_view name, f64 value) override { other(name, value); }
  void colour(std::string_view name, u32 packed) override { other(name, Colour{packed}); }
  void text(std::string_view name, std::u16string_view value) override {
    json_.field(full(name), value);
  }
  void bytes(std::string_view name, std::span<const std::byte> value) override {
    FieldCollector collector;
    collector.bytes(name, value);
    other(name, collector.take().front().value);
  }
  void enter(std::string_view name, i32 index) override {
    sizes_.push_back(prefix_.size());
    prefix_ += name;
    if (index != kSingle) {
      prefix_ += '[';
      prefix_ += std::to_string(index);
      prefix_ += ']';
    }
    prefix_ += '.';
  }
  void leave() override {
    prefix_.resize(sizes_.back());
    sizes_.pop_back();
  }

 private:
  std::string_view full(std::string_view name) {
    full_ = prefix_;
    full_ += name;
    if (name.empty()) {
      full_.pop_back();  // the dot, for an element that is a plain value
    }
    return full_;
  }
  void other(std::string_view name, const FieldValue& value) {
    json_.name(full(name));
    addValue(json_, value);
  }

  JsonLine& json_;
  std::string prefix_;
  std::string full_;
  std::vector<std::size_t> sizes_;
};

class JsonDumpWriter final : public DumpWriter {
 public:
  using DumpWriter::DumpWriter;

  void file(const CaptureFile& file) override {
    const RvfReader& reader = file.reader();
    openRecord(json_, "capture").field("format", kJsonFormat);
    json_.field("path", fromNative(file.path()).view()).field("version", reader.version);
    json_.field("resolution", reader.resolution).field("label", reader.fileLabel.view());
    json_.field("twoByteText", file.context().doubleByteText);
    json_.name("dates").openList();
    for (const StoredDate& date : {reader.firstDate, reader.secondDate}) {
      json_.open().name("value");
      addValue(json_, date.value);
      json_.field("status", date.status).close();
    }
    json_.closeList().field("tablesEnd", reader.tablesEnd);
    json_.field("index", reader.indexPosition).field("indexEnd", reader.indexEnd);
    finishRecord();
  }

  void object(i32 objectType, i32 index, const DrawStatic& object) override {
    place_.clear();
    openRecord(json_, "sharedObject").field("objectType", objectType).field("index", index);
    addFields(object);
  }

  void customer(i32 index, const CustomerRecord& customer) override {
    openRecord(json_, "customerEntry").field("customer", index).field("id", customer.id.view());
    json_.field("leadValue", customer.leadValue).field("pageCount", customer.pageCount);
    finishRecord();
  }

  void page(i32 customer, i32 index, const PageRecord& page) override {
    customer_ = customer;
    page_ = index;
    openRecord(json_, "pageEntry").field("customer", customer).field("page", index);
    json_.field("name", page.name.text().view()).field("leadValue", page.leadValue);
    json_.field("filePosition", page.filePosition).field("tailValue", page.tailValue);
    finishRecord();
  }

  void body(const CompareContext& page, i64 end) override {
    place_ = "page";
    openRecord(json_, "body").field("customer", customer_).field("page", page_);
    json_.field("offset", page.cachedPagePosition).name("end");
    end < 0 ? json_.null() : json_.value(end);
    json_.field("pageExtentA", page.pageExtentA).field("pageExtentB", page.pageExtentB);
    finishRecord();
    list("page", page.pageList);
    for (i32 i = 0; i < page.staticCount; ++i) {
      const auto at = static_cast<std::size_t>(i);
      placementX_ = page.staticPlacementX[at];
      placementY_ = page.staticPlacementY[at];
      list("placed " + std::to_string(i), page.staticList(i));
    }
  }

  void damage(const std::string& what) override {
    openRecord(json_, "damage").field("customer", customer_).field("page", page_);
    json_.field("what", std::string_view(what));
    finishRecord();
  }

 protected:
  void listHead(const std::string& name, const DrawList& list) override {
    openRecord(json_, "list");
    addPlace(name);
    if (name.starts_with("placed")) {
      json_.name("placement").openList().value(placementX_).value(placementY_).closeList();
    }
    addFields(list);
  }

  void part(const std::string& listName, i32 index, const DrawPart& part) override {
    openRecord(json_, "part");
    addPlace(listName);
    json_.field("index", index).field("type", std::string_view(typeName(part.type)));
    addFields(part);
  }

 private:
  void addPlace(const std::string& listName) {
    if (!place_.empty()) {
      json_.field("customer", customer_).field("page", page_);
    }
    json_.field("list", std::string_view(listName));
  }

  void addFields(const auto& object) {
    json_.name("fields").open();
    JsonVisitor visitor(json_);
    forEachField(object, visitor);
    json_.close();
    finishRecord();
  }

  void finishRecord() {
    json_.close();
    writeRecord(output_, json_);
  }

  JsonLine json_;
  std::string place_;  // "page" within a page
  i32 customer_ = 0;
  i32 page_ = 0;
  i32 placementX_ = 0;
  i32 placementY_ = 0;
};

}  // namespace

std::unique_ptr<DumpWriter> makeJsonDumpWriter(Output& output) {
  return std::make_unique<JsonDumpWriter>(output);
}

}  // namespace rvf::inspect
