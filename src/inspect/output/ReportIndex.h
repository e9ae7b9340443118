#pragma once

#include <functional>
#include <string>
#include <vector>

#include "inspect/model/Inspection.h"
#include "inspect/output/JsonLine.h"
#include "inspect/output/ReportPages.h"
#include "inspect/output/ReportPlan.h"

namespace rvf::inspect {

/// Keeps the data of the overview and the list of groups, and writes them as the report's first
/// page.
class ReportIndex final : public InspectionListener {
 public:
  static constexpr std::size_t kMostDamages = 100;
  static constexpr std::size_t kMostObjects = 1000;
  static constexpr std::size_t kMostObjectChanges = 10000;  // of all objects together

  void begin(const CaptureFile& first, const CaptureFile& second,
             const InspectionSettings& settings) override;
  void file(const Change& change) override;
  void customer(const Change& change, i32 customer, const eString& id) override;
  void verdict(const PageAddress&, const PageVerdict&) override {}
  void page(const PageResult& result) override;
  void object(const ObjectChanges& object) override;
  void damage(const Damage& damage) override;
  void end(const Summary& summary, const ChangeGroups& groups) override;

  [[nodiscard]] const std::vector<ObjectChanges>& objects() const { return objects_; }
  [[nodiscard]] const Summary& summary() const { return summary_; }
  /// The pages to draw. The changes of a shared object are not in the list of any page, so pages
  /// that refer to it are looked for in both files.
  [[nodiscard]] std::vector<PagePlace> choosePages(CaptureFile& first, CaptureFile& second,
                                                   std::size_t maxPages);
  /// The whole page index.html.
  [[nodiscard]] std::string html(const CaptureFile& first, const CaptureFile& second,
                                 const DrawnPages& drawn) const;

 private:
  /// Adds to the plan some pages of a file that use objects; `placeOf` says where they are.
  using PlaceOf = std::function<PagePlace(i32 customer, i32 page)>;
  void findUsers(CaptureFile& file, i32 ObjectChanges::*index, i64 ObjectChanges::*pages,
                 const PlaceOf& placeOf);
  void addGroups(JsonLine& json, const CaptureFile& first, const DrawnPages& drawn) const;

  Tolerances tolerances_{};
  ReportPlan plan_;
  JsonLine fileChanges_;
  std::vector<ObjectChanges> objects_;
  std::size_t objectsLeftOut_ = 0;
  std::size_t objectChanges_ = 0;
  bool keepsObject_ = false;  // the one that is being told
  std::vector<ChangeGroup> groups_;
  Summary summary_;
  JsonLine summaryFields_;
  JsonLine damages_;
  std::size_t damageCount_ = 0;
  i64 customersCompared_ = 0;
  i64 customersDiffering_ = 0;
  i64 pagesWithChanges_ = 0;
  i32 lastCompared_ = kNone;
  i32 lastDiffering_ = kNone;
};

}  // namespace rvf::inspect
