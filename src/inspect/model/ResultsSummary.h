#pragma once

#include <algorithm>
#include <map>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "inspect/model/Inspection.h"
#include "inspect/model/JobResults.h"

namespace rvf::inspect {

/// The results of reading the files of a differing pair again.
struct PairInspection {
  i64 changes = 0;  // that count and are not accepted
  i64 changesAccepted = 0;
  bool isAccepted = false;  // only accepted changes count
  std::string trouble;      // why the pair is not explained, as shown text; empty if it is
};

/// Pairs that have something in common: their number, and the names of the first few.
struct NamedPairs {
  static constexpr std::size_t kMostNames = 3;

  i64 count = 0;
  std::vector<std::u16string> names;

  void add(const std::u16string& name);
};

/// Pairs that failed for the same reason. Reasons that differ only in numbers, such as offsets,
/// count as the same.
struct FailedPairs : NamedPairs {
  std::string state{};
  std::u16string reason{};  // with N for each number if the pairs have several
};

/// A group of changes in all pairs.
struct GroupOfPairs {
  ChangeGroup group;  // the number of its distinct values is a lower bound
  NamedPairs pairs;
};

/// The names of the pairs with the greatest values, the greatest first.
template <class Value>
class Greatest {
 public:
  static constexpr std::size_t kMost = 10;

  void add(Value value, const std::u16string& name) {
    auto place = entries_.begin();
    while (place != entries_.end() && place->first >= value) {
      ++place;
    }
    entries_.insert(place, {value, name});
    entries_.resize(std::min(entries_.size(), kMost));
  }
  [[nodiscard]] const std::vector<std::pair<Value, std::u16string>>& entries() const {
    return entries_;
  }

 private:
  std::vector<std::pair<Value, std::u16string>> entries_;
};

/// Adds up the pairs of a job. Memory use is limited, however many pairs there are; what no longer
/// fits is counted.
class ResultsSummary {
 public:
  static constexpr std::size_t kMostReasons = 1000;

  /// `inspection` is null for a pair that was not read again.
  void add(const PairResult& pair, const PairInspection* inspection);
  /// The groups of one pair.
  void addGroups(const std::u16string& name, const ChangeGroups& groups);

  [[nodiscard]] i64 pairs() const { return pairs_; }
  [[nodiscard]] const std::map<Outcome, i64>& outcomes() const { return outcomes_; }
  [[nodiscard]] i64 count(Outcome outcome) const;
  [[nodiscard]] i64 accepted() const { return accepted_; }
  /// Pairs that were read again without success.
  [[nodiscard]] i64 unexplained() const { return unexplained_; }
  [[nodiscard]] const std::map<DiffFlags, i64>& pairsByBit() const { return pairsByBit_; }
  /// By state and reason, including files on one side only; the most frequent first.
  [[nodiscard]] std::vector<const FailedPairs*> reasons() const;
  [[nodiscard]] i64 reasonsLeftOut() const { return reasonsLeftOut_; }
  [[nodiscard]] const Greatest<f64>& slowest() const { return slowest_; }
  [[nodiscard]] const Greatest<i64>& largest() const { return largest_; }
  /// Those with the most pairs first.
  [[nodiscard]] std::vector<const GroupOfPairs*> groups() const;
  [[nodiscard]] i64 changesNotGrouped() const { return changesNotGrouped_; }

  /// Whether every pair has an answer.
  [[nodiscard]] bool isComplete() const {
    return count(Outcome::kFailed) == 0 && unexplained_ == 0;
  }
  /// Whether any pair differs in more than accepted changes.
  [[nodiscard]] bool differs() const {
    return count(Outcome::kDifferent) > accepted_ || count(Outcome::kOneSided) > 0;
  }

 private:
  void addFailure(const PairResult& pair);

  i64 pairs_ = 0;
  i64 accepted_ = 0;
  i64 unexplained_ = 0;
  std::map<Outcome, i64> outcomes_;
  std::map<DiffFlags, i64> pairsByBit_;
  /// By state and reason without numbers.
  std::map<std::pair<std::string, std::u16string>, FailedPairs> reasons_;
  i64 reasonsLeftOut_ = 0;
  Greatest<f64> slowest_;
  Greatest<i64> largest_;
  std::unordered_map<u64, GroupOfPairs> groups_;
  i64 changesNotGrouped_ = 0;
};

}  // namespace rvf::inspect
