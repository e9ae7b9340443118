#pragma once

#include <memory>
#include <ostream>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "base/Integers.h"
#include "storage/FileObject.h"
#include "text/eString.h"
#include "text/encoding/TextConverter.h"

namespace rvf {

/// Where the lines of a sink go. kNothing1 and kNothing3 discard them.
enum class SinkKind : i32 {
  kFile = 0,
  kNothing1 = 1,
  kStream = 2,
  kNothing3 = 3,
  kMemory = 4,
  kConsole = 5,
  kWideMemory = 6
};

/// Whether a text ends its line.
enum class LineEnd : i32 { kNone, kWritten };

/// Whether a text goes through the sink's converter. Unconverted text is written with two bytes per
/// character; the UTF-16 encodings convert anyway, because their byte order matters.
enum class Conversion : i32 { kNone, kConverted };

/// How a sink in XML mode treats a text: content is escaped, markup is not.
enum class TextRole : i32 { kContent, kMarkup };

/// Whether a UTF-16 file starts with a byte-order mark. Other encodings have none.
enum class ByteOrderMark : i32 { kNone, kWritten };

/// A destination for lines of wide text. Each kind of sink encodes them for its medium; line ends
/// go through the same converter as the text.
///
/// All writing operations return the number of bytes written; 0 means failure.
class TextSink {
 public:
  TextSink(SinkKind kind, eString name) : kind_(kind), name_(std::move(name)) {}
  TextSink(const TextSink&) = delete;
  TextSink& operator=(const TextSink&) = delete;
  virtual ~TextSink() = default;

  [[nodiscard]] SinkKind kind() const { return kind_; }
  [[nodiscard]] const eString& name() const { return name_; }

  /// Passes buffered bytes on to the destination.
  virtual void Flush() {}
  /// Ends writing. A file is closed but stays its owner's.
  virtual void Close() {}

  i32 WriteLine(const char16_t* text, LineEnd end);
  i32 WriteString(const eString& text, i32 indent, LineEnd end);
  /// Writes `count` characters after `indent` blanks. Quirk that stays: a count of 0 writes
  /// nothing, not even the line end, and returns -1.
  i32 WriteIndented(const char16_t* text, i32 count, i32 indent, LineEnd end);
  /// The basis of all other writing operations. Without text and line end it does nothing and
  /// returns 0, although that is not a failure.
  i32 WriteData(const char16_t* text, i32 count, LineEnd end,
                Conversion conversion = Conversion::kConverted, TextRole role = TextRole::kContent);

  // The rest is part of the interface; a run does not call it.

  /// Drops indents and line ends.
  void setRawMode(bool raw) { rawMode_ = raw; }
  /// Writes "\n" instead of "\r\n".
  void setBareLineFeed(bool bare) { bareLineFeed_ = bare; }
  /// Escapes the five special characters of XML, except in CDATA sections. The console and the
  /// memory of wide characters do not escape.
  void setXmlMode(bool xml) { xmlMode_ = xml; }

  /// 1 if the sink takes its text as wide characters, 0 if it holds bytes of an encoding.
  [[nodiscard]] virtual i32 IsWide() const { return 1; }
  /// 0 for every kind of sink.
  [[nodiscard]] virtual i32 GetEncodingKind() const { return 0; }

  /// Makes room for `byteCount` bytes: in the line being built, or after the content of a memory
  /// sink.
  virtual void Reserve(i32 byteCount);
  /// Puts `count` characters into the line being built, at `position` (at most its length), drops
  /// the rest of the line, and returns the new length. WriteIndented writes such lines.
  i32 AppendPending(const char16_t* text, i32 count, i32 position);
  /// The line being built; for a memory sink, the place of the next byte.
  [[nodiscard]] virtual const void* GetBuffer() const { return lineBuffer_.data(); }

  /// The content of a memory sink, by character type; the `take` functions transfer ownership.
  /// Empty for all other sinks.
  [[nodiscard]] virtual std::string_view bytes() const { return {}; }
  [[nodiscard]] virtual std::u16string_view wideText() const { return {}; }
  [[nodiscard]] virtual std::string takeBytes() { return {}; }
  [[nodiscard]] virtual std::u16string takeWideText() { return {}; }

 protected:
  /// Writes finished text to the destination and returns the number of bytes written.
  virtual i32 deliver(std::u16string_view text, Conversion conversion) = 0;
  [[nodiscard]] virtual std::u16string_view lineEndText() const {
    return bareLineFeed_ ? u"\n" : u"\r\n";
  }

 private:
  [[nodiscard]] bool escapes(TextRole role) const;
  void appendEscaped(std::u16string_view text);

