#pragma once

#include <string>
#include <vector>

#include "inspect/model/DifferenceFileReader.h"
#include "inspect/model/Inspection.h"

namespace rvf::inspect {

/// The bits in a difference file, and what it says about its inputs.
struct JudgedPages : DifferenceVisitor {
  void header(const DifferenceHeader& fileHeader) override { header_ = fileHeader; }
  void customer(const DifferenceCustomer&) override { customers.emplace_back(); }
  void page(i32, DiffFlags bits) override { customers.back().push_back(bits); }

  DifferenceHeader header_;
  std::vector<std::vector<DiffFlags>> customers;
};

/// Passes everything on, and compares the bits of the pages with those in a difference file.
class VerdictCheck final : public InspectionListener {
 public:
  using AtEnd = std::function<void(const Summary&, const ChangeGroups&)>;
  using AtProgress = std::function<void(i32 done, i32 all)>;

  VerdictCheck(JudgedPages expected, InspectionListener& next, AtEnd atEnd, AtProgress atProgress)
      : expected_(std::move(expected)),
        next_(next),
        atEnd_(std::move(atEnd)),
        atProgress_(std::move(atProgress)) {}

  /// Empty if the bits are the same; otherwise the first page where they differ.
  [[nodiscard]] std::string mismatch() const { return mismatch_; }

  void begin(const CaptureFile& first, const CaptureFile& second,
             const InspectionSettings& settings) override {
    next_.begin(first, second, settings);
  }
  void file(const Change& change) override { next_.file(change); }
  void customer(const Change& change, i32 customer, const eString& id) override {
    next_.customer(change, customer, id);
  }
  void verdict(const PageAddress& address, const PageVerdict& verdict) override;
  void page(const PageResult& result) override { next_.page(result); }
  void object(const ObjectChanges& object) override { next_.object(object); }
  void damage(const Damage& damage) override { next_.damage(damage); }
  void end(const Summary& summary, const ChangeGroups& groups) override;
  void progress(i32 done, i32 all) override { atProgress_(done, all); }

 private:
  void note(std::size_t customer, std::size_t page, DiffFlags stored, DiffFlags found);

  JudgedPages expected_;
  InspectionListener& next_;
  AtEnd atEnd_;
  AtProgress atProgress_;
  std::string mismatch_;
};

}  // namespace rvf::inspect
