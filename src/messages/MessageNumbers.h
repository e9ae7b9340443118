#pragma once

#include <string_view>

#include "base/Integers.h"

namespace rvf {

/// The numbers of all messages of the program. Their texts are in the catalogue file, so the
/// numbers are frozen. The comments give the arguments.
enum class MessageNumber : i32 {
  kInformation = 1000,          // none; never reported, but the level filter tests for it
  kOptionNotUnderstood = 1019,  // the option or control-file line
  kOverrideNotApplied = 1502,   // the number that the override names
  kSinkWriteFailed = 1806,      // file name, system text
  kArchiveOpenFailed = 1810,    // file name, system text
  kArchiveWriteFailed = 1811,   // file name, system text, bytes
  kArchiveCloseFailed = 1814,   // file name, system text
  kFileReadFailed = 1822,       // bytes, file name, system text
  kFileWriteFailed = 1823,      // bytes, file name, system text
  kFileNotOpen = 1847,          // file name
  kFileCloseFailed = 1848,      // file name, system text
  kFileUnusable = 1903,         // file name, reason
  kFileSeekFailed = 1911,       // file name
  kPayloadValues = 2529,        // two values of a draw part
  kRecordTooNew = 2564,         // record label, version found, highest known
  kInvalidPartType = 9000,      // "Invalid DrawPart Type"
  kArchiveDamaged = 9042,       // "Exception in eArchive class."
  kConverterNotOpened = 9045,   // a text that names the encoding
  kTooManyNameValues = 9048,    // a text that names the limit
  kFallback = 9999,             // the catalogue's answer for an unknown number
};

/// The types of one message's arguments, one letter each: t text, i integer.
struct MessageForm {
  MessageNumber number;
  std::string_view arguments;
};

/// All messages that code may report. A call with arguments of other types does not compile.
constexpr MessageForm kMessageForms[] = {
    {MessageNumber::kInformation, ""},          {MessageNumber::kOptionNotUnderstood, "t"},
    {MessageNumber::kOverrideNotApplied, "i"},  {MessageNumber::kSinkWriteFailed, "tt"},
    {MessageNumber::kArchiveOpenFailed, "tt"},  {MessageNumber::kArchiveWriteFailed, "tti"},
    {MessageNumber::kArchiveCloseFailed, "tt"}, {MessageNumber::kFileReadFailed, "itt"},
    {MessageNumber::kFileWriteFailed, "itt"},   {MessageNumber::kFileNotOpen, "t"},
    {MessageNumber::kFileCloseFailed, "tt"},    {MessageNumber::kFileUnusable, "tt"},
    {MessageNumber::kFileSeekFailed, "t"},      {MessageNumber::kPayloadValues, "ii"},
    {MessageNumber::kRecordTooNew, "tii"},      {MessageNumber::kInvalidPartType, "t"},
    {MessageNumber::kArchiveDamaged, "t"},      {MessageNumber::kConverterNotOpened, "t"},
    {MessageNumber::kTooManyNameValues, "t"},
};

/// Whether a message means that an input was not read or a result was lost. A run with such a
/// message has failed unless the catalogue gives the message a severity other than S.
constexpr bool meansDataLoss(MessageNumber number) {
  switch (number) {
    case MessageNumber::kSinkWriteFailed:
    case MessageNumber::kArchiveOpenFailed:
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