  SinkKind kind_;
  eString name_;
  /// Both buffers are reused from line to line.
  std::u16string lineBuffer_;
  std::u16string outputBuffer_;
  bool rawMode_ = false;
  bool bareLineFeed_ = false;
  bool xmlMode_ = false;
  /// A CDATA section may span several writes.
  bool insideCData_ = false;
};

/// Makes a sink that the caller owns. A file sink needs `file` and `name`, is opened with a
/// byte-order mark and writes in the encoding of `encodingId`. Null if the file or the converter
/// cannot be opened, and for the kinds that write to a stream or a block, for which there is no
/// argument. Part of the interface; a run builds its sinks itself.
[[nodiscard]] std::unique_ptr<TextSink> OpenSink(SinkKind kind, FileObject* file,
                                                 const eString& name,
                                                 i32 encodingId = encoding_id::kUtf8);

/// Each writes a line, "<name>" or "</name>". A null sink is ignored.
void StartElement(TextSink* sink, const char16_t* name);
void EndElement(TextSink* sink, const char16_t* name);

/// A sink of a kind that writes nothing.
class NullSink final : public TextSink {
 public:
  explicit NullSink(SinkKind kind) : TextSink(kind, eString()) {}

 protected:
  i32 deliver(std::u16string_view, Conversion) override { return 0; }
};

/// Writes to a file object, which stays the caller's and must outlive the sink.
class FileSink final : public TextSink {
 public:
  FileSink(FileObject& file, const eString& name) : TextSink(SinkKind::kFile, name), file_(file) {}

  /// Creates or empties the file and writes the byte-order mark if requested: FF FE for
  /// encoding_id::kUtf16 and kUtf16Le, FE FF for kUtf16Be. Returns false on failure, with the
  /// reason in `openFailure`.
  [[nodiscard]] bool openFile(i32 encodingId, ByteOrderMark mark);
  /// The same in the encoding of another converter, looked up by name. A run uses the id.
  [[nodiscard]] bool openFile(const TextConverter& model, ByteOrderMark mark);
  /// Opens the converter of the encoding. A failure is reported.
  [[nodiscard]] bool connect();

  /// Why openFile failed, in the system's words.
  [[nodiscard]] const eString& openFailure() const { return openFailure_; }
  /// encoding_id::kNone until openFile is called.
  [[nodiscard]] i32 encoding() const { return encodingId_; }

  /// Reports kSinkWriteFailed if bytes are lost.
  void Flush() override;
  void Close() override;

 protected:
  i32 deliver(std::u16string_view text, Conversion conversion) override;

 private:
  [[nodiscard]] bool createFile(ByteOrderMark mark);
  [[nodiscard]] bool write(std::string_view bytes);
  void reportFailure(const eString& reason);

  FileObject& file_;
  TextConverter converter_;
  /// Empty if the encoding was given by id.
  eString converterName_;
  i32 encodingId_ = encoding_id::kNone;
  eString openFailure_;
  /// The failure has been reported; nothing more is written.
  bool failed_ = false;
};

/// Writes to an output stream, in UTF-8 or another encoding. Part of the interface; a run has no
/// such sink.
class StreamSink final : public TextSink {
 public:
  StreamSink(std::ostream& stream, const eString& name, i32 encodingId = encoding_id::kUtf8);

 protected:
  i32 deliver(std::u16string_view text, Conversion conversion) override;

 private:
  std::ostream& stream_;
  TextConverter converter_;
};

/// Writes to standard output, in UTF-8 with the platform's line end. Failures are ignored: scripts
/// rely on the exit status.
class ConsoleSink final : public TextSink {
 public:
  ConsoleSink() : TextSink(SinkKind::kConsole, eString()) {}

  void Flush() override;

 protected:
  i32 deliver(std::u16string_view text, Conversion conversion) override;
  [[nodiscard]] std::u16string_view lineEndText() const override { return u"\n"; }
};

/// What a memory sink holds.
enum class MemoryContent : i32 { kUtf8, kWide };

/// A growing block in memory. Part of the interface; a run has no such sink.
class MemorySink final : public TextSink {
 public:
  explicit MemorySink(MemoryContent content = MemoryContent::kUtf8);

  [[nodiscard]] i32 IsWide() const override { return converter_.isOpen() ? 0 : 1; }
  void Reserve(i32 byteCount) override;
  [[nodiscard]] const void* GetBuffer() const override;
  [[nodiscard]] std::string_view bytes() const override { return bytes_; }
  [[nodiscard]] std::u16string_view wideText() const override { return wideText_; }
  [[nodiscard]] std::string takeBytes() override { return std::exchange(bytes_, {}); }
  [[nodiscard]] std::u16string takeWideText() override { return std::exchange(wideText_, {}); }

 protected:
  i32 deliver(std::u16string_view text, Conversion conversion) override;

 private:
  TextConverter converter_;
  /// Only one of the two is used.
  std::string bytes_;
  std::u16string wideText_;
};

/// Writes into the caller's block of wide characters. What does not fit is dropped, and the write
/// fails. Part of the interface; a run has no such sink.
class WideMemorySink final : public TextSink {
 public:
  explicit WideMemorySink(std::span<char16_t> block)
      : TextSink(SinkKind::kWideMemory, eString()), block_(block) {}

  [[nodiscard]] const void* GetBuffer() const override { return block_.data() + writePosition_; }
  [[nodiscard]] std::u16string_view wideText() const override {
    return {block_.data(), writePosition_};
  }

 protected:
  i32 deliver(std::u16string_view text, Conversion conversion) override;

 private:
  std::span<char16_t> block_;
  std::size_t writePosition_ = 0;
};

}  // namespace rvf
