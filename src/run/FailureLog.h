#pragma once

#include <string>
#include <vector>

#include "base/Integers.h"
#include "messages/MessageReporter.h"
#include "text/eString.h"

namespace rvf {

/// Why a run failed, for the operator: files and reasons in the order of their occurrence, then the
/// places of damage. It listens for messages that mean data loss; code that knows more than a
/// message can say adds it before raising the message. Each reason is kept once, and only the first
/// ten are kept, so a disk that fails on every page does not fill the memory.
class FailureLog final : public MessageListener {
 public:
  static constexpr std::size_t kMostReasons = 10;

  void messageRaised(const MessageEntry& entry) override;
  /// Without a path, only the reason is shown. `role` says what the run uses the file for, if that
  /// is not obvious.
  void add(const eString& path, const eString& reason, const char16_t* role = u"");
  /// Adds one damaged place.
  void addDamage(const eString& path, const eString& place);
  /// Adds to the total number of damaged places, which includes those passed to addDamage.
  void countDamage(i64 count) { damageCount_ += count; }

  [[nodiscard]] bool isEmpty() const { return reasonCount_ == 0 && damageCount_ == 0; }
  /// A line for each reason and place, "rvfcompare: PATH: REASON", and the number of those not
  /// listed.
  [[nodiscard]] std::string text() const;

 private:
  struct Reason {
    eString path;
    std::string line;
  };
  std::vector<Reason> reasons_;
  std::vector<std::string> damage_;
  i64 reasonCount_ = 0;
  i64 damageCount_ = 0;
};

}  // namespace rvf
