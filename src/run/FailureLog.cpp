#include "run/FailureLog.h"

#include <algorithm>
#include <iterator>

#include "run/OperatorNotes.h"

namespace rvf {

namespace {

/// Which arguments of a message are the file name and the reason, and what failed.
struct FailureForm {
  MessageNumber number;
  int path;
  int reason;  // kNone: `what` is enough
  const char16_t* what;
};

constexpr int kNone = -1;

constexpr FailureForm kFailures[] = {
    {MessageNumber::kSinkWriteFailed, 0, 1, u"writing failed: "},
    {MessageNumber::kArchiveWriteFailed, 0, 1, u"writing failed: "},
    {MessageNumber::kArchiveCloseFailed, 0, 1, u"closing failed: "},
    {MessageNumber::kFileReadFailed, 1, 2, u"reading failed: "},
    {MessageNumber::kFileWriteFailed, 1, 2, u"writing failed: "},
    {MessageNumber::kFileCloseFailed, 0, 1, u"closing failed: "},
    {MessageNumber::kFileUnusable, 0, 1, u""},
    {MessageNumber::kFileSeekFailed, 0, kNone, u"a position in it could not be reached"},
};

std::string lineOf(const eString& path, const std::string& reason) {
  const std::string name = path.isEmpty() ? "" : printable(path) + ": ";
  return "rvfcompare: " + name + reason + "\n";
}

}  // namespace

// The messages about damage and newer records name no file: the code that reads the file adds them.
void FailureLog::messageRaised(const MessageEntry& entry) {
  const auto* form = std::ranges::find(kFailures, entry.number, &FailureForm::number);
  if (form == std::end(kFailures)) {
    return;
  }
  const eString& path = entry.arguments[static_cast<std::size_t>(form->path)];
  const bool isExplained = std::ranges::find(reasons_, path, &Reason::path) != reasons_.end();
  if (entry.number == MessageNumber::kFileUnusable && isExplained) {
    return;
  }
  eString reason = form->what;
  if (form->reason != kNone) {
    reason.Append(entry.arguments[static_cast<std::size_t>(form->reason)]);
  }
  add(path, reason);
}

void FailureLog::add(const eString& path, const eString& reason, const char16_t* role) {
  const std::string note = *role == 0 ? "" : " (" + printable(role) + ")";
  const std::string line = lineOf(path, printable(reason) + note);
  if (std::ranges::find(reasons_, line, &Reason::line) != reasons_.end()) {
    return;
  }
  reasonCount_ += 1;
  if (reasons_.size() < kMostReasons) {
    reasons_.push_back({path, line});
  }
}

void FailureLog::addDamage(const eString& path, const eString& place) {
  if (damage_.size() < kMostReasons) {
    damage_.push_back(lineOf(path, "Damaged at " + printable(place)));
  }
}

std::string FailureLog::text() const {
  std::string text;
  for (const Reason& reason : reasons_) {
    text += reason.line;
  }
  if (const i64 more = reasonCount_ - static_cast<i64>(reasons_.size()); more > 0) {
    text += "rvfcompare: and " + std::to_string(more) + " more\n";
  }
  for (const std::string& line : damage_) {
    text += line;
  }
  if (damageCount_ > static_cast<i64>(damage_.size())) {
    text += "rvfcompare: " + std::to_string(damageCount_) + " damaged places in all\n";
  }
  return text;
}

}  // namespace rvf
