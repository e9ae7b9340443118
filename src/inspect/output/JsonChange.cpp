#include "inspect/output/JsonChange.h"

#include "inspect/output/JsonRecords.h"
#include "inspect/output/ValueText.h"
#include "text/NativeText.h"

namespace rvf::inspect {

namespace {

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

void addExample(JsonLine& json, const GroupExample& example) {
  json.open();
  addIndex(json, "customer", example.place.customer);
  addIndex(json, "first", example.place.first);
  addIndex(json, "second", example.place.second);
  if (example.field) {
    json.name("field");
    addFieldChange(json, *example.field);
  }
  if (!example.text.empty()) {
    json.field("text", std::u16string_view(example.text));
  }
  json.close();
}

}  // namespace

void addIndex(JsonLine& json, std::string_view name, i32 index) {
  json.name(name);
  index == kNone ? json.null() : json.value(index);
}

void addBox(JsonLine& json, std::string_view name, const std::optional<Box>& box) {
  if (box) {
    json.name(name).openList().value(box->left).value(box->top);
    json.value(box->right).value(box->bottom).closeList();
  }
}

JsonLine& addFile(JsonLine& json, const CaptureFile& file) {
  json.field("path", fromNative(file.path()).view());
  json.field("label", file.reader().fileLabel.view());
  json.field("resolution", file.reader().resolution);
  return json.field("customers", file.customerCount()).field("pages", file.reader().pageCount);
}

void addChange(JsonLine& json, const Change& change) {
  json.field("kind", nameOf(change.kind)).field("type", std::string_view(change.type));
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
}

void addGroup(JsonLine& json, const ChangeGroup& group) {
  json.field("id", std::string_view(idText(group.id)));
  json.field("kind", std::string_view(group.key.kind));
  json.field("type", std::string_view(group.key.type)).name("fields").openList();
  for (const std::string& field : group.key.fields) {
    json.value(std::string_view(field));
  }
  json.closeList();
  addIndex(json, "page", group.key.page);
  json.field("list", std::string_view(group.key.list));
  if (group.key.place) {
    addPlace(json, "place", *group.key.place);
  }
  if (group.key.distance) {
    addPlace(json, "distance", *group.key.distance);
  }
  json.field("pages", group.pages).field("customers", group.customers);
  json.field("pairs", group.pairs).field("allPairs", group.hasAllPairs);
  addRule(json, group.ignoredBy);
  json.name("examples").openList();
  for (const GroupExample& example : group.examples) {
    addExample(json, example);
  }
  json.closeList();
}

void addSummary(JsonLine& json, const Summary& summary, const ChangeGroups& groups) {
  addBits(json, summary.bits).field("pagesCompared", summary.pagesCompared);
  json.field("pagesDiffering", summary.pagesDiffering).field("pagesAdded", summary.pagesAdded);
  json.field("pagesRemoved", summary.pagesRemoved);
  json.field("customersAdded", summary.customersAdded);
  json.field("customersRemoved", summary.customersRemoved);
  json.field("groups", groups.count()).field("changes", summary.changes);
  json.field("accepted", summary.changesAccepted).name("ignored").open();
  for (const auto& [rule, count] : summary.ignored) {
    json.field(rule, count);
  }
  json.close().name("smallestPositionTolerance");
  summary.smallestPositionTolerance ? json.value(*summary.smallestPositionTolerance) : json.null();
  json.field("smallestLineTolerance", summary.smallestLineTolerance);
  json.field("changesNotGrouped", groups.changesLeftOut());
  json.field("complete", summary.isComplete());
}

void addVerdict(JsonLine& json, const PageVerdict& verdict) {
  addBits(json, verdict.bits).name("why").openList();
  for (const VerdictReason& reason : verdict.why) {
    json.open().field("bits", reason.bits).field("by", reason.by);
    json.field("list", std::string_view(reason.list));
    addIndex(json, "first", reason.first);
    addIndex(json, "second", reason.second);
    json.close();
  }
  json.closeList();
}

}  // namespace rvf::inspect
