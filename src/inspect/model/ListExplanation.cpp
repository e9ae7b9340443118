#include "inspect/model/ListExplanation.h"

#include <algorithm>
#include <utility>

#include "inspect/model/ChangeReasons.h"
#include "pagemodel/FieldVisitor.h"
#include "pagemodel/TextParts.h"

namespace rvf::inspect {

namespace {

/// Keeps the first text that is shown, up to a length that fits on a line.
class FirstTextVisitor final : public FieldVisitor {
 public:
  static constexpr std::size_t kMostCharacters = 200;

  void number(std::string_view, i64) override {}
  void colour(std::string_view, u32) override {}
  void floating(std::string_view, f64) override {}
  void text(std::string_view, std::u16string_view value) override {
    if (found.empty()) {
      found = value.substr(0, kMostCharacters);
    }
  }
  void bytes(std::string_view, std::span<const std::byte>) override {}
  void enter(std::string_view, i32) override {}
  void leave() override {}

  std::u16string found;
};

Change changeOfPair(const DigestedList& first, const DigestedList& second, const PartPair& pair,
                    const std::string& list, ChildListResults& childLists) {
  const DrawPart& a = first.list[pair.first];
  const DrawPart& b = second.list[pair.second];
  Change change;
  change.kind = pair.kind;
  change.type = typeName(a.type);
  change.list = list;
  change.first = pair.first;
  change.second = pair.second;
  change.text = textOf(a);
  change.firstBox = boxOf(a);
  change.secondBox = boxOf(b);
  // An equal part elsewhere in the list is always found, so only its order differs.
  if (pair.kind != ChangeKind::kOrder) {
    const bool isSwapped = first.list.count > second.list.count;
    change.ignoredBy = ignoringRule(isSwapped ? b : a, isSwapped ? a : b, childLists);
  }
  if (pair.kind == ChangeKind::kMoved) {
    const Place from = placeOf(a).value_or(Place());
    const Place to = placeOf(b).value_or(Place());
    change.distance = {to.x - from.x, to.y - from.y};
  } else if (pair.kind == ChangeKind::kChanged) {
    setFields(change, changesOfFields(a, b));
  }
  return change;
}

/// A part that only one side has, with all its fields.
Change onlyOnOneSide(ChangeKind kind, const DrawList& parts, i32 index, const std::string& list) {
  const DrawPart& part = parts[index];
  const bool isAdded = kind == ChangeKind::kAdded;
  Change change;
  change.kind = kind;
  change.type = typeName(part.type);
  change.list = list;
  change.text = textOf(part);
  std::vector<FieldChange> fields;
  for (Field& field : fieldsOf(part)) {
    fields.push_back({std::move(field.name), std::move(field.value), {}});
    if (isAdded) {
      std::swap(fields.back().from, fields.back().to);
    }
  }
  setFields(change, std::move(fields));
  (isAdded ? change.second : change.first) = index;
  (isAdded ? change.secondBox : change.firstBox) = boxOf(part);
  return change;
}

}  // namespace

std::string typeName(PartType type) {
  if (!isKnownPartType(type)) {
    return "TYPE " + std::to_string(partIndex(type));
  }
  const std::u16string_view name = kPartTypeNames[partIndex(type)];
  return {name.begin(), name.end()};
}

std::u16string textOf(const DrawPart& part) {
  if (part.type == PartType::kText) {
    const std::span<const char16_t> text = textCharacters(part);
    const std::size_t shown = std::min(text.size(), FirstTextVisitor::kMostCharacters);
    return {text.begin(), text.begin() + static_cast<std::ptrdiff_t>(shown)};
  }
  FirstTextVisitor visitor;
  forEachField(part, visitor);
  return std::move(visitor.found);
}

std::vector<FieldChange> changesOfList(const DrawList& first, const DrawList& second) {
  std::vector<FieldChange> changes = changesOfFields(first, second);
  std::erase_if(changes, [](const FieldChange& field) { return field.name == "count"; });
  return changes;
}

std::vector<Field> fieldsOfList(const DrawList& list) {
  std::vector<Field> fields = fieldsOf(list);
  std::erase_if(fields, [](const Field& field) { return field.name == "count"; });
  return fields;
}

void explainParts(const DigestedList& first, const DigestedList& second, const std::string& list,
                  ChildListResults& childLists, ChangeStream& changes) {
  if (std::ranges::equal(first.digests, second.digests)) {
    return;
  }
  const std::vector<PartPair> pairs = pairParts(first, second);
  changes.expect(pairs.size());
  for (const PartPair& pair : pairs) {
    if (pair.first == kNone) {
      changes.add(onlyOnOneSide(ChangeKind::kAdded, second.list, pair.second, list));
    } else if (pair.second == kNone) {
      changes.add(onlyOnOneSide(ChangeKind::kRemoved, first.list, pair.first, list));
    } else {
      changes.add(changeOfPair(first, second, pair, list, childLists));
    }
  }
}

void explainFields(std::vector<FieldChange> fields, const std::string& type,
                   const std::string& list, std::string_view ignoredBy, ChangeStream& changes,
                   const IndexesOfChange& indexes) {
  if (fields.empty()) {
    return;
  }
  Change change;
  change.type = type;
  change.list = list;
  change.first = indexes.first;
  change.second = indexes.second;
  change.ignoredBy = ignoredBy;
  setFields(change, std::move(fields));
  changes.add(std::move(change));
}

}  // namespace rvf::inspect
