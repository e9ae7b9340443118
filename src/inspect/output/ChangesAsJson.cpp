#include "inspect/output/ChangesWriter.h"
#include "inspect/output/JsonRecords.h"
#include "inspect/output/ValueText.h"
#include "text/NativeText.h"

namespace rvf::inspect {

namespace {

void addIndex(JsonLine& json, const char* name, i32 index) {
  json.name(name);
  index == kNone ? json.null() : json.value(index);
}

void addBox(JsonLine& json, const char* name, const std::optional<Box>& box) {
  if (box) {
    json.name(name).openList().value(box->left).value(box->top);
    json.value(box->right).value(box->bottom).closeList();
  }
}

void addPlace(JsonLine& json, const char* name, const Place& place) {
  json.name(name).openList().value(place.x).value(place.y).closeList();
}

void addRule(JsonLine& json, std::string_view ignoredBy) {
  json.field("counts", ignoredBy.empty());
  if (!ignoredBy.empty()) {
    json.field("ignoredBy", ignoredBy);
  }
}

void addFieldChange(JsonLine& json, const FieldChange& field) {
  json.open().field("name", std::string_view(field.name)).name("from");
  addValue(json, field.from);
  json.name("to");
  addValue(json, field.to);
  json.close();
}

void addChange(JsonLine& json, const Change& change) {
  json.open().field("kind", nameOf(change.kind)).field("type", std::string_view(change.type));
  json.field("list", std::string_view(change.list));
  addIndex(json, "first", change.first);
  addIndex(json, "second", change.second);
  addRule(json, change.ignoredBy);
  if (!change.text.empty()) {
    json.field("text", std::u16string_view(change.text));
  }
  if (change.kind == ChangeKind::kMoved) {
    addPlace(json, "distance", change.distance);
  }
  if (!change.fields.empty()) {
    json.name("fields").openList();
    for (const FieldChange& field : change.fields) {
      addFieldChange(json, field);
    }
    json.closeList();
  }
  if (change.fieldsLeftOut > 0) {
    json.field("fieldsLeftOut", change.fieldsLeftOut);
  }
  addBox(json, "firstBox", change.firstBox);
  addBox(json, "secondBox", change.secondBox);
  json.close();
}

void addChanges(JsonLine& json, const std::vector<Change>& changes) {
  json.name("changes").openList();
  for (const Change& change : changes) {
    addChange(json, change);
  }
  json.closeList();
}

class JsonChangesWriter final : public InspectionListener {
 public:
  JsonChangesWriter(Output& output, bool showsAllPages)
      : output_(output), showsAllPages_(showsAllPages) {}

  void begin(const CaptureFile& first, const CaptureFile& second,
             const InspectionSettings& settings) override {
    openRecord(json_, "run").field("format", kJsonFormat);
    addFile("first", first);
    addFile("second", second);
    json_.field("positionTolerance", settings.tolerances.positionTolerance);
    json_.field("lineTolerance", settings.tolerances.lineTolerance).close();
    writeRecord(output_, json_);
  }

  void file(const Change& change) override {
    openRecord(json_, "file").name("change");
    addChange(json_, change);
    finishRecord();
  }

  void customer(const Change& change, i32, const eString& id) override {
    openRecord(json_, "customer").field("id", id.view());
    addIndex(json_, "first", change.first);
    addIndex(json_, "second", change.second);
    if (change.first != kNone && change.second != kNone) {
      addChanges(json_, {change});
    }
    finishRecord();
  }

  void verdict(const PageAddress& address, const PageVerdict& verdict) override {
    openRecord(json_, "verdict")
        .field("customer", address.customer)
        .field("id", address.id->view());
    addBits(json_.field("page", address.first), verdict.bits).name("why").openList();
    for (const VerdictReason& reason : verdict.why) {
      json_.open().field("bits", reason.bits).field("by", reason.by);
      json_.field("list", std::string_view(reason.list));
      addIndex(json_, "first", reason.first);
      addIndex(json_, "second", reason.second);
      json_.close();
    }
    json_.closeList();
    finishRecord();
  }

  void page(const PageResult& page) override {
    if (page.changes.empty() && !showsAllPages_) {
      return;
    }
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
    if (page.firstRecord != nullptr && page.secondRecord != nullptr) {
      addChanges(json_, page.changes);
    }
    finishRecord();
  }

  void object(const ObjectChanges& object) override {
    openRecord(json_, "object").field("objectType", object.objectType);
    json_.field("index", object.first != kNone ? object.first : object.second);
    addIndex(json_, "first", object.first);
    addIndex(json_, "second", object.second);
    json_.field("name", std::u16string_view(object.name)).name("pages").openList();
    json_.value(object.firstPages).value(object.secondPages).closeList();
    addChanges(json_, object.changes);
    finishRecord();
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
      writeGroup(*group);
    }
    openRecord(json_, "summary");
    addBits(json_, summary.bits).field("pagesCompared", summary.pagesCompared);
    json_.field("pagesDiffering", summary.pagesDiffering).field("pagesAdded", summary.pagesAdded);
    json_.field("pagesRemoved", summary.pagesRemoved);
    json_.field("customersAdded", summary.customersAdded);
    json_.field("customersRemoved", summary.customersRemoved);
    json_.field("groups", sorted.size()).field("changes", summary.changes);
    json_.field("accepted", summary.changesAccepted).name("ignored").open();
    for (const auto& [rule, count] : summary.ignored) {
      json_.field(rule, count);
    }
    json_.close().name("smallestPositionTolerance");
    summary.smallestPositionTolerance ? json_.value(*summary.smallestPositionTolerance)
                                      : json_.null();
    json_.field("smallestLineTolerance", summary.smallestLineTolerance);
    json_.field("changesNotGrouped", groups.changesLeftOut());
    json_.field("complete", summary.isComplete());
    finishRecord();
  }

 private:
  void addFile(const char* name, const CaptureFile& file) {
    json_.name(name).open().field("path", fromNative(file.path()).view());
    json_.field("label", file.reader().fileLabel.view());
    json_.field("resolution", file.reader().resolution);
    json_.field("customers", file.customerCount()).field("pages", file.reader().pageCount).close();
  }

  void writeGroup(const ChangeGroup& group) {
    openRecord(json_, "group").field("id", std::string_view(idText(group.id)));
    json_.field("kind", std::string_view(group.key.kind));
    json_.field("type", std::string_view(group.key.type)).name("fields").openList();
    for (const std::string& field : group.key.fields) {
      json_.value(std::string_view(field));
    }
    json_.closeList();
    addIndex(json_, "page", group.key.page);
    json_.field("list", std::string_view(group.key.list));
    if (group.key.place) {
      addPlace(json_, "place", *group.key.place);
    }
    if (group.key.distance) {
      addPlace(json_, "distance", *group.key.distance);
    }
    json_.field("pages", group.pages).field("customers", group.customers);
    json_.field("pairs", group.pairs).field("allPairs", group.hasAllPairs);
    addRule(json_, group.ignoredBy);
    json_.name("examples").openList();
    for (const GroupExample& example : group.examples) {
      json_.open();
      addIndex(json_, "customer", example.place.customer);
      addIndex(json_, "first", example.place.first);
      addIndex(json_, "second", example.place.second);
      if (example.field) {
        json_.name("field");
        addFieldChange(json_, *example.field);
      }
      if (!example.text.empty()) {
        json_.field("text", std::u16string_view(example.text));
      }
      json_.close();
    }
    json_.closeList();
    finishRecord();
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
