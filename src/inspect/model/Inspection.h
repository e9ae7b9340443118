#pragma once

#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "compare/Tolerances.h"
#include "inspect/model/CaptureFile.h"
#include "inspect/model/Change.h"
#include "inspect/model/ChangeGroups.h"
#include "inspect/model/PageVerdict.h"
#include "inspect/model/SharedObjects.h"

namespace rvf::inspect {

struct InspectionSettings {
  Tolerances tolerances{};
  OldText oldText = OldText::kOneByte;
  /// Whether a customer is inspected, by its index and id; if empty, all are.
  std::function<bool(i32 index, const eString& id)> selectsCustomer{};
  std::optional<i32> page{};       // only this page of each customer, from 0
  std::set<u64> acceptedGroups{};  // their changes are left out
};

/// The position of a page in both files; kNone on a side that lacks it.
struct PageAddress {
  i32 customer = 0;  // of the first file, or of the second if only that has it
  const eString* id = nullptr;
  i32 first = kNone;
  i32 second = kNone;
};

/// A page of the explanation: a pair, or a page that only one file has. One with very many changes
/// has several results, which follow each other.
struct PageResult {
  PageAddress address;
  const PageRecord* firstRecord = nullptr;
  const PageRecord* secondRecord = nullptr;
  DiffFlags verdictBits = 0;  // for the first file's page, if a run compares it
  std::vector<Change> changes;
  bool isFirst = true;  // of the results for this page
  bool isLast = true;
};

/// Something that could not be read.
struct Damage {
  const std::string& path;
  i32 customer;
  const eString& id;
  i32 page;
  std::string what;
};

struct Summary {
  DiffFlags bits = 0;
  std::string verdictEnd;  // why a run stops early; empty if it compares everything
  i64 pagesCompared = 0;
  i64 pagesDiffering = 0;
  i64 pagesAdded = 0;
  i64 pagesRemoved = 0;
  i64 customersAdded = 0;
  i64 customersRemoved = 0;
  i64 changes = 0;  // that count
  i64 changesAccepted = 0;
  std::map<std::string_view, i64> ignored;           // by rule
  std::optional<i64> smallestPositionTolerance = 0;  // empty: no tolerance is enough
  i64 smallestLineTolerance = 0;
  i64 damagedPages = 0;
  std::set<u64> acceptedSeen;

  [[nodiscard]] bool isComplete() const { return damagedPages == 0; }
};

/// Receives the results of an inspection as it goes through the files.
class InspectionListener {
 public:
  virtual ~InspectionListener() = default;
  virtual void begin(const CaptureFile& first, const CaptureFile& second,
                     const InspectionSettings& settings) = 0;
  /// Changes to the file as a whole and to customer records.
  virtual void file(const Change& change) = 0;
  virtual void customer(const Change& change, i32 customer, const eString& id) = 0;
  /// Pages whose bits are not 0.
  virtual void verdict(const PageAddress& address, const PageVerdict& verdict) = 0;
  /// Every page, changed or not.
  virtual void page(const PageResult& result) = 0;
  virtual void object(const ObjectChanges& object) = 0;
  virtual void damage(const Damage& damage) = 0;
  virtual void end(const Summary& summary, const ChangeGroups& groups) = 0;
  /// The number of customers done, and their total.
  virtual void progress(i32, i32) {}
};

/// Compares two files: what a run reports for each page and why, and what changed.
void inspectFiles(CaptureFile& first, CaptureFile& second, const InspectionSettings& settings,
                  InspectionListener& listener);

}  // namespace rvf::inspect
