#pragma once

#include <memory>

#include "inspect/model/CaptureCheck.h"
#include "inspect/output/Output.h"

namespace rvf::inspect {

/// Writes the findings for one file and their totals.
class CheckWriter : public FindingListener {
 public:
  CheckWriter(Output& output, const CaptureFile& file) : output_(output), file_(file) {}

  void finding(const Finding& finding) final {
    (finding.severity == Severity::kDamage ? damage_ : warnings_) += 1;
    write(finding);
  }
  virtual void end() = 0;

  [[nodiscard]] i64 damage() const { return damage_; }
  [[nodiscard]] i64 warnings() const { return warnings_; }

 protected:
  virtual void write(const Finding& finding) = 0;
  [[nodiscard]] const char* result() const {
    return damage_ > 0 ? "damaged" : warnings_ > 0 ? "warnings" : "sound";
  }

  Output& output_;
  const CaptureFile& file_;

 private:
  i64 damage_ = 0;
  i64 warnings_ = 0;
};

[[nodiscard]] std::unique_ptr<CheckWriter> makeTextCheckWriter(Output& output,
                                                               const CaptureFile& file);
[[nodiscard]] std::unique_ptr<CheckWriter> makeJsonCheckWriter(Output& output,
                                                               const CaptureFile& file);

}  // namespace rvf::inspect
