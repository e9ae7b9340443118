#pragma once

#include "compare/ChildListResults.h"
#include "compare/DiffFlags.h"
#include "compare/MatchKey.h"
#include "compare/Tolerances.h"
#include "pagemodel/DrawPart.h"

namespace rvf {

/// Whether two parts have the same relevant fields. No tolerance applies.
///
/// Neither this nor classifyParts is symmetric: the type of `right` determines what is compared,
/// and where the type of `left` does not matter, its fields are read through the layout of
/// `right`'s type. Parts of some types equal nothing but themselves, so a page that holds one never
/// equals another page. `childLists`, which may be null, caches the results for the children of
/// groups.
[[nodiscard]] bool partsEqual(const DrawPart& left, const DrawPart& right,
                              ChildListResults* childLists = nullptr);

/// Whether a part equals another one with the same fields and the same plain bytes. Objects that
/// its type owns besides these are ignored.
[[nodiscard]] bool equalsOwnFields(const DrawPart& part);

/// How two parts differ. 0 means that they classify as the same; for some types of `right`, every
/// part does, however different.
[[nodiscard]] DiffFlags classifyParts(const DrawPart& left, const DrawPart& right,
                                      const Tolerances& tolerances,
                                      ChildListResults* childLists = nullptr);

/// Which parts `left` can have classifyParts(left, right) == 0, for a given type of `right`.
enum class MatchRule {
  kAnyPart,  // every part
  kByWords,  // those of any type with the same words key
  kByKey,    // those of the same type with the same match key
};
[[nodiscard]] MatchRule matchRuleOf(PartType right);

/// How many match keys a part of a kByKey type has.
[[nodiscard]] i32 keyCount(PartType type, KeyUse use);
/// Makes one of them.
void makeMatchKey(MatchKey& key, const DrawPart& part, const Tolerances& tolerances, KeyUse use,
                  i32 number);
/// Makes the key of any part for the search among parts of kByWords types.
void makeWordsKey(MatchKey& key, const DrawPart& part);

}  // namespace rvf
