#pragma once

#include <array>
#include <concepts>
#include <deque>
#include <span>
#include <string_view>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

#include "base/Integers.h"
#include "messages/MessageNumbers.h"
#include "text/eString.h"

namespace rvf {

class TextSink;

/// Severity letters of the catalogue.
namespace severity {
constexpr char16_t kInformation = u'I';
constexpr char16_t kWarning = u'W';
constexpr char16_t kError = u'E';
constexpr char16_t kSevere = u'S';
}  // namespace severity

/// The display name of a severity letter; empty for any other character.
[[nodiscard]] std::u16string_view severityName(char16_t letter);

/// A second severity scale, for displays, which starts at "no change".
namespace severity_display {
constexpr i32 kNoChange = 1;
constexpr i32 kInformation = 2;
constexpr i32 kWarning = 3;
constexpr i32 kError = 4;
constexpr i32 kSevere = 5;
}  // namespace severity_display

/// The display number of a severity letter; any other character counts as information.
[[nodiscard]] i32 severityDisplayNumber(char16_t letter);
/// The name of a display number, "Unknown" for one outside the scale.
[[nodiscard]] std::u16string_view severityDisplayName(i32 displayNumber);

/// The levels of the tally. At kSevere and above, the run has failed.
namespace severity_level {
constexpr i32 kWarning = 4;
constexpr i32 kError = 8;
constexpr i32 kSevere = 12;
}  // namespace severity_level

/// The number of argument texts in an entry, and the most arguments that a call may have.
constexpr int kArgumentSlots = 8;
constexpr int kMostCallArguments = 6;

/// One message on its way from the call to the report.
struct MessageEntry {
  MessageNumber number{};
  char16_t severity = 0;
  eString text;  // the finished line
  eString secondText;
  std::array<i32, kArgumentSlots> argumentPositions{};
  std::array<eString, kArgumentSlots> arguments;
  i32 location = 0;  // position of the input record; valid if hasLocation
  bool hasLocation = false;
  eString locationName;
};

/// A change to one message of the catalogue, applied at the flush.
struct MessageOverride {
  MessageNumber number{};
  char16_t severity = 0;  // one of the severity letters, or 0 to leave it
  i32 firstValue = 0;
  i32 limit = 0;
  bool hidden = false;
};

/// What has been written so far, by severity.
struct MessageTally {
  i32 highestSeverity = 0;  // only rises
  i32 exitOverride = 0;     // exit value of the last severe message that has one
  i32 sectionSeverity = 0;  // a second high-water mark, which callers may clear
  i32 stopLevel = 3;        // severities that raise stopFlag: 0 W E S, 1 E S, 2 S, 3 none
  bool stopFlag = false;
  i32 severeCount = 0;
  i32 errorCount = 0;  // includes severe messages
  i32 warningCount = 0;

  /// The severity that decides the exit status: exitOverride if there is one, otherwise
  /// highestSeverity.
  [[nodiscard]] i32 effectiveSeverity() const {
    return exitOverride != 0 ? exitOverride : highestSeverity;
  }
};

/// While nonzero, every call returns 0 at once. Set during steps whose failures do not matter, such
/// as a measuring pass.
inline i32 muteAllMessages = 0;
/// While nonzero, only the first occurrence of each message is written.
inline i32 onlyFirstOccurrence = 0;

/// One argument of a call: a text or a number. Texts are borrowed for the call; a null text means
/// that the argument is absent.
class MessageArgument {
 public:
  explicit MessageArgument(const char16_t* text) : value_(text) {}
  explicit MessageArgument(const eString& text) : value_(text.c_str()) {}
  template <std::integral Integer>
  explicit MessageArgument(Integer value) : value_(static_cast<i32>(value)) {}
  explicit MessageArgument(f64 value) : value_(value) {}

  [[nodiscard]] bool isText() const { return std::holds_alternative<const char16_t*>(value_); }
  [[nodiscard]] bool isAbsent() const {
    return isText() && std::get<const char16_t*>(value_) == nullptr;
  }
  /// The argument as it appears in the line.
  [[nodiscard]] eString asText() const;

 private:
  std::variant<const char16_t*, i32, f64> value_;
};

/// The part of the reporter that needs the catalogue: it looks up the texts, builds and writes the
/// lines, and tallies them. The lower layers see only the reporter.
class MessageBackEnd {
 public:
  virtual ~MessageBackEnd() = default;
  /// Whether the catalogue is loaded. Until then all calls are held.
  [[nodiscard]] virtual bool isLoaded() const = 0;
  /// Counts the occurrence and returns whether the message should be written.
  [[nodiscard]] virtual bool passesFilter(MessageNumber number) = 0;
  /// Builds, emits and tallies one message with `argumentCount` arguments, absent ones included.
  virtual void write(MessageEntry& entry, int argumentCount) = 0;
  /// Loads the catalogue if needed and writes the pending entries in the order of their calls.
  virtual bool flush(std::deque<MessageEntry>& pending) = 0;
};

namespace detail {

/// The letter of an argument in a message form: t text, i integer, f floating.
template <class T>
constexpr char argumentLetter() {
  if constexpr (std::floating_point<T>) {
    return 'f';
  } else {
    return std::integral<T> ? 'i' : 't';
  }
}

/// The letters of a call's arguments.
template <class... Arguments>
constexpr char kCallForm[] = {argumentLetter<std::decay_t<Arguments>>()..., 0};

}  // namespace detail

/// A message number in a call whose arguments match kMessageForms. The conversion is checked at
/// compile time.
template <class... Arguments>
class CheckedNumber {
 public:
  consteval CheckedNumber(MessageNumber number) : number_(number) {
    bool hasForm = false;
    for (const MessageForm& form : kMessageForms) {
      hasForm |= form.number == number && form.arguments == detail::kCallForm<Arguments...>;
    }
    if (!hasForm) {
      throw "no message of this number has arguments of this form";
    }
  }
  [[nodiscard]] constexpr MessageNumber number() const { return number_; }

