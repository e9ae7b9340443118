#include "inspect/output/ReportPages.h"

#include <algorithm>
#include <cstdio>
#include <optional>
#include <utility>

#include "inspect/output/JsonChange.h"
#include "inspect/output/JsonRecords.h"
#include "inspect/output/ListPlaces.h"

namespace rvf::inspect {

struct ReportPages::Side {
  i32 customer = kNone;
  i32 page = kNone;
  const PageRecord* record = nullptr;
  std::optional<ListPlaces> places;
  SplitDrawing drawing;
};

struct ReportPages::Writing {
  i32 customer = kNone;
  const eString* id = nullptr;
  Side first{};
  Side second{};
  std::vector<Change> changes{};
  const PageVerdict* verdict = nullptr;
  JsonLine json{};
  std::set<u64> groups{};
  std::size_t written = 0;
  std::size_t leftOut = 0;
};

namespace {

std::string fileName(const char* folder, std::size_t number) {
  char name[40];
  std::snprintf(name, sizeof name, "%s/%05zu.js", folder, number);
  return name;
}

// Content from a file is only data: a string or JSON, never script code.
std::string asScript(const JsonLine& json) { return "rvfReport.receive(" + json.text() + ");\n"; }

/// The customer that a page record belongs to.
i32 customerOf(const CaptureFile& file, const PageRecord* record) {
  for (i32 c = 0; c < file.customerCount(); ++c) {
    const auto& pages = file.customer(c).pages;
    if (record >= pages.data() && record < pages.data() + pages.size()) {
      return c;
    }
  }
  return kNone;
}

void addOutlines(JsonLine& json, const char* name, const std::vector<Box>& boxes) {
  json.name(name).openList();
  for (const Box& box : boxes) {
    json.openList().value(box.left).value(box.top).value(box.right).value(box.bottom).closeList();
  }
  json.closeList();
}

std::vector<Box> outlinesOf(const std::optional<ListPlaces>& places, const std::string& list,
                            const std::optional<Box>& box) {
  return places && box ? places->onPage(list, *box) : std::vector<Box>();
}

/// The space of a whole list.
std::vector<Box> spaceOf(const std::optional<ListPlaces>& places, const std::string& list) {
  return places ? places->onPage(list) : std::vector<Box>();
}

/// A page is in only one pair, whatever it is paired with, so one side identifies the pair.
PagePlace withOneSide(const PagePlace& place) {
  return place.first == kNone ? place : PagePlace{place.customer, place.first, kNone};
}

void addRecord(JsonLine& json, const char* index, const char* name, i32 page,
               const PageRecord* record) {
  addIndex(json, index, page);
  if (record != nullptr) {
    json.field(name, record->name.text().view());
  }
}

}  // namespace

ReportPages::ReportPages(CaptureFile& first, CaptureFile& second,
                         const std::vector<PagePlace>& chosen,
                         const std::vector<ObjectChanges>& objects, ReportFolder& folder,
                         Drawer drawer)
    : first_(first),
      second_(second),
      objects_(objects),
      folder_(folder),
      drawer_(std::move(drawer)),
      shared_([this](i32 number, const std::string& content) {
        JsonLine json;
        json.open().field("stored", number).field("content", std::string_view(content)).close();
        folder_.write(fileName("stored", static_cast<std::size_t>(number)), asScript(json));
      }) {
  for (const PagePlace& place : chosen) {
    chosen_.insert(withOneSide(place));
  }
}

ReportPages::~ReportPages() = default;

bool ReportPages::isChosen(const PagePlace& place) const {
  return chosen_.contains(withOneSide(place)) ||
         (place.second != kNone && chosen_.contains({place.customer, kNone, place.second}));
}

void ReportPages::verdict(const PageAddress& address, const PageVerdict& verdict) {
  verdictAddress_ = address;
  verdict_ = verdict;
}

// For a customer that only one file has, the first page is drawn.
void ReportPages::customer(const Change& change, i32 customer, const eString& id) {
  const bool isAdded = change.kind == ChangeKind::kAdded;
  CaptureFile& file = isAdded ? second_ : first_;
  if ((!isAdded && change.kind != ChangeKind::kRemoved) || !isChosen({customer, kNone, kNone}) ||
      file.customer(customer).pages.empty()) {
    return;
  }
  Writing page{.customer = customer, .id = &id, .changes = {change}};
  Side& side = isAdded ? page.second : page.first;
  side.customer = customer;
  side.page = 0;
  side.record = &file.page(customer, 0);
  write(page);
}

void ReportPages::page(const PageResult& result) {
  const PageAddress& address = result.address;
  if (!isChosen({address.customer, address.first, address.second})) {
    return;
  }
  if (result.isFirst) {
    page_ = std::make_unique<Writing>(beginningOf(result));
  }
  const i32 number = address.first != kNone ? address.first : address.second;
  for (const Change& change : result.changes) {
    if (page_->changes.size() < kMostChanges) {
      page_->changes.push_back(change);
    } else {
      page_->groups.insert(ChangeGroups::keyOf(change, number).id());
      page_->leftOut += 1;
    }
  }
  if (result.isLast) {
    write(*page_);
    page_.reset();
  }
}

ReportPages::Writing ReportPages::beginningOf(const PageResult& result) const {
  const PageAddress& address = result.address;
  const bool isJudged = address.first != kNone && result.verdictBits != 0 &&
                        verdictAddress_.customer == address.customer &&
                        verdictAddress_.first == address.first;
  Writing page{
      .customer = address.customer, .id = address.id, .verdict = isJudged ? &verdict_ : nullptr};
  if (result.firstRecord != nullptr) {
    page.first = {address.customer, address.first, result.firstRecord, {}, {}};
  }
  if (result.secondRecord != nullptr) {
    page.second = {
        customerOf(second_, result.secondRecord), address.second, result.secondRecord, {}, {}};
  }
  return page;
}

void ReportPages::write(Writing& page) {
  JsonLine& json = page.json;
  const std::size_t number = drawn_.entries.size();
  const auto addPlace = [&page, number](JsonLine& target) {
    target.field("page", number).field("customer", page.customer).field("id", page.id->view());
    addRecord(target, "first", "firstName", page.first.page, page.first.record);
    addRecord(target, "second", "secondName", page.second.page, page.second.record);
  };
  addPlace(json.open());
  draw(page, first_, page.first.customer, page.first);
  draw(page, second_, page.second.customer, page.second);
  json.field("firstDrawing", std::string_view(page.first.drawing.svg));
  json.field("secondDrawing", std::string_view(page.second.drawing.svg)).name("stored").openList();
  std::set<i32> stored;
  for (const Side* side : {&page.first, &page.second}) {
    stored.insert(side->drawing.stored.begin(), side->drawing.stored.end());
  }
  for (const i32 part : stored) {
    json.value(part);
  }
  json.closeList();
  if (page.verdict != nullptr) {
    addVerdict(json, *page.verdict);
  } else {
    addBits(json, 0);
  }
  addChanges(page);
  json.field("changesLeftOut", page.leftOut).close();
  folder_.write(fileName("pages", number), asScript(json));

  JsonLine entry;
  addPlace(entry.open());
  addBits(entry, page.verdict != nullptr ? page.verdict->bits : 0);
  entry.field("changes", page.written + page.leftOut);
  entry.field("view",
              std::string_view(page.first.drawing.viewBox.empty() ? page.second.drawing.viewBox
                                                                  : page.first.drawing.viewBox));
  drawn_.entries.push_back(entry.close().text());
  for (const u64 group : page.groups) {
    drawn_.ofGroups[group].push_back(static_cast<i32>(number));
  }
}

void ReportPages::draw(Writing&, CaptureFile& file, i32 customer, Side& side) {
  if (side.record == nullptr || customer == kNone) {
    return;
  }
  file.loadPage(customer, side.page);
  side.places.emplace(file.context());
  side.drawing = shared_.split(drawer_(file.context()));
}

void ReportPages::addChanges(Writing& page) {
  page.json.name("changes").openList();
  const i32 number = page.first.page != kNone ? page.first.page : page.second.page;
  for (const Change& change : page.changes) {
    const bool isCustomer = change.type == "CUSTOMER";
    const u64 group = ChangeGroups::keyOf(change, isCustomer ? kNone : number).id();
    addOne(page, change, group, outlinesOf(page.first.places, change.list, change.firstBox),
           outlinesOf(page.second.places, change.list, change.secondBox));
  }
  addSharedChanges(page);
  page.json.closeList();
}

// A changed shared object is shown on every page that refers to it.
void ReportPages::addSharedChanges(Writing& page) {
  for (const ObjectChanges& object : objects_) {
    for (const Change& change : object.changes) {
      const ObjectList list =
          change.list.ends_with("/second") ? ObjectList::kSecond : ObjectList::kFirst;
      const std::string firstList = objectListName(object.objectType, object.first, list);
      const std::string secondList = objectListName(object.objectType, object.second, list);
      const bool isThere = (page.first.places && page.first.places->has(firstList)) ||
                           (page.second.places && page.second.places->has(secondList));
      if (!isThere) {
        continue;
      }
      const bool isWhole = change.type == "OBJECT";
      addOne(page, change, ChangeGroups::keyOf(change, kNone).id(),
             isWhole ? spaceOf(page.first.places, firstList)
                     : outlinesOf(page.first.places, firstList, change.firstBox),
             isWhole ? spaceOf(page.second.places, secondList)
                     : outlinesOf(page.second.places, secondList, change.secondBox));
    }
  }
}

void ReportPages::addOne(Writing& page, const Change& change, u64 group,
                         const std::vector<Box>& first, const std::vector<Box>& second) {
  page.groups.insert(group);
  if (page.written == kMostChanges) {
    page.leftOut += 1;
    return;
  }
  page.written += 1;
  page.json.open().field("group", std::string_view(idText(group)));
  addChange(page.json, change);
  addOutlines(page.json, "firstOutlines", first);
  addOutlines(page.json, "secondOutlines", second);
  page.json.close();
  if (!first.empty() || !second.empty()) {
    const bool isSecond = !second.empty();
    drawn_.places.emplace(group, DrawnPlace{static_cast<i32>(drawn_.entries.size()), isSecond,
                                            isSecond ? second.front() : first.front()});
  }
}

}  // namespace rvf::inspect
