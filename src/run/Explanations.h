#pragma once

#include "base/Integers.h"
#include "text/eString.h"

namespace rvf {

class RvfReader;
struct DamagedPage;
struct NewerRecord;

// What is wrong with an input, in a few words that follow its name.

[[nodiscard]] eString explainTooLarge(i64 fileLength);

/// Why `reader` did not accept its file of `fileLength` bytes.
[[nodiscard]] eString explainRejection(const RvfReader& reader, i64 fileLength);

[[nodiscard]] eString explainNewerRecord(const NewerRecord& record);

/// `offset 1234, customer 0 "100417 Weber", page 3`, with indexes from 0 as in the difference file.
[[nodiscard]] eString describePage(const RvfReader& reader, const DamagedPage& place);

}  // namespace rvf
