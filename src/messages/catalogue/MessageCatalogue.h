#pragma once

#include <array>
#include <cstdio>
#include <optional>
#include <string_view>
#include <vector>

#include "base/Integers.h"
#include "messages/catalogue/MessageRecord.h"
#include "text/eString.h"
#include "text/encoding/CodePages.h"

namespace rvf {

class FileObject;

/// The catalogue of a run, which findCatalogue locates.
constexpr const char16_t* kCatalogueFile = u"MsgResource_en-us.dat";

/// The texts of all messages, read once from a text file and found by number.
///
/// The file is a list of C-style definitions. Three kinds of lines matter, and all others are
/// skipped: comments (the first line must be one), the version line, and messages:
///     // Messages of the program
///     #define MESS_SYMB_VER 1602008
///     #define MSG_FILE_NOT_OPEN 1847 // W|0|0|The file |1| was not open.
class MessageCatalogue {
 public:
  /// What to do with the comments of the file.
  enum class Comments { kDrop, kKeep };

  /// Loads the file unless this was tried before. The catalogue cannot report its own failures as
  /// messages, so it prints them on `console`: the file was not found, cannot be read in any
  /// encoding, or has another version (which does not stop the load). Returns whether this call
  /// loaded the catalogue. A malformed message line ends the load, but the lines before it remain
  /// valid.
  bool LoadCatalogue(std::FILE* console, Comments comments = Comments::kDrop);
  [[nodiscard]] bool isLoaded() const { return state_ == State::kLoaded; }

  /// The index of the number's record, or -1.
  [[nodiscard]] i32 FindMessage(i32 number);
  /// The number's record, or the fallback record if there is none. Null if the catalogue is not
  /// loaded or lacks the fallback record because a malformed line ended the load. The record
  /// belongs to the catalogue and is valid until another file is set.
  [[nodiscard]] MessageRecord* findRecord(i32 number);

  /// The comments of a catalogue that was loaded with Comments::kKeep, in file order, without
  /// leading blanks and tabs. Comments shorter than 20 characters are skipped, as all such lines
  /// are.
  [[nodiscard]] const std::vector<eString>& comments() const { return comments_; }
  /// The message that was loaded last: the last one in the file, or the one before a malformed
  /// line. Null if there is none. Valid until another file is set.
  [[nodiscard]] const MessageRecord* currentRecord() const;

  /// Sets a file other than the default. A different name discards what was loaded.
  void SetMessageFile(const eString& name);
  /// The encoding that is tried first; see encoding_id.
  void setEncoding(i32 encoding) { encoding_ = encoding; }

  /// Sorted by number; records with the same number are in file order.
  [[nodiscard]] const std::vector<MessageRecord>& records() const { return records_; }
  [[nodiscard]] bool versionMatched() const { return versionMatched_; }

 private:
  enum class State { kNotLoaded, kStarted, kLoaded };
  static constexpr int kBucketCount = 20;
  static constexpr i32 kBucketWidth = 1000;

  bool readLines(FileObject& file);
  void parseLine(std::u16string_view line);
  void dropContent();
  void parseMessageLine(std::u16string_view definition);
  void buildBuckets();
  [[nodiscard]] i32 bisect(i32 number, i32 low, i32 high) const;

  State state_ = State::kNotLoaded;
  std::vector<MessageRecord> records_;
  Comments commentsWanted_ = Comments::kDrop;
  std::vector<eString> comments_;
  i32 currentNumber_ = 0;  // of the message that was added last
  /// For each thousand, the index of the first record at or above it.
  std::array<i32, kBucketCount> buckets_{};
  i32 lastNumber_ = -1;  // the last number found and its index, for repeated messages
  i32 lastIndex_ = -1;
  std::optional<MessageRecord> fallbackRecord_;
  eString fileName_ = kCatalogueFile;
  bool loadFailed_ = false;  // a line was malformed
  bool versionMatched_ = false;
  char16_t separator_ = u'|';
  i32 encoding_ = encoding_id::kLatin1;
};

}  // namespace rvf
