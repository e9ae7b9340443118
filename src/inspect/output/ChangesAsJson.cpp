#include "inspect/output/ChangesWriter.h"
#include "inspect/output/JsonChange.h"
#include "inspect/output/JsonRecords.h"
#include "text/NativeText.h"

namespace rvf::inspect {

namespace {

void addChanges(JsonLine& json, const std::vector<Change>& changes) {
  for (const Change& change : changes) {
    addChange(json.open(), change);
    json.close();
  }
}

class JsonChangesWriter final : public InspectionListener {
 public:
  JsonChangesWriter(Output& output, bool showsAllPages)
      : output_(output), showsAllPages_(showsAllPages) {}

  void begin(const CaptureFile& first, const CaptureFile& second,
             const InspectionSettings& settings) override {
    openRecord(json_, "run").field("format", kJsonFormat);
    addFile(json_.name("first").open(), first).close();
    addFile(json_.name("second").open(), second).close();
    json_.field("positionTolerance", settings.tolerances.positionTolerance);
    json_.field("lineTolerance", settings.tolerances.lineTolerance).close();
    writeRecord(output_, json_);
  }

  void file(const Change& change) override {
    openRecord(json_, "file").name("change");
    addChange(json_.open(), change);
    json_.close();
    finishRecord();
  }

  void customer(const Change& change, i32, const eString& id) override {
    openRecord(json_, "customer").field("id", id.view());
    addIndex(json_, "first", change.first);
    addIndex(json_, "second", change.second);
    if (change.first != kNone && change.second != kNone) {
      addChanges(json_.name("changes").openList(), {change});
      json_.closeList();
    }
    finishRecord();
  }

  void verdict(const PageAddress& address, const PageVerdict& verdict) override {
    openRecord(json_, "verdict")
        .field("customer", address.customer)
        .field("id", address.id->view());
    addVerdict(json_.field("page", address.first), verdict);
    finishRecord();
  }

  void page(const PageResult& page) override {
    if (page.isFirst && page.changes.empty() && !showsAllPages_) {
      return;
    }
    if (page.isFirst) {
      beginPage(page);
    }
    if (page.firstRecord != nullptr && page.secondRecord != nullptr) {
      addStretch(page.changes, page.isFirst, page.isLast);
    } else {
      finishRecord();
    }
  }

  void object(const ObjectChanges& object) override {
    if (object.isFirst) {
      beginObject(object);
    }
    addStretch(object.changes, object.isFirst, object.isLast);
  }

  void damage(const Damage& damage) override {
    openRecord(json_, "damage").field("path", fromNative(damage.path).view());
    json_.field("customer", damage.customer).field("id", damage.id.view());
    json_.field("page", damage.page).field("what", std::string_view(damage.what));
    finishRecord();
  }

  void end(const Summary& summary, const ChangeGroups& groups) override {
    const std::vector<const ChangeGroup*> sorted = groups.sorted();
    for (const ChangeGroup* group : sorted) {
      addGroup(openRecord(json_, "group"), *group);
      finishRecord();
    }
    openRecord(json_, "summary");
    addSummary(json_, summary, groups);
    finishRecord();
  }

 private:
  void beginPage(const PageResult& page) {
    openRecord(json_, "page").field("customer", page.address.customer);
    json_.field("id", page.address.id->view());
    addIndex(json_, "first", page.address.first);
    addIndex(json_, "second", page.address.second);
    if (page.firstRecord != nullptr) {
      json_.field("firstName", page.firstRecord->name.text().view());
    }
    if (page.secondRecord != nullptr) {
      json_.field("secondName", page.secondRecord->name.text().view());
    }
  }

  void beginObject(const ObjectChanges& object) {
    openRecord(json_, "object").field("objectType", object.objectType);
    json_.field("index", object.first != kNone ? object.first : object.second);
    addIndex(json_, "first", object.first);
    addIndex(json_, "second", object.second);
    json_.field("name", std::u16string_view(object.name)).name("pages").openList();
    json_.value(object.firstPages).value(object.secondPages).closeList();
  }

  // The last stretch of changes ends the record.
  void addStretch(const std::vector<Change>& changes, bool isFirst, bool isLast) {
    if (isFirst) {
      json_.name("changes").openList();
    }
    addChanges(json_, changes);
    if (isLast) {
      json_.closeList();
      finishRecord();
    } else {
      writeBeginning(output_, json_);
    }
  }

  void finishRecord() {
    json_.close();
    writeRecord(output_, json_);
  }

  Output& output_;
  bool showsAllPages_;
  JsonLine json_;
};

}  // namespace

std::unique_ptr<InspectionListener> makeJsonChangesWriter(Output& output, bool showsAllPages) {
  return std::make_unique<JsonChangesWriter>(output, showsAllPages);
}

}  // namespace rvf::inspect
