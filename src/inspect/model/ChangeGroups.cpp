#include "inspect/model/ChangeGroups.h"

#include <algorithm>
#include <cstdio>

#include "inspect/model/Digest.h"

namespace rvf::inspect {

namespace {

// Only 48 bits of an id are shown.
constexpr u64 kIdMask = 0xFFFFFFFFFFFF;
constexpr std::size_t kMostExampleCharacters = 200;

void shorten(FieldValue& value) {
  if (auto* text = std::get_if<std::u16string>(&value)) {
    text->resize(std::min(text->size(), kMostExampleCharacters));
  }
}

}  // namespace

std::string idText(u64 id) {
  char text[16];
  std::snprintf(text, sizeof text, "%012llx", static_cast<unsigned long long>(id & kIdMask));
  return text;
}

u64 GroupKey::id() const {
  Digest digest = Digest::lasting();
  digest.addText(kind);
  digest.addText(type);
  digest.addText(list);
  for (const std::string& field : fields) {
    digest.addText(field);
  }
  digest.add(static_cast<u64>(page));
  for (const std::optional<Place>& point : {place, distance}) {
    digest.add(point.has_value());
    if (point) {
      digest.add(static_cast<u64>(point->x));
      digest.add(static_cast<u64>(point->y));
    }
  }
  return digest.value() & kIdMask;
}

GroupKey ChangeGroups::keyOf(const Change& change, i32 page) {
  GroupKey key;
  key.kind = nameOf(change.kind);
  key.type = change.type;
  key.list = change.list;
  key.page = page;
  if (change.kind == ChangeKind::kChanged) {
    for (const FieldChange& field : change.fields) {
      key.fields.push_back(withoutIndexes(field.name));
    }
    std::ranges::sort(key.fields);
    key.fields.erase(std::unique(key.fields.begin(), key.fields.end()), key.fields.end());
  }
  if (change.kind == ChangeKind::kMoved) {
    key.distance = change.distance;
  } else if (const std::optional<Box>& box = change.firstBox ? change.firstBox : change.secondBox) {
    key.place = Place{box->left, box->top};
  }
  return key;
}

ChangeGroups::Entry* ChangeGroups::entryFor(const Change& change, i32 page) {
  GroupKey key = keyOf(change, page);
  const u64 id = key.id();
  const auto found = groups_.find(id);
  if (found != groups_.end()) {
    return &found->second;
  }
  if (groups_.size() == kMostGroups) {
    changesLeftOut_ += 1;
    return nullptr;
  }
  Entry& entry = groups_[id];
  entry.group.id = id;
  entry.group.key = std::move(key);
  entry.group.ignoredBy = change.ignoredBy;
  return &entry;
}

void ChangeGroups::add(const Change& change, const ChangePlace& place) {
  Entry* entry = entryFor(change, place.first != kNone ? place.first : place.second);
  if (entry == nullptr) {
    return;
  }
  ChangeGroup& group = entry->group;
  const bool isSamePage = group.changes > 0 && entry->lastPlace.customer == place.customer &&
                          entry->lastPlace.first == place.first &&
                          entry->lastPlace.second == place.second;
  group.changes += 1;
  group.pages += isSamePage ? 0 : 1;
  group.customers += entry->lastCustomer == place.customer ? 0 : 1;
  entry->lastCustomer = place.customer;
  entry->lastPlace = {place.customer, {}, place.first, place.second};
  // A group counts if one of its changes does.
  group.ignoredBy = group.ignoredBy.empty() ? group.ignoredBy : change.ignoredBy;
  countPair(group, change);
  if (group.examples.size() < ChangeGroup::kMostExamples) {
    group.examples.push_back({place, change.text, std::nullopt});
    if (!change.fields.empty()) {
      FieldChange field = change.fields.front();
      shorten(field.from);
      shorten(field.to);
      group.examples.back().field = std::move(field);
    }
  }
}

void ChangeGroups::addForPages(const Change& change, i64 pages) {
  add(change, ChangePlace());
  if (Entry* entry = entryFor(change, kNone)) {
    entry->group.pages = std::max(entry->group.pages, pages);
  }
}

void ChangeGroups::countPair(ChangeGroup& group, const Change& change) {
  Digest digest;
  digest.add(group.id);
  digest.addText(change.kind == ChangeKind::kChanged ? std::u16string_view() : change.text);
  for (const FieldChange& field : change.fields) {
    digest.add(digestOf(field.from));
    digest.add(digestOf(field.to));
  }
  if (pairs_.size() < kMostPairs) {
    group.pairs += pairs_.insert(digest.value()) ? 1 : 0;
  } else if (!pairs_.contains(digest.value())) {
    group.hasAllPairs = false;
  }
}

std::vector<const ChangeGroup*> ChangeGroups::sorted() const {
  std::vector<const ChangeGroup*> result;
  for (const auto& [id, entry] : groups_) {
    result.push_back(&entry.group);
  }
  std::ranges::sort(result, [](const ChangeGroup* a, const ChangeGroup* b) {
    return std::tuple(-a->pages, a->key.page, a->id) < std::tuple(-b->pages, b->key.page, b->id);
  });
  return result;
}

}  // namespace rvf::inspect
