#pragma once

#include "base/Integers.h"
#include "storage/Archive.h"
#include "text/eString.h"

namespace rvf {

/// Bytes that the shortest page of the index has on disk.
constexpr i32 kSmallestPageRecord = 13;

/// One page of the index: its name and where its body lies. Kept for every page of the file.
struct PageRecord {
  PageRecord() = default;
  PageRecord(i32 leading, eString pageName, i32 position, i32 trailing)
      : leadValue(leading),
        name(std::move(pageName)),
        filePosition(position),
        tailValue(trailing) {}

  /// Reads the record, or writes it in its newest form: the archive's mode decides. `swapBytes`:
  /// the text of the customer arrived with its bytes the other way round.
  void read(eArchive& archive, bool swapBytes);

  i32 leadValue = 0;  // kept, never compared
  eString name;
  i32 filePosition = 0;  // a negative one: the page has no body
  i32 tailValue = 0;     // kept, never compared
  u32 diffBits = 0;      // written by the walk, not on disk
  bool unpaired =
      false;  // by the walk too: without a partner, or under another name than its partner
};

/// Exchanges the two bytes of every character.
void swapCharacterBytes(eString& text);

}  // namespace rvf
