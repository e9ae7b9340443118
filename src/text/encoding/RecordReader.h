#pragma once

#include <span>
#include <string>
#include <string_view>

#include "base/Integers.h"
#include "storage/FileObject.h"
#include "text/eString.h"
#include "text/encoding/TextConverter.h"

namespace rvf {

/// What went wrong with the reading of records. From kFirstFatal on it stays.
namespace record_error {
constexpr i32 kNone = 0;
constexpr i32 kShortRead = 1;  // the end of the file came into the buffer
constexpr i32 kUnexpectedMark = 8001;
constexpr i32 kTruncatedCharacter = 8002;
constexpr i32 kFirstFatal = 9000;
constexpr i32 kRecordTooLong = 9001;
constexpr i32 kCorruptData = 9002;
constexpr i32 kOutOfMemory = 9003;
constexpr i32 kNoConverter = 9004;
constexpr i32 kNoTemporaryFile = 9005;
constexpr i32 kWrongMark = 9006;
constexpr i32 kUnsupportedCharacter = 9007;
}  // namespace record_error

/// Reads a text file in any encoding as records of wide text. A record ends at a line feed, at a
/// carriage return with a line feed, or at the end of the file. Memory is bounded by the longest
/// record allowed, whatever the length of the file.
///
/// It reports nothing itself, but for a converter that cannot be opened and what the file object
/// reports: its user asks for the error and tells it in its own way.
class RecordReader {
 public:
  RecordReader() = default;
  RecordReader(const RecordReader&) = delete;
  RecordReader& operator=(const RecordReader&) = delete;

  /// The file to read, from its position on. It stays the caller's.
  void Attach(FileObject* file) { file_ = file; }

  /// Sets up the buffer and the converter, by name if there is one, else by id. False on failure,
  /// with the reason in GetErrorCode.
  [[nodiscard]] bool Open(const eString& encodingName, i32 encodingId, i32 maximumRecordLength);

  /// Delivers the next record and returns its length in characters, or -1 at the end of the file
  /// and after a fatal error. The text stays until the next call and is zero-terminated.
  i32 ReadRecord(const char16_t*& text, i32& length);

  /// Whether the file is exhausted.
  [[nodiscard]] bool AtEnd() const { return atEnd_ && unread().empty(); }

  [[nodiscard]] i32 GetErrorCode() const { return lastError_; }
  /// The text of a fatal error, or of a warning: empty for a code of the other sort. Both return
  /// the code.
  i32 GetErrorText(eString& text) const;
  i32 GetWarningText(eString& text) const;

  /// The encoding, which a byte-order mark may have changed.
  [[nodiscard]] i32 encoding() const { return encoding_; }

  /// See TextConverter::setReplacements.
  void setReplacements(std::span<const ReplacementPair> pairs) {
    converter_.setReplacements(pairs);
  }

 private:
  [[nodiscard]] bool openConverter(const eString& name);
  [[nodiscard]] bool fill();
  void checkMark();
  void useEncoding(i32 id);
  [[nodiscard]] std::string_view unread() const {
    return std::string_view(bytes_).substr(readPosition_, fillPosition_ - readPosition_);
  }
  [[nodiscard]] i32 unitSize() const { return isUtf16(encoding_) ? 2 : 1; }
  [[nodiscard]] bool isUnitAt(std::string_view bytes, std::size_t offset, char character) const;
  [[nodiscard]] std::size_t findLineFeed(std::string_view bytes, std::size_t from) const;
  i32 decode(std::string_view record, const char16_t*& text, i32& length);
  i32 fail(i32 error);

  FileObject* file_ = nullptr;
  bool atEnd_ = false;  // the file gave fewer bytes than were asked for
  std::string bytes_;   // raw input; what is unread lies between the positions
  std::size_t readPosition_ = 0;
  std::size_t fillPosition_ = 0;
  i32 maximumRecordLength_ = 0;
  std::u16string wide_;
  std::string cleaned_;
  bool firstRead_ = true;  // the mark is still to be looked for
  i32 lastError_ = record_error::kNone;
  i32 encoding_ = encoding_id::kNone;
  TextConverter converter_;
  char lineFeed_ = '\n';
  char carriageReturn_ = '\r';
  bool isJefEncoding_ = false;
};

/// Cleans one record of a JEF encoding in place: the shifts get their one form, and the control
/// sequences, which stand for no character, are removed.
void cleanJefRecord(std::string& record);

}  // namespace rvf
