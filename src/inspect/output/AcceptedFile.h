#pragma once

#include <map>
#include <set>
#include <string>

#include "inspect/model/ChangeGroups.h"

namespace rvf::inspect {

// The file of accepted changes: a sorted JSON list with one group per line, which users read, edit
// and keep under version control. A group is identified by its fields; the id is only written for
// reference, and an edited key means another group.

/// The groups in a file by their ids. Throws Trouble if the file cannot be read.
[[nodiscard]] std::map<u64, GroupKey> readAccepted(const std::string& path);

/// Throws Trouble if the file cannot be written.
void writeAccepted(const std::string& path, const std::map<u64, GroupKey>& groups);

/// A description of a group for messages.
[[nodiscard]] std::string inWords(const GroupKey& key);

/// Reports on standard error which entries of a file matched nothing: they no longer hide anything
/// and should be removed.
void tellUnused(const std::string& path, const std::map<u64, GroupKey>& accepted,
                const std::set<u64>& seen);

}  // namespace rvf::inspect
