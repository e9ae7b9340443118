#include "run/RunOptions.h"

#include <algorithm>

#include "messages/MessageReporter.h"
#include "run/OptionLine.h"
#include "run/OptionTable.h"
#include "storage/DiskFile.h"
#include "text/encoding/RecordReader.h"

namespace rvf {

bool RunOptions::parseCommandLine(std::span<const eString> arguments, ControlFiles treatment) {
  for (std::size_t index = 1; index < arguments.size();) {
    // The shell splits a value that contains blanks: its words are joined again with single blanks.
    eString text = arguments[index++];
    for (; index < arguments.size() && !startsAsOption(arguments[index]); ++index) {
      text.AppendChar(u' ');
      text.Append(arguments[index]);
    }
    if (!parseOption(text)) {
      Report(MessageNumber::kOptionNotUnderstood, text);
      badArgument = true;
      badOptions.push_back({{}, text, explainBadOption(text)});
    }
  }
  return !badArgument && (treatment == ControlFiles::kIgnored || readControlFiles());
}

bool RunOptions::parseOption(const eString& line) {
  const OptionLine pieces = splitOptionLine(line);
  if (pieces.isIgnored) {
    return true;
  }
  const OptionRow* option = findOption(pieces.name, pieces.value.has_value());
  if (option == nullptr) {
    return false;
  }
  const eString value = pieces.value.value_or(eString());
  if (!option->apply(*this, value)) {
    return false;
  }
  const eString taken = option->takenAs == nullptr ? eString() : option->takenAs(*this, value);
  if (!taken.isEmpty()) {
    warnings.push_back({place_, line, taken});
  }
  return true;
}

void RunOptions::addControlFile(const eString& path) {
  if (std::ranges::find(controlFiles, path) == controlFiles.end()) {
    controlFiles.push_back(path);
  }
}

bool RunOptions::readControlFiles() {
  bool ok = true;
  // A control file may add others, but not itself, since it is listed already.
  for (std::size_t index = 0; index < controlFiles.size() && !controlFileFailure; ++index) {
    const eString path = controlFiles[index];
    ok = readControlFile(path);
  }
  return ok;
}

bool RunOptions::readControlFile(const eString& path) {
  constexpr i32 kLongestLine = 32767;
  eDiskFile file;
  if (!file.Open(path, open_flags::kRead | open_flags::kSequential, FileContent::kBinary)) {
    controlFileFailure = {path, file.failure()};
    return false;
  }
  RecordReader reader;
  reader.Attach(&file);
  bool ok = true;
  if (reader.Open(eString(), controlFileEncodingId(controlFileEncoding), kLongestLine)) {
    const char16_t* text = nullptr;
    i32 length = 0;
    for (i32 number = 1; reader.ReadRecord(text, length) >= 0; ++number) {
      place_.Format(u"%ls:%d", path, number);
      eString line;
      line.AssignCounted(length, text);
      if (!line.isEmpty() && !parseOption(line)) {
        noteBadControlLine(line);
        ok = false;
      }
    }
  }
  place_.Empty();
  eString reason;
  reader.GetErrorText(reason);
  if (!reason.isEmpty()) {
    controlFileFailure = {path, reason};
    ok = false;
  }
  return ok;
}

void RunOptions::noteBadControlLine(const eString& line) {
  badOptions.push_back({place_, line, explainBadOption(line)});
  if (badControlLine) {
    return;
  }
  badControlLine = true;
  badLineText = printableCopy(line);
  Report(MessageNumber::kOptionNotUnderstood, badLineText);
}

eString printableCopy(const eString& line) {
  constexpr char16_t kLastPrintable = 127;
  constexpr i32 kDigitPlaces = 2;
  eString copy;
  for (const char16_t c : line.view()) {
    if (c >= u' ' && c <= kLastPrintable) {
      copy.AppendChar(c);
      continue;
    }
    // Quirk that stays: every number takes two digits. A longer one is cut to two, and a single
    // digit leaves a gap, which ends the text. Existing reports show this.
    eString digits;
    digits.Format(u"%x", c);
    copy.Append(digits.Left(kDigitPlaces));
    if (digits.length() < kDigitPlaces) {
      break;
    }
  }
  return copy;
}

}  // namespace rvf
