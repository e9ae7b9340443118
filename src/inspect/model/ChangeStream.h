#pragma once

#include <functional>
#include <vector>

#include "inspect/model/Change.h"

namespace rvf::inspect {

/// Collects the changes of a page, a shared object or a file. Those that are too many to be held
/// together are passed on in stretches while the rest are still being found.
class ChangeStream {
 public:
  static constexpr std::size_t kMostChanges = 1000;        // of a stretch
  static constexpr std::size_t kMostCharacters = 1 << 20;  // in the values of a stretch
  using Receiver = std::function<void(std::vector<Change> stretch)>;

  /// `receiver` gets every stretch except the last.
  explicit ChangeStream(Receiver receiver) : receiver_(std::move(receiver)) {}

  void add(Change change);
  /// Announces a number of changes.
  void expect(std::size_t count);
  /// Whether there has been no change at all.
  [[nodiscard]] bool isEmpty() const { return isEmpty_; }
  /// The last stretch, which is empty only if the whole stream is.
  [[nodiscard]] std::vector<Change> takeLast() { return std::move(changes_); }

 private:
  Receiver receiver_;
  std::vector<Change> changes_;
  std::size_t characters_ = 0;
  bool isEmpty_ = true;
};

}  // namespace rvf::inspect
