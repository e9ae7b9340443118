#pragma once

#include "base/Integers.h"
#include "compare/DiffFlags.h"

namespace rvf {

/// How two parts came to be compared.
enum class PairedBy {
  kSamePlace,            // they stand at the same index
  kElsewhere,            // the second was found by a search: elsewhere, or here within tolerance
  kLeftOver,             // a part of the longer list that nothing was paired with
  kGroupWithoutPartner,  // a group stands against a part that is none, or one of them has no list
};

/// One step of the matcher. Both indexes follow the order of the arguments, whichever list is the
/// shorter one; kNone stands for no part.
struct Pairing {
  static constexpr i32 kNone = -1;

  i32 first = kNone;
  i32 second = kNone;
  DiffFlags reasons = 0;  // what this pair alone adds to the result; 0: the two are equal
  PairedBy by = PairedBy::kSamePlace;
};

/// Receives which part was paired with which and why, in the order of the matcher: the parts of the
/// shorter list first, each with what it was compared with, then those of the longer list that are
/// left over. The reasons of all pairs, those in groups included, add up to the matcher's result.
///
/// A part of the longer list can be named more than once: a part that differs from the one at its
/// place leaves that one free, so that it is paired later or comes up again among the left-over
/// ones. A left-over group is one pair, whose reasons include those of its children.
class PairingObserver {
 public:
  virtual ~PairingObserver() = default;
  virtual void paired(const Pairing& pairing) = 0;
  /// The child lists of the two groups that were paired last are matched next, and all that follows
  /// up to leaveGroup concerns their parts. The reasons of the groups' own pair do not include it.
  ///
  /// Returns whether the children are to be reported; if not, neither they nor the end of the group
  /// are. Objects are shared: an observer that needs each pair of child lists once should accept it
  /// only once, since N references to an object of M parts take N x M calls.
  [[nodiscard]] virtual bool enterGroup(i32 first, i32 second) = 0;
  virtual void leaveGroup() = 0;
};

}  // namespace rvf