 private:
  MessageNumber number_;
};

/// Receives each message as soon as it is raised, long before the catalogue gives it a text.
class MessageListener {
 public:
  virtual ~MessageListener() = default;
  /// Must not report anything itself.
  virtual void messageRaised(const MessageEntry& entry) = 0;
};

/// Every failure and every notice is reported here: the caller gives a number and its arguments and
/// goes on. Calls are held until a sink is attached and the catalogue is loaded, which
/// FlushMessages does once, after the comparison. Without a back end they remain held until
/// takePending.
class MessageReporter {
 public:
  /// Reports a message with the arguments that kMessageForms states. Returns 1 if the call was
  /// accepted (held, written or dropped by the filter), 0 if muted.
  template <class... Arguments>
  i32 Report(std::type_identity_t<CheckedNumber<Arguments...>> number,
             const Arguments&... arguments) {
    return reportUnchecked(number.number(), arguments...);
  }
  /// The same for a number known only at run time: up to six arguments of any type.
  template <class... Arguments>
  i32 reportUnchecked(MessageNumber number, const Arguments&... arguments) {
    static_assert(sizeof...(arguments) <= kMostCallArguments);
    if constexpr (sizeof...(arguments) == 0) {
      return take(number, {});
    } else {
      const MessageArgument list[] = {MessageArgument(arguments)...};
      return take(number, list);
    }
  }

  /// Writes all pending messages. A run calls it once, before the report is closed. Returns whether
  /// the last line could be built; does nothing without a back end.
  bool FlushMessages();

  /// Sends all further lines to `sink`, which stays the caller's.
  void AttachReportSink(TextSink* sink);
  /// Must be called when the report is closed: later calls are held and never written.
  void detachReportSink() { reportSink = nullptr; }

  /// `backEnd` stays the caller's; null detaches it.
  void attachBackEnd(MessageBackEnd* backEnd) { backEnd_ = backEnd; }

  /// `listener` stays the caller's; null detaches it.
  void attachListener(MessageListener* listener) { listener_ = listener; }

  /// Removes the held messages and returns them as numbers and arguments, for a program that
  /// presents them in its own way without a catalogue.
  [[nodiscard]] std::deque<MessageEntry> takePending() { return std::exchange(pending_, {}); }

  /// Restores the state of a new process: nothing attached, held, tallied or muted.
  void reset();

  /// The position attached to all later messages.
  void setLocation(i32 location, const eString& name);
  void clearLocation() { hasLocation_ = false; }

  [[nodiscard]] const std::deque<MessageEntry>& pending() const { return pending_; }
  [[nodiscard]] i32 callCount() const { return callCount_; }
  [[nodiscard]] i32 messageCount() const { return messageCount_; }

  // State that the back end reads and updates.
  MessageTally tally;
  std::vector<MessageEntry> storedMessages;  // finished lines while directOutput is off
  std::vector<MessageOverride> overrides;
  i32 levelFilter = 0;  // 1 drops I except kInformation; 2 and up also W
  bool reportingDisabled = false;
  bool directOutput = true;            // a finished line goes straight to the sink
  bool heldOutput = true;              // until a sink is attached
  bool timePrefix = false;             // prefixes each line with the time of day; no option sets it
  bool structuredForm = false;         // no option sets it
  TextSink* reportSink = nullptr;      // not owned
  TextSink* structuredSink = nullptr;  // not owned

 private:
  i32 take(MessageNumber number, std::span<const MessageArgument> arguments);
  [[nodiscard]] bool mustHold() const;
  [[nodiscard]] MessageEntry makeEntry(MessageNumber number,
                                       std::span<const MessageArgument> arguments) const;

  MessageBackEnd* backEnd_ = nullptr;
  MessageListener* listener_ = nullptr;
  std::deque<MessageEntry> pending_;
  i32 callCount_ = 0;
  i32 messageCount_ = 0;
  i32 location_ = 0;
  bool hasLocation_ = false;
  eString locationName_;
};

extern MessageReporter messageReporter;

/// Shorthand for messageReporter.Report.
template <class... Arguments>
i32 Report(std::type_identity_t<CheckedNumber<Arguments...>> number,
           const Arguments&... arguments) {
  return messageReporter.reportUnchecked(number.number(), arguments...);
}

}  // namespace rvf
