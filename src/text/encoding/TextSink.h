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

/// Where the lines of a sink go. The kinds 1 and 3 write nothing and have no form here.
enum class SinkKind : i32 { kFile = 0, kStream = 2, kMemory = 4, kConsole = 5, kWideMemory = 6 };

/// Where the system writes lines of wide text. The form of the sink encodes them for its
/// destination, with the line end going through the same converter as the text in front of it.
///
/// All writing operations return the bytes written; 0 tells of a failure.
class TextSink {
 public:
  TextSink(SinkKind kind, eString name) : kind_(kind), name_(std::move(name)) {}
  TextSink(const TextSink&) = delete;
  TextSink& operator=(const TextSink&) = delete;
  virtual ~TextSink() = default;

  [[nodiscard]] SinkKind kind() const { return kind_; }
  [[nodiscard]] const eString& name() const { return name_; }

  /// Drops indents and line ends.
  void setRawMode(bool raw) { rawMode_ = raw; }
  /// Writes "\n" for "\r\n".
  void setBareLineFeed(bool bare) { bareLineFeed_ = bare; }
  /// Escapes the five characters of markup; what stands in a CDATA section is written as it comes.
  void setXmlMode(bool xml) { xmlMode_ = xml; }

  /// Hands buffered bytes on to the destination.
  virtual void Flush() {}
  /// Ends the writing. A file is closed, but stays its owner's.
  virtual void Close() {}

  i32 WriteLine(const char16_t* text, bool newline);
  i32 WriteString(const eString& text, i32 indent, bool newline);
  /// `count` characters behind `indent` blanks. A count of 0 writes nothing, not even the line end,
  /// and returns -1.
  i32 WriteIndented(const char16_t* text, i32 count, i32 indent, bool newline);
  /// The writing core. Nothing to write and no line end wanted is no failure; it returns 0 all the
  /// same. With `asMarkup` the text is markup itself and is not escaped.
  i32 WriteData(const char16_t* text, i32 count, bool newline, bool asMarkup = false);

 protected:
  /// Takes finished text to the destination and returns the bytes written.
  virtual i32 deliver(std::u16string_view text) = 0;
  [[nodiscard]] virtual std::u16string_view lineEnd() const {
    return bareLineFeed_ ? u"\n" : u"\r\n";
  }

 private:
  void appendEscaped(std::u16string_view text);

  SinkKind kind_;
  eString name_;
  std::u16string lineBuffer_;  // used again from line to line
  std::u16string indented_;
  bool rawMode_ = false;
  bool bareLineFeed_ = false;
  bool xmlMode_ = false;
  bool insideCData_ = false;  // a section may span several writes
};

/// Writes "<name>" and "</name>" as a line each; nothing on a null sink.
void StartElement(TextSink* sink, const char16_t* name);
void EndElement(TextSink* sink, const char16_t* name);

/// A file object, which stays the caller's and must outlive the sink.
class FileSink final : public TextSink {
 public:
  FileSink(FileObject& file, const eString& name) : TextSink(SinkKind::kFile, name), file_(file) {}

  /// Creates or empties the file and, for the UTF-16 encodings, writes the byte-order mark if it is
  /// wanted: FF FE for encoding_id::kUtf16 and kUtf16Le, FE FF for kUtf16Be. A failure leaves the
  /// reason in errno.
  [[nodiscard]] bool openFile(i32 encodingId, bool wantsMark);
  /// Opens the converter of the encoding. A failure is reported.
  [[nodiscard]] bool connect() { return converter_.SetEncoding(encodingId_); }

  /// Reports kSinkWriteFailed for bytes that are lost.
  void Flush() override;
  void Close() override;

 protected:
  i32 deliver(std::u16string_view text) override;

 private:
  bool write(std::string_view bytes);
  void reportFailure(int errorNumber);

  FileObject& file_;
  TextConverter converter_;
  i32 encodingId_ = encoding_id::kNone;
  bool failed_ = false;  // told once; nothing is written any more
};

/// An output stream, in UTF-8 or another encoding.
class StreamSink final : public TextSink {
 public:
  StreamSink(std::ostream& stream, const eString& name, i32 encodingId = encoding_id::kUtf8);

 protected:
  i32 deliver(std::u16string_view text) override;

 private:
  std::ostream& stream_;
  TextConverter converter_;
};

/// Standard output, in UTF-8 with the platform's line end. That it cannot be written is nobody's
/// failure: the status of the run is its result.
class ConsoleSink final : public TextSink {
 public:
  ConsoleSink() : TextSink(SinkKind::kConsole, eString()) {}

  void Flush() override;

 protected:
  i32 deliver(std::u16string_view text) override;
  [[nodiscard]] std::u16string_view lineEnd() const override { return u"\n"; }
};

/// A growing block of UTF-8 in memory.
class MemorySink final : public TextSink {
 public:
  MemorySink();

  [[nodiscard]] const std::string& bytes() const { return bytes_; }
  /// Gives up the block.
  [[nodiscard]] std::string take() { return std::move(bytes_); }

 protected:
  i32 deliver(std::u16string_view text) override;

 private:
  std::string bytes_;
  TextConverter converter_;
};

/// The caller's block of wide characters. What does not fit is dropped, and the writing fails.
class WideMemorySink final : public TextSink {
 public:
  explicit WideMemorySink(std::span<char16_t> block)
      : TextSink(SinkKind::kWideMemory, eString()), block_(block) {}

  [[nodiscard]] std::u16string_view text() const { return {block_.data(), writePosition_}; }

 protected:
  i32 deliver(std::u16string_view text) override;

 private:
  std::span<char16_t> block_;
  std::size_t writePosition_ = 0;
};

}  // namespace rvf
