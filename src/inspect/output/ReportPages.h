#pragma once

#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

#include "inspect/model/Inspection.h"
#include "inspect/output/JsonLine.h"
#include "inspect/output/ReportFolder.h"
#include "inspect/output/ReportPlan.h"
#include "inspect/output/SharedDrawings.h"

namespace rvf::inspect {

/// Where a drawing shows a change.
struct DrawnPlace {
  i32 page = 0;  // index of the entry
  bool isSecond = false;
  Box box;
};

/// What the overview needs from the drawn pages.
struct DrawnPages {
  std::vector<std::string> entries;                    // as JSON, one per page
  std::unordered_map<u64, std::vector<i32>> ofGroups;  // indexes of entries
  std::unordered_map<u64, DrawnPlace> places;          // of groups, on the first page that has one
};

/// Writes the data files of chosen pages when an inspection reaches them: both drawings and every
/// change. Afterwards, the files have other pages in memory.
class ReportPages final : public InspectionListener {
 public:
  /// Draws the page that a context holds, as SVG.
  using Drawer = std::function<std::string(const CompareContext& page)>;
  static constexpr std::size_t kMostChanges = 2000;  // of one page; more are counted

  ReportPages(CaptureFile& first, CaptureFile& second, const std::vector<PagePlace>& chosen,
              const std::vector<ObjectChanges>& objects, ReportFolder& folder, Drawer drawer);
  ~ReportPages() override;

  [[nodiscard]] const DrawnPages& drawn() const { return drawn_; }

  void begin(const CaptureFile&, const CaptureFile&, const InspectionSettings&) override {}
  void file(const Change&) override {}
  void customer(const Change& change, i32 customer, const eString& id) override;
  void verdict(const PageAddress& address, const PageVerdict& verdict) override;
  void page(const PageResult& result) override;
  void object(const ObjectChanges&) override {}
  void damage(const Damage&) override {}
  void end(const Summary&, const ChangeGroups&) override {}

 private:
  /// A page of one file while it is being written.
  struct Side;
  struct Writing;

  [[nodiscard]] bool isChosen(const PagePlace& place) const;
  [[nodiscard]] Writing beginningOf(const PageResult& result) const;
  void write(Writing& page);
  void draw(Writing& page, CaptureFile& file, i32 customer, Side& side);
  void addChanges(Writing& page);
  void addSharedChanges(Writing& page);
  void addOne(Writing& page, const Change& change, u64 group, const std::vector<Box>& first,
              const std::vector<Box>& second);

  CaptureFile& first_;
  CaptureFile& second_;
  std::set<PagePlace> chosen_;
  const std::vector<ObjectChanges>& objects_;
  ReportFolder& folder_;
  Drawer drawer_;
  SharedDrawings shared_;
  PageAddress verdictAddress_;
  PageVerdict verdict_;
  DrawnPages drawn_;
  std::unique_ptr<Writing> page_;  // the one that is being told
};

}  // namespace rvf::inspect
