#pragma once

#include <map>
#include <string>
#include <vector>

#include "inspect/model/Inspection.h"
#include "support/Capture.h"
#include "support/TempFolder.h"
#include "text/NativeText.h"

namespace rvf::test {

/// What an inspection of two files reports, one line per change:
///   "0/1 0 changed TEXT text"     page of the first / second file, part, kind, type, fields
/// A change that a rule ignores is followed by " [rule]", and the part is preceded by its list
/// unless that is the page's.
class Inspected final : public inspect::InspectionListener {
 public:
  using Lines = std::vector<std::string>;

  Inspected(const std::string& first, const std::string& second,
            const inspect::InspectionSettings& settings = {}) {
    const TempFolder folder;
    inspect::CaptureFile a(folder.write("a.rvf", first), settings.oldText);
    inspect::CaptureFile b(folder.write("b.rvf", second), settings.oldText);
    inspectFiles(a, b, settings, *this);
  }

  Lines changes;
  std::map<std::string, DiffFlags> verdicts;  // by "customer/page"
  std::vector<std::string> reasons;           // of the last verdict
  Lines groups;
  i64 notGrouped = 0;
  Lines damages;
  inspect::Summary summary;

  void begin(const inspect::CaptureFile&, const inspect::CaptureFile&,
             const inspect::InspectionSettings&) override {}
  void file(const inspect::Change& change) override { add("file ", change); }
  void customer(const inspect::Change& change, i32, const eString& id) override {
    add("customer " + toNative(id.view()) + " ", change);
  }
  void verdict(const inspect::PageAddress& page, const inspect::PageVerdict& verdict) override {
    verdicts[std::to_string(page.customer) + "/" + std::to_string(page.first)] = verdict.bits;
    reasons.clear();
    for (const inspect::VerdictReason& reason : verdict.why) {
      reasons.push_back(std::to_string(reason.bits) + " " + std::string(reason.by) + " " +
                        reason.list + " " + std::to_string(reason.first) + " " +
                        std::to_string(reason.second));
    }
  }
  void page(const inspect::PageResult& page) override {
    for (const inspect::Change& change : page.changes) {
      add(number(page.address.first) + "/" + number(page.address.second) + " ", change);
    }
  }
  void object(const inspect::ObjectChanges& object) override {
    for (const inspect::Change& change : object.changes) {
      add("used " + std::to_string(object.firstPages) + "/" + std::to_string(object.secondPages) +
              " ",
          change);
    }
  }
  void damage(const inspect::Damage& damage) override {
    damages.push_back(number(damage.customer) + "/" + number(damage.page) + " " + damage.what);
  }
  void end(const inspect::Summary& totals, const inspect::ChangeGroups& found) override {
    summary = totals;
    notGrouped = found.changesLeftOut();
    for (const inspect::ChangeGroup* group : found.sorted()) {
      groups.push_back(group->key.kind + " " + group->key.type + " pages " +
                       std::to_string(group->pages) + " customers " +
                       std::to_string(group->customers) + " pairs " + std::to_string(group->pairs));
      if (!group->ignoredBy.empty()) groups.back() += " [" + std::string(group->ignoredBy) + "]";
    }
  }

 private:
  static std::string number(i32 index) { return index < 0 ? "-" : std::to_string(index); }

  void add(const std::string& where, const inspect::Change& change) {
    std::string line = where;
    if (!change.list.empty() && change.list != "page") line += change.list + " ";
    const i32 index = change.first >= 0 ? change.first : change.second;
    if (index >= 0) line += std::to_string(index) + " ";
    line += std::string(nameOf(change.kind)) + " " + change.type;
    if (change.kind == inspect::ChangeKind::kChanged) {
      for (const inspect::FieldChange& field : change.fields) line += " " + field.name;
    }
    if (change.kind == inspect::ChangeKind::kMoved) {
      line += " " + std::to_string(change.distance.x) + "," + std::to_string(change.distance.y);
    }
    if (!change.counts()) line += " [" + std::string(change.ignoredBy) + "]";
    changes.push_back(line);
  }
};

}  // namespace rvf::test
