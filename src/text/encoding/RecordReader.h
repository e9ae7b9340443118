#pragma once

#include <span>
#include <string>
#include <string_view>

#include "base/Integers.h"
#include "storage/FileObject.h"
#include "text/eString.h"
#include "text/encoding/TextConverter.h"

namespace rvf {

/// What went wrong while reading records. Codes from kFirstFatal on are fatal.
namespace record_error {
constexpr i32 kNone = 0;
/// The end of the file has been read into the buffer.
constexpr i32 kShortRead = 1;
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

/// How an encoding switches between single and double bytes.
enum class ShiftClass : i32 { kNone = 1, kDoubleByte = 2, kJef = 3, kJips = 4, kIso2022 = 5 };

/// The bytes that switch to double bytes and back to single bytes; empty for classes without bytes
/// of their own.
struct ShiftBytes {
  std::string_view toDouble;
  std::string_view toSingle;
};
[[nodiscard]] ShiftBytes shiftBytes(ShiftClass shiftClass);

/// Reads a text file in any encoding as records of wide text. A record ends at a line feed, at a
/// carriage return with a line feed, or at the end of the file. Memory is bounded by the longest
/// allowed record, whatever the length of the file.
///
/// The reader does not report its errors; the caller asks for them. Only the converter and the file
/// object report their own failures.
class RecordReader {
 public:
  RecordReader() = default;
  RecordReader(const RecordReader&) = delete;
  RecordReader& operator=(const RecordReader&) = delete;

  /// Sets the file to read from its current position. It stays the caller's.
  void Attach(FileObject* file) { file_ = file; }

  /// Sets up the buffer and the converter, by name if one is given, otherwise by id. Returns false
  /// on failure, with the reason in GetErrorCode.
  [[nodiscard]] bool Open(const eString& encodingName, i32 encodingId, i32 maximumRecordLength);

  /// Delivers the next record and returns its length in characters, or -1 at the end of the file
  /// and after a fatal error. The text is zero-terminated and valid until the next call.
  i32 ReadRecord(const char16_t*& text, i32& length);

  /// Whether the file is exhausted.
  [[nodiscard]] bool AtEnd() const { return atEnd_ && unread().empty(); }

  [[nodiscard]] i32 GetErrorCode() const { return lastError_; }
  /// The text of a fatal error, or of a warning: empty if the code is of the other kind. Both
  /// return the code.
  i32 GetErrorText(eString& text) const;
  i32 GetWarningText(eString& text) const;

  // The rest is part of the interface; a run does not call it.

  [[nodiscard]] bool isOpen() const { return isOpen_; }
  /// Whether a fatal error has ended the reading.
  [[nodiscard]] bool hasFailed() const { return lastError_ >= record_error::kFirstFatal; }

  /// Byte offsets from where reading began: of the next record, and of the last record delivered.
  /// Half a character at the end counts as a whole one.
  [[nodiscard]] i64 position() const { return bufferOffset_ + static_cast<i64>(readPosition_); }
  [[nodiscard]] i64 recordPosition() const { return recordPosition_; }

  [[nodiscard]] i32 maximumRecordLength() const { return maximumRecordLength_; }
  /// The encoding, which a byte-order mark may have changed.
  [[nodiscard]] i32 encoding() const { return encoding_; }
  [[nodiscard]] bool isJefEncoding() const { return isJefEncoding_; }
  [[nodiscard]] ShiftClass shiftClass() const { return shiftClass_; }
  [[nodiscard]] bool hasShiftBytes() const { return shiftClass_ != ShiftClass::kNone; }

  /// A converter for writing back, borrowed. It is switched too if a byte-order mark changes the
  /// encoding. Null for none.
  void setOutputConverter(TextConverter* converter) { outputConverter_ = converter; }
  [[nodiscard]] TextConverter* outputConverter() const { return outputConverter_; }

  /// See TextConverter::setReplacements.
  void setReplacements(std::span<const ReplacementPair> pairs) {
    converter_.setReplacements(pairs);
  }

 private:
  [[nodiscard]] bool openConverter(const eString& name);
  void noteDelimiters();
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
  /// The last read returned fewer bytes than requested.
  bool atEnd_ = false;
  /// Raw input. The unread bytes are those between the two positions.
  std::string bytes_;
  std::size_t readPosition_ = 0;
  std::size_t fillPosition_ = 0;
  /// The offset of the buffer's first byte from where reading began.
  i64 bufferOffset_ = 0;
  i64 recordPosition_ = 0;
  i32 maximumRecordLength_ = 0;
  std::u16string wide_;
  std::string cleaned_;
  /// The byte-order mark has not been checked yet.
  bool firstRead_ = true;
  bool isOpen_ = false;
  i32 lastError_ = record_error::kNone;
  i32 encoding_ = encoding_id::kNone;
  TextConverter converter_;
  TextConverter* outputConverter_ = nullptr;
  char lineFeed_ = '\n';
  char carriageReturn_ = '\r';
  bool isJefEncoding_ = false;
  ShiftClass shiftClass_ = ShiftClass::kNone;
};

/// Cleans one record of a JEF encoding in place: all shifts get the same form, and the control
/// sequences, which represent no character, are removed.
void cleanJefRecord(std::string& record);

}  // namespace rvf
