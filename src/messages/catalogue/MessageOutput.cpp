#include "messages/catalogue/MessageOutput.h"

#include <algorithm>
#include <cstdio>
#include <string>
#include <utility>

#include "datetime/DateTime.h"
#include "messages/catalogue/MessageLine.h"
#include "text/encoding/TextSink.h"

namespace rvf {

namespace {

/// The severity of a line without a record. It is no severity letter, so nothing is tallied.
constexpr char16_t kNoSeverity = 20;

constexpr const char16_t* kElementName = u"EngineRunMessage";

void printLine(std::FILE* stream, const eString& text) {
  printNative(stream, std::u16string(text.text()) + u"\n");
}

/// Quirk that stays: the arguments of a pending entry end at the first empty one. An empty text in
/// the middle thus ends the substitution, and the remaining placeholders stay visible. Existing
/// reports show this, and the texts of the catalogue are written with it in mind.
int countArguments(const MessageEntry& entry) {
  const auto firstEmpty = std::ranges::find_if(entry.arguments, &eString::isEmpty);
  return static_cast<int>(firstEmpty - entry.arguments.begin());
}

i32 levelOf(char16_t letter) {
  switch (letter) {
    case severity::kWarning:
      return severity_level::kWarning;
    case severity::kError:
      return severity_level::kError;
    case severity::kSevere:
      return severity_level::kSevere;
    default:
      return 0;
  }
}

/// The lowest level that raises the stop flag, for each MessageTally::stopLevel.
i32 lowestStoppingLevel(i32 stopLevel) {
  constexpr i32 kLevels[] = {severity_level::kWarning, severity_level::kError,
                             severity_level::kSevere};
  const bool stops = stopLevel >= 0 && stopLevel < 3;
  return stops ? kLevels[stopLevel] : severity_level::kSevere + 1;
}

}  // namespace

bool MessageOutput::passesFilter(MessageNumber number) {
  const bool passes = !reporter_.reportingDisabled && passesLimits(number);
  if (!passes) {
    countLoss(number);
  }
  return passes;
}

bool MessageOutput::passesLimits(MessageNumber number) {
  MessageRecord* record = catalogue_.findRecord(static_cast<i32>(number));
  if (record == nullptr) {
    return false;
  }
  record->useCount += 1;
  const bool isMutedInformation = record->severity == severity::kInformation &&
                                  record->number != static_cast<i32>(MessageNumber::kInformation) &&
                                  reporter_.levelFilter > 0;
  const bool isMutedWarning = record->severity == severity::kWarning && reporter_.levelFilter >= 2;
  const bool isOverLimit = record->limit >= 1 && record->useCount > record->limit;
  const bool isRepetition = onlyFirstOccurrence != 0 && record->useCount >= 2;
  return !isMutedInformation && !isMutedWarning && !record->hidden && !isOverLimit && !isRepetition;
}

void MessageOutput::write(MessageEntry& entry, int argumentCount) {
  const MessageRecord* record = catalogue_.findRecord(static_cast<i32>(entry.number));
  buildLine(entry, record, argumentCount);
  deliver(entry, record);
}

bool MessageOutput::flush(std::deque<MessageEntry>& pending) {
  flushed_ = true;
  catalogue_.LoadCatalogue(stdout);
  bool result = applyOverrides();
  if (!catalogue_.isLoaded()) {
    printHeldMessages();
    pending.clear();
    heldPrinted_ = 0;
    return true;
  }
  while (!pending.empty()) {
    MessageEntry entry = std::move(pending.front());
    pending.pop_front();
    const int argumentCount = countArguments(entry);
    if (!passesFilter(entry.number)) {
      // Quirk that stays: a suppressed message ends the whole flush, as it does in existing
      // reports. Data loss after it still counts.
      std::ranges::for_each(pending, [this](const MessageEntry& left) { countLoss(left.number); });
      return true;
    }
    const MessageRecord* record = catalogue_.findRecord(static_cast<i32>(entry.number));
    result = buildLine(entry, record, argumentCount);
    deliver(entry, record);
  }
  return result;
}

void MessageOutput::printHeldMessages() {
  if (isLoaded()) {
    return;
  }
  catalogue_.LoadCatalogue(stderr);
  const std::deque<MessageEntry>& pending = reporter_.pending();
  for (; heldPrinted_ < pending.size(); ++heldPrinted_) {
    printHeld(pending[heldPrinted_]);
  }
}

void MessageOutput::printHeld(MessageEntry entry) {
  MessageRecord* record = catalogue_.findRecord(static_cast<i32>(entry.number));
  if (record == nullptr) {
    printLine(stderr, eString(numberAndArguments(entry)));
    if (flushed_) {
      countLoss(entry.number);
    }
    return;
  }
  record->useCount += 1;
  buildLine(entry, record, countArguments(entry));
  printLine(stderr, entry.text);
}

bool MessageOutput::applyOverrides() {
  for (const MessageOverride& change : reporter_.overrides) {
    MessageRecord* record = catalogue_.findRecord(static_cast<i32>(change.number));
    if (record == nullptr || reporter_.reportingDisabled) {
      reporter_.Report(MessageNumber::kOverrideNotApplied, static_cast<i32>(change.number));
      return false;
    }
    record->limit = change.limit;
    record->hidden = change.hidden;
    record->firstValue = change.firstValue;
    if (change.severity == severity::kInformation || levelOf(change.severity) > 0) {
      record->severity = change.severity;
    }
  }
  return true;
}

/// The local time of day, "06:12:09 ", if lines should begin with it.
eString MessageOutput::timePrefix() const {
  eString prefix;
  if (reporter_.timePrefix) {
    const DateTime now;
    prefix.Format(u"%.2d:%.2d:%.2d ", now.GetHour(), now.GetMinute(), now.GetSecond());
  }
  return prefix;
}

bool MessageOutput::buildLine(MessageEntry& entry, const MessageRecord* record,
                              int argumentCount) const {
  if (record == nullptr) {
    entry.severity = kNoSeverity;
    // Quirk that stays: the two forms of this text end differently. Existing reports have both.
    const bool hasArguments = argumentCount > 0;
    entry.text.Format(hasArguments ? u"Internal error:  message %d not found in message file.\n"
                                   : u"Internal error:  message %d not found in message file",
                      static_cast<i32>(entry.number));
    return false;
  }
  entry.severity = record->severity;
  // The number of the record: for a message without a text, that of the fallback record.
  entry.text.Format(u"%lsQZ%06ld%lc (%ld) ", timePrefix(), record->number, record->severity,
                    record->useCount);
  entry.text.Append(eString(substituteArguments(*record, entry, argumentCount)));
  return true;
}

void MessageOutput::deliver(const MessageEntry& entry, const MessageRecord* record) {
  if (reporter_.directOutput) {
    EmitLine(entry, record);
  } else {
    reporter_.storedMessages.push_back(entry);
  }
  tally(record);
  countLoss(entry.number);
}

void MessageOutput::EmitLine(const MessageEntry& entry, const MessageRecord* record) {
  if (reporter_.reportSink == nullptr) {
    // Quirk that stays: the text itself is used as the format, so a "%" in it starts a conversion,
    // which gets a zero or an empty text as its argument. Existing reports show the result.
    eString printed;
    printed.Format(entry.text.c_str());
    printLine(stdout, printed);
    return;
  }
  if (emitting_ || isAboutReportSink(entry)) {
    printLine(stderr, entry.text);
    return;
  }
  emitting_ = true;
  const auto isWritten = [this](const LinePiece& piece) {
    return reporter_.reportSink->WriteIndented(piece.text.data(),
                                               static_cast<i32>(piece.text.size()), piece.indent,
                                               LineEnd::kWritten) != 0;
  };
  const bool allWritten = std::ranges::all_of(cutLine(entry.text.view()), isWritten);
  emitting_ = false;
  if (!allWritten) {
    printLine(stderr, entry.text);
  }
  if (reporter_.structuredForm && reporter_.structuredSink != nullptr) {
    emitStructured(entry.text, record);
  }
}

void MessageOutput::emitStructured(const eString& text, const MessageRecord* record) const {
  constexpr char16_t kQuote = u'"';
  eString tag = kElementName;
  if (record != nullptr) {
    tag.Format(u"%ls code=%cQZ%06ld%c level=%c%c%c count=%c%ld%c", kElementName, kQuote,
               record->number, kQuote, kQuote, record->severity, kQuote, kQuote, record->useCount,
               kQuote);
  }
  const std::u16string content =
      u"<![CDATA[" + std::u16string(withoutLinePrefix(text.view())) + u"]]>";
  StartElement(reporter_.structuredSink, tag.c_str());
  reporter_.structuredSink->WriteLine(content.c_str(), LineEnd::kWritten);
  EndElement(reporter_.structuredSink, kElementName);
}

bool MessageOutput::isAboutReportSink(const MessageEntry& entry) const {
  const eString& file = reporter_.reportSink->name();
  switch (entry.number) {
    case MessageNumber::kSinkWriteFailed:
    case MessageNumber::kFileCloseFailed:
      return entry.arguments[0] == file;
    case MessageNumber::kFileWriteFailed:
      return entry.arguments[1] == file;
    default:
      return false;
  }
}

void MessageOutput::tally(const MessageRecord* record) {
  const i32 level = record == nullptr ? 0 : levelOf(record->severity);
  if (level == 0) {
    return;
  }
  MessageTally& tally = reporter_.tally;
  if (level >= lowestStoppingLevel(tally.stopLevel)) {
    tally.stopFlag = true;
  }
  if (level == severity_level::kWarning) {
    tally.warningCount += 1;
  } else {
    tally.errorCount += 1;
  }
  if (level == severity_level::kSevere) {
    tally.severeCount += 1;
    if (record->exitValue != 0) {
      tally.exitOverride = record->exitValue;
    }
  }
  raiseSeverity(level);
}

void MessageOutput::countLoss(MessageNumber number) {
  const i32 index = catalogue_.isLoaded() ? catalogue_.FindMessage(static_cast<i32>(number)) : -1;
  const bool catalogueDecides =
      index >= 0 &&
      catalogue_.records()[static_cast<std::size_t>(index)].severity != severity::kSevere;
  if (meansDataLoss(number) && !catalogueDecides) {
    raiseSeverity(severity_level::kSevere);
  }
}

void MessageOutput::raiseSeverity(i32 level) {
  MessageTally& tally = reporter_.tally;
  tally.highestSeverity = std::max(tally.highestSeverity, level);
  tally.sectionSeverity = std::max(tally.sectionSeverity, level);
}

}  // namespace rvf
