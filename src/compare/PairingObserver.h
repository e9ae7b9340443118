#pragma once

#include "base/Integers.h"
#include "compare/DiffFlags.h"

namespace rvf {

/// How two parts came to be compared.
enum class PairedBy {
  kSamePlace,            // they are at the same index
  kElsewhere,            // found by a search: elsewhere, or at the same index within tolerance
  kLeftOver,             // a part of the longer list that was not paired
  kGroupWithoutPartner,  // the other part is no group, or one of the two has no list
};

/// One step of the matcher. Both indexes are in argument order, whichever list is shorter; kNone
/// means no part.
struct Pairing {
  static constexpr i32 kNone = -1;

  i32 first = kNone;
  i32 second = kNone;
  DiffFlags reasons = 0;  // what this pair adds to the result; 0: the two are equal
  PairedBy by = PairedBy::kSamePlace;
};

/// Receives which part was paired with which and why, in the order of the matcher: first the parts
/// of the shorter list, each with what it was compared with, then the left-over ones of the longer
/// list. The reasons of all pairs, including those in groups, add up to the matcher's result.
///
/// A part of the longer list can occur more than once: a part that differs from the one at the same
/// index leaves that one free, so that it is paired later or comes up again among the left-over
/// ones. A left-over group is one pair, whose reasons include those of its children.
class PairingObserver {
 public:
  virtual ~PairingObserver() = default;
  virtual void paired(const Pairing& pairing) = 0;
  /// The child lists of the last two groups that were paired are matched next; everything up to
  /// leaveGroup concerns their parts. The reasons of the pair of groups do not include it.
  ///
  /// Returns whether to report the children; if not, leaveGroup is not called either. Objects are
  /// shared: an observer that needs each pair of child lists once should accept it only once, since
  /// N references to an object of M parts take N x M calls.
  [[nodiscard]] virtual bool enterGroup(i32 first, i32 second) = 0;
  virtual void leaveGroup() = 0;
};

}  // namespace rvf
