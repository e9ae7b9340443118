#pragma once

#include "base/Integers.h"

namespace rvf {

/// The numbers of all messages that the program gives. Their texts stand in the catalogue file, so
/// the numbers are frozen. Behind each: its arguments (t text, i integer) and what they are.
enum class MessageNumber : i32 {
  kInformation = 1000,          // -      never given; the level filter knows it
  kOptionNotUnderstood = 1019,  // t      the option or control-file line
  kOverrideNotApplied = 1502,   // i      the number that the override names
  kSinkWriteFailed = 1806,      // t t    file name, system text
  kArchiveWriteFailed = 1811,   // t t i  file name, system text, bytes
  kArchiveCloseFailed = 1814,   // t t    file name, system text
  kFileReadFailed = 1822,       // i t t  bytes, file name, system text
  kFileWriteFailed = 1823,      // i t t  bytes, file name, system text
  kFileNotOpen = 1847,          // t      file name
  kFileCloseFailed = 1848,      // t t    file name, system text
  kFileUnusable = 1903,         // t t    file name, reason
  kFileSeekFailed = 1911,       // t      file name
  kPayloadValues = 2529,        // i i    two values of a draw part
  kRecordTooNew = 2564,         // t i i  record label, version found, highest known
  kInvalidPartType = 9000,      // t      "Invalid DrawPart Type"
  kArchiveDamaged = 9042,       // t      "Exception in eArchive class."
  kConverterNotOpened = 9045,   // t      a text that names the encoding
  kTooManyNameValues = 9048,    // t      a text that names the limit
  kFallback = 9999,             // what the catalogue answers for a number that it lacks
};

/// Whether a message tells of an input that was not read or a result that was not kept. Its
/// severity is the catalogue's affair; where there is none, the run counts as failed after such a
/// message.
constexpr bool tellsOfLoss(MessageNumber number) {
  switch (number) {
    case MessageNumber::kSinkWriteFailed:
    case MessageNumber::kArchiveWriteFailed:
    case MessageNumber::kArchiveCloseFailed:
    case MessageNumber::kFileReadFailed:
    case MessageNumber::kFileWriteFailed:
    case MessageNumber::kFileCloseFailed:
    case MessageNumber::kFileUnusable:
    case MessageNumber::kFileSeekFailed:
    case MessageNumber::kRecordTooNew:
    case MessageNumber::kArchiveDamaged:
      return true;
    default:
      return false;
  }
}

}  // namespace rvf
