#pragma once

#include <cstddef>
#include <deque>

#include "base/Integers.h"
#include "messages/MessageReporter.h"
#include "messages/catalogue/MessageCatalogue.h"
#include "text/eString.h"

namespace rvf {

/// Turns the calls of a MessageReporter into lines of the report and tallies them.
///
/// A message about a failure to write the report itself goes to standard error instead, and so does
/// a line that could not be written: writing them to the report would only fail again.
class MessageOutput final : public MessageBackEnd {
 public:
  /// `reporter` must outlive this object, which does not attach itself.
  explicit MessageOutput(MessageReporter& reporter) : reporter_(reporter) {}

  /// True after the flush, if the catalogue could be loaded.
  [[nodiscard]] bool isLoaded() const override { return flushed_ && catalogue_.isLoaded(); }
  [[nodiscard]] bool passesFilter(MessageNumber number) override;
  void write(MessageEntry& entry, int argumentCount) override;
  /// Without a catalogue, the pending messages are printed as by printHeldMessages. A message that
  /// the filter suppresses ends the flush, and the remaining ones are never written.
  ///
  /// A message that means data loss (meansDataLoss) makes the run fail even if the catalogue lacks
  /// its number, or if it is suppressed or follows a suppressed one. A catalogue that gives the
  /// number a severity other than S overrules this.
  bool flush(std::deque<MessageEntry>& pending) override;

  /// For a run that ends before the flush: prints each held message on standard error, as an uncut
  /// line, or without a catalogue as number and arguments. No message is printed twice, and
  /// messages that a flush left unwritten are not printed. Nothing is tallied, with one exception:
  /// after a flush without a catalogue, messages that mean data loss still count.
  void printHeldMessages();

  /// For tests, and for using another catalogue.
  [[nodiscard]] MessageCatalogue& catalogue() { return catalogue_; }

 private:
  [[nodiscard]] bool passesLimits(MessageNumber number);
  [[nodiscard]] eString timePrefix() const;
  bool buildLine(MessageEntry& entry, const MessageRecord* record, int argumentCount) const;
  void deliver(const MessageEntry& entry, const MessageRecord* record);
  void EmitLine(const MessageEntry& entry, const MessageRecord* record);
  void emitStructured(const eString& text, const MessageRecord* record) const;
  [[nodiscard]] bool isAboutReportSink(const MessageEntry& entry) const;
  void tally(const MessageRecord* record);
  void raiseSeverity(i32 level);
  void countLoss(MessageNumber number);
  bool applyOverrides();
  void printHeld(MessageEntry entry);

  MessageReporter& reporter_;
  MessageCatalogue catalogue_;
  bool flushed_ = false;
  bool emitting_ = false;        // a line is being written to the report
  std::size_t heldPrinted_ = 0;  // pending entries that printHeldMessages has handled
};

}  // namespace rvf
