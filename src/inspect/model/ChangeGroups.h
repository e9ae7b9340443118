#pragma once

#include <optional>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

#include "inspect/model/Change.h"
#include "inspect/model/DigestSet.h"

namespace rvf::inspect {

/// What changes of one group have in common.
struct GroupKey {
  std::string kind{};
  std::string type{};
  std::string list{};
  std::vector<std::string> fields{};  // sorted, without the numbers of elements; none if added
  i32 page = kNone;                   // its index within the customer
  std::optional<Place> place{};       // in the first file if it exists there and nothing moved
  std::optional<Place> distance{};

  /// Identifies the group, the same in every run.
  [[nodiscard]] u64 id() const;
};

/// 12 hexadecimal digits.
[[nodiscard]] std::string idText(u64 id);

/// One page on which a change was found.
struct ChangePlace {
  i32 customer = kNone;
  std::u16string customerId;
  i32 first = kNone;
  i32 second = kNone;
};

struct GroupExample {
  ChangePlace place;
  std::u16string text;
  std::optional<FieldChange> field;  // the first one that differs
};

struct ChangeGroup {
  static constexpr std::size_t kMostExamples = 3;

  u64 id = 0;
  GroupKey key;
  std::string_view ignoredBy;
  i64 pages = 0;
  i64 customers = 0;
  i64 changes = 0;
  i64 pairs = 0;            // distinct old and new values
  bool hasAllPairs = true;  // false: more than were counted
  std::vector<GroupExample> examples;
};

/// Groups changes that are alike. Memory use is limited; what no longer fits is counted.
class ChangeGroups {
 public:
  static constexpr std::size_t kMostGroups = 20000;
  static constexpr std::size_t kMostPairs = 400000;  // of all groups together

  /// Changes on the same page must be added consecutively, and so must pages of the same customer.
  void add(const Change& change, const ChangePlace& place);
  /// A change of an object counts for all pages that use it.
  void addForPages(const Change& change, i64 pages);

  /// Those with the most pages first.
  [[nodiscard]] std::vector<const ChangeGroup*> sorted() const;
  [[nodiscard]] std::size_t count() const { return groups_.size(); }
  [[nodiscard]] i64 changesLeftOut() const { return changesLeftOut_; }

  [[nodiscard]] static GroupKey keyOf(const Change& change, i32 page);

 private:
  struct Entry {
    ChangeGroup group;
    i32 lastCustomer = kNone - 1;
    ChangePlace lastPlace;
  };
  Entry* entryFor(const Change& change, i32 page);
  void countPair(ChangeGroup& group, const Change& change);

  std::unordered_map<u64, Entry> groups_;
  DigestSet pairs_;
  i64 changesLeftOut_ = 0;
};

}  // namespace rvf::inspect
