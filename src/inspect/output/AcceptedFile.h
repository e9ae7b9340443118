#pragma once

#include <map>
#include <set>
#include <string>

#include "inspect/model/ChangeGroups.h"

namespace rvf::inspect {

// The file of accepted changes: a JSON list with one group a line, sorted, which people read, edit
// and keep under version control. What identifies a group are its fields; the id is told for
// reference, and a key that an editor changes means another group.

/// The groups of a file by their ids. Throws Trouble for a file that cannot be read.
[[nodiscard]] std::map<u64, GroupKey> readAccepted(const std::string& path);

/// Throws Trouble for a file that cannot be written.
void writeAccepted(const std::string& path, const std::map<u64, GroupKey>& groups);

/// A group in words, for a message about it.
[[nodiscard]] std::string inWords(const GroupKey& key);

/// Tells on standard error which entries of a file matched nothing: those that older captures
/// needed hide nothing any more, and somebody should take them out.
void tellUnused(const std::string& path, const std::map<u64, GroupKey>& accepted,
                const std::set<u64>& seen);

}  // namespace rvf::inspect
