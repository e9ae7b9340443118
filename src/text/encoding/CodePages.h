#pragma once

#include "base/Integers.h"
#include "text/eString.h"

namespace rvf {

/// The ids of the encodings of external text. They are frozen: options and readers use them. An id
/// that is not in the table means Latin-1.
namespace encoding_id {
/// For readers only: the bytes as they are.
constexpr i32 kNoDecoding = -2;
constexpr i32 kNone = -1;
constexpr i32 kAscii = 1;
constexpr i32 kEbcdic = 2;
constexpr i32 kBig5 = 3;
constexpr i32 kShiftJis = 10;
constexpr i32 kUtf8 = 11;
/// The same as kUtf16Le.
constexpr i32 kUtf16 = 12;
constexpr i32 kLatin2 = 13;
constexpr i32 kWindowsLatin1 = 14;
constexpr i32 kWindowsLatin2 = 15;
constexpr i32 kUtf16Le = 20;
constexpr i32 kUtf16Be = 21;
constexpr i32 kLatin1 = 30;
}  // namespace encoding_id

/// Whether an encoding has two bytes per character and a byte-order mark.
[[nodiscard]] constexpr bool isUtf16(i32 id) {
  return id == encoding_id::kUtf16 || id == encoding_id::kUtf16Le || id == encoding_id::kUtf16Be;
}

/// Which of an encoding's two names is wanted.
enum class NameUse : i32 { kConverter, kDisplay };

void GetEncodingName(i32 id, NameUse use, eString& name);

/// Finds the id of a name, without regard to case. Returns 0, or -1 with encoding_id::kNone for an
/// unknown name.
i32 GetEncodingId(const eString& name, i32& id);

/// The substitute for a converter that the installed ICU lacks; empty if there is none.
[[nodiscard]] const char16_t* fallbackConverter(const eString& name);

}  // namespace rvf
