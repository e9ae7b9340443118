#pragma once

#include <algorithm>
#include <string>

#include "inspect/model/FileBytes.h"
#include "inspect/model/VerdictCheck.h"
#include "support/Fuzz.h"

namespace rvf::fuzz {

/// Reads and counts everything that an inspection reports.
struct Explanation final : inspect::InspectionListener {
  void begin(const inspect::CaptureFile&, const inspect::CaptureFile&,
             const inspect::InspectionSettings&) override {}
  void file(const inspect::Change& change) override { examine(change); }
  void customer(const inspect::Change& change, i32, const eString&) override { examine(change); }
  void verdict(const inspect::PageAddress&, const inspect::PageVerdict& verdict) override {
    DiffFlags explained = 0;
    for (const inspect::VerdictReason& reason : verdict.why) explained |= reason.bits;
    require(verdict.bits != 0 && explained == verdict.bits, "every bit of a page has a reason");
    told += 1;
  }
  void page(const inspect::PageResult& result) override {
    require(result.firstRecord != nullptr || result.secondRecord != nullptr,
            "a page is in one of the files");
    for (const inspect::Change& change : result.changes) examine(change);
  }
  void object(const inspect::ObjectChanges& object) override {
    require(!object.changes.empty(), "an object that is told has changed");
    for (const inspect::Change& change : object.changes) examine(change);
  }
  void damage(const inspect::Damage& damage) override {
    require(!damage.what.empty(), "damage is told in words");
    told += 1;
  }
  void end(const inspect::Summary& summary, const inspect::ChangeGroups&) override {
    bits = summary.bits;
  }

  i64 told = 0;
  DiffFlags bits = 0;

 private:
  void examine(const inspect::Change& change) {
    using enum inspect::ChangeKind;
    require(!change.type.empty(), "a change is one of something");
    require(change.kind != kChanged || !change.fields.empty(), "a changed part has changed fields");
    require(change.kind != kMoved || change.distance != inspect::Place(),
            "what moved is elsewhere");
    for (const inspect::FieldChange& field : change.fields) {
      // By digests, to which 0 and -0 are different numbers.
      require(change.kind != kChanged || digestOf(field.from) != digestOf(field.to),
              "a changed field differs");
    }
    told += 1;
  }
};

/// The bits in a difference file, which may be incomplete.
inline inspect::JudgedPages judgedPages(std::string_view bytes) {
  InputFile input(bytes);
  inspect::JudgedPages pages;
  static_cast<void>(readDifferenceFile(input.file, pages));
  return pages;
}

}  // namespace rvf::fuzz
