#pragma once

#include "base/Integers.h"
#include "text/eString.h"

namespace rvf {

/// The ids of the encodings that text at the system's edges is in. They are frozen: options and
/// readers name them. Any id that is not in the table means Latin-1.
namespace encoding_id {
constexpr i32 kNoDecoding = -2;  // readers only: the bytes as they are
constexpr i32 kNone = -1;
constexpr i32 kAscii = 1;
constexpr i32 kEbcdic = 2;
constexpr i32 kBig5 = 3;
constexpr i32 kShiftJis = 10;
constexpr i32 kUtf8 = 11;
constexpr i32 kUtf16 = 12;  // as kUtf16Le
constexpr i32 kLatin2 = 13;
constexpr i32 kWindowsLatin1 = 14;
constexpr i32 kWindowsLatin2 = 15;
constexpr i32 kUtf16Le = 20;
constexpr i32 kUtf16Be = 21;
constexpr i32 kLatin1 = 30;
}  // namespace encoding_id

/// Whether an encoding has two bytes a character and a byte-order mark.
[[nodiscard]] constexpr bool isUtf16(i32 id) {
  return id == encoding_id::kUtf16 || id == encoding_id::kUtf16Le || id == encoding_id::kUtf16Be;
}

/// The table's name of an encoding: the converter's, or with `forDisplay` the one for people.
void GetEncodingName(i32 id, bool forDisplay, eString& name);

/// The id of a name, without regard to case: 0, or -1 with the id -1 for a name that is not known.
i32 GetEncodingId(const eString& name, i32& id);

/// The converter to take for one that the installed ICU does not have; empty where there is none.
[[nodiscard]] const char16_t* fallbackConverter(const eString& name);

}  // namespace rvf
