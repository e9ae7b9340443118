#include "inspect/output/ReportIndex.h"

#include <sys/stat.h>

#include <algorithm>
#include <iterator>
#include <map>

#include "inspect/output/JsonChange.h"
#include "inspect/output/JsonRecords.h"
#include "inspect/output/ReportAssets.h"
#include "inspect/output/ScriptData.h"
#include "inspect/output/ShownText.h"
#include "messages/MessageReporter.h"
#include "pagemodel/DrawPart.h"
#include "text/NativeText.h"

namespace rvf::inspect {

namespace {

// Number of pages that are drawn to show a shared object.
constexpr int kWantedUsers = 3;

void addFileOnDisk(JsonLine& json, const char* name, const CaptureFile& file) {
  addFile(json.name(name).open(), file);
  struct stat state {};
  if (::stat(file.path().c_str(), &state) == 0) {
    json.field("size", static_cast<i64>(state.st_size));
    json.field("time", static_cast<i64>(state.st_mtim.tv_sec));
  }
  json.close();
}

/// The customer with an id: in most files at the same index, otherwise the first one.
i32 partnerOf(const eString& id, i32 index, const CaptureFile& file) {
  const i32 count = file.customerCount();
  if (index < count && file.customer(index).id == id) {
    return index;
  }
  i32 c = 0;
  while (c < count && !(file.customer(c).id == id)) {
    c += 1;
  }
  return c < count ? c : kNone;
}

}  // namespace

void ReportIndex::begin(const CaptureFile&, const CaptureFile&,
                        const InspectionSettings& settings) {
  tolerances_ = settings.tolerances;
}

void ReportIndex::file(const Change& change) {
  addChange(fileChanges_.open(), change);
  fileChanges_.close();
}

void ReportIndex::customer(const Change& change, i32 customer, const eString&) {
  plan_.add(ChangeGroups::keyOf(change, kNone).id(), {customer, kNone, kNone});
}

void ReportIndex::page(const PageResult& result) {
  const PageAddress& address = result.address;
  if (lastCompared_ != address.customer) {
    lastCompared_ = address.customer;
    customersCompared_ += 1;
  }
  const i32 number = address.first != kNone ? address.first : address.second;
  bool counts = result.verdictBits != 0;
  for (const Change& change : result.changes) {
    counts = counts || change.counts();
    plan_.add(ChangeGroups::keyOf(change, number).id(),
              {address.customer, address.first, address.second});
  }
  pagesWithChanges_ += result.isFirst && !result.changes.empty() ? 1 : 0;
  if (counts && lastDiffering_ != address.customer) {
    lastDiffering_ = address.customer;
    customersDiffering_ += 1;
  }
}

void ReportIndex::object(const ObjectChanges& object) {
  const bool hasRoom = objects_.size() < kMostObjects && objectChanges_ < kMostObjectChanges;
  const bool isKept = hasRoom && (object.isFirst || keepsObject_);
  if (isKept) {
    objectChanges_ += object.changes.size();
    if (object.isFirst) {
      objects_.push_back(object);
    } else {
      std::ranges::copy(object.changes, std::back_inserter(objects_.back().changes));
    }
  }
  objectsLeftOut_ += !isKept && (object.isFirst || keepsObject_) ? 1 : 0;
  keepsObject_ = isKept;
}

void ReportIndex::damage(const Damage& damage) {
  damageCount_ += 1;
  if (damageCount_ > kMostDamages) {
    return;
  }
  damages_.open().field("path", fromNative(damage.path).view());
  damages_.field("customer", damage.customer).field("id", damage.id.view());
  damages_.field("page", damage.page).field("what", std::string_view(damage.what)).close();
}

void ReportIndex::end(const Summary& summary, const ChangeGroups& groups) {
  summary_ = summary;
  for (const ChangeGroup* group : groups.sorted()) {
    groups_.push_back(*group);
  }
  addSummary(summaryFields_.open(), summary, groups);
  summaryFields_.close();
}

std::vector<PagePlace> ReportIndex::choosePages(CaptureFile& first, CaptureFile& second,
                                                std::size_t maxPages) {
  if (maxPages > 0) {
    findUsers(first, &ObjectChanges::first, &ObjectChanges::firstPages, [](i32 c, i32 p) {
      return PagePlace{c, p, kNone};
    });
    findUsers(second, &ObjectChanges::second, &ObjectChanges::secondPages, [&](i32 c, i32 p) {
      return PagePlace{partnerOf(second.customer(c).id, c, first), kNone, p};
    });
  }
  std::vector<const ChangeGroup*> groups;
  for (const ChangeGroup& group : groups_) {
    groups.push_back(&group);
  }
  return plan_.choose(groups, maxPages);
}

void ReportIndex::findUsers(CaptureFile& file, i32 ObjectChanges::*index, i64 ObjectChanges::*pages,
                            const PlaceOf& placeOf) {
  struct Wanted {
    const ObjectChanges* object = nullptr;
    int users = 0;
  };
  std::map<std::pair<i32, i32>, Wanted> wanted;
  for (const ObjectChanges& object : objects_) {
    // For an object in both files, pages of the first are enough.
    const bool isServed = index == &ObjectChanges::second && object.firstPages > 0;
    if (object.*index != kNone && object.*pages > 0 && !isServed) {
      wanted[{object.objectType, object.*index}] = {&object, 0};
    }
  }
  for (i32 c = 0; c < file.customerCount() && !wanted.empty(); ++c) {
    for (i32 p = 0; p < static_cast<i32>(file.customer(c).pages.size()) && !wanted.empty(); ++p) {
      file.loadPage(c, p);
      ObjectUses uses;
      uses.addPage(file.context());
      for (auto& [key, want] : wanted) {
        if (uses.pagesUsing(key.first, key.second) == 0) {
          continue;
        }
        const PagePlace place = placeOf(c, p);
        for (const Change& change : want.object->changes) {
          plan_.add(ChangeGroups::keyOf(change, kNone).id(), place);
        }
        want.users += 1;
      }
      std::erase_if(wanted, [](const auto& entry) { return entry.second.users == kWantedUsers; });
    }
  }
  // The reader's messages were reported as damage when the pages were inspected.
  static_cast<void>(messageReporter.takePending());
}

std::string ReportIndex::html(const CaptureFile& first, const CaptureFile& second,
                              const DrawnPages& drawn) const {
  JsonLine json;
  json.open().field("format", kJsonFormat).field("redacted", redactsTexts);
  addFileOnDisk(json, "first", first);
  addFileOnDisk(json, "second", second);
  json.field("positionTolerance", tolerances_.positionTolerance);
  json.field("lineTolerance", tolerances_.lineTolerance);
  json.field("verdictEnd", std::string_view(summary_.verdictEnd));
  json.field("customersCompared", customersCompared_);
  json.field("customersDiffering", customersDiffering_);
  json.field("pagesWithChanges", pagesWithChanges_);
  json.field("damagedPages", damageCount_).field("objectsLeftOut", objectsLeftOut_);
  std::string text = json.text();
  text += ",\"summary\":" + summaryFields_.text() + ",\"damages\":[" + damages_.text() + "]";
  text += ",\"fileChanges\":[" + fileChanges_.text() + "]";
  text += ",\"pages\":[";
  for (const std::string& entry : drawn.entries) {
    text += (text.back() == '[' ? "" : ",") + entry;
  }
  JsonLine groups;
  addGroups(groups.open(), first, drawn);
  text += "],\"list\":" + groups.close().text() + "}";
  return std::string(kReportHead) + inScriptElement(text) + std::string(kReportTail);
}

void ReportIndex::addGroups(JsonLine& json, const CaptureFile& first,
                            const DrawnPages& drawn) const {
  std::map<i32, std::size_t> customers;  // index of an id in the table that follows the groups
  json.name("groups").openList();
  for (const ChangeGroup& group : groups_) {
    addGroup(json.open(), group);
    if (const auto found = drawn.places.find(group.id); found != drawn.places.end()) {
      const DrawnPlace& place = found->second;
      json.name("picture").open().field("page", place.page);
      json.field("side", place.isSecond ? "second" : "first");
      addBox(json, "box", place.box);
      json.close();
    }
    json.name("drawn").openList();
    if (const auto pages = drawn.ofGroups.find(group.id); pages != drawn.ofGroups.end()) {
      for (const i32 page : pages->second) {
        json.value(page);
      }
    }
    json.closeList().name("ids").openList();
    if (group.key.type != "CUSTOMER") {
      for (const i32 customer : plan_.customersOf(group.id)) {
        json.value(customers.emplace(customer, customers.size()).first->second);
      }
    }
    json.closeList().close();
  }
  json.closeList().name("customers").openList();
  std::vector<i32> inOrder(customers.size());
  for (const auto& [customer, at] : customers) {
    inOrder[at] = customer;
  }
  for (const i32 customer : inOrder) {
    json.value(first.customer(customer).id.view());
  }
  json.closeList();
}

}  // namespace rvf::inspect
