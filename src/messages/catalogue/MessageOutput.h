#pragma once

#include <cstddef>
#include <deque>

#include "base/Integers.h"
#include "messages/MessageReporter.h"
#include "messages/catalogue/MessageCatalogue.h"
#include "text/eString.h"

namespace rvf {

/// What turns the calls of a MessageReporter into lines of the report and into its tally.
///
/// A message that is raised because the report itself cannot be written goes to standard error
/// instead, and so does a line that the report did not take: writing them to the report would fail
/// again, without end.
class MessageOutput final : public MessageBackEnd {
 public:
  /// `reporter` must outlive this object, which does not attach itself.
  explicit MessageOutput(MessageReporter& reporter) : reporter_(reporter) {}

  /// True from the flush on, if the catalogue could be loaded.
  [[nodiscard]] bool isLoaded() const override { return flushed_ && catalogue_.isLoaded(); }
  [[nodiscard]] bool passesFilter(MessageNumber number) override;
  void write(MessageEntry& entry, int argumentCount) override;
  /// Without a catalogue the pending messages are printed as by printHeldMessages. A message that
  /// the filter holds back ends the flush, and those behind it are never written.
  ///
  /// A message that means a loss (meansDataLoss) makes the run a failed one even if the catalogue
  /// lacks its number, if it is held back, or if it stands behind one that is. A catalogue that has
  /// the number with another severity than S decides otherwise.
  bool flush(std::deque<MessageEntry>& pending) override;

  /// For a run that ends before the flush: prints each held message on standard error, as the line
  /// that the catalogue gives for it, uncut, or without a catalogue as number and arguments. No
  /// message is printed twice, and what a flush left behind stays unwritten. Nothing is tallied,
  /// except after a flush that found no catalogue, where a message that means a loss counts.
  void printHeldMessages();

  /// For tests and for another catalogue than the usual one.
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
  bool emitting_ = false;        // a line is on its way into the report
  std::size_t heldPrinted_ = 0;  // pending entries that printHeldMessages is done with
};

}  // namespace rvf
