#include "text/encoding/TextSink.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>

#include "messages/MessageReporter.h"
#include "text/NativeText.h"

namespace rvf {

namespace {

constexpr std::string_view kLittleEndianMark = "\xFF\xFE";
constexpr std::string_view kBigEndianMark = "\xFE\xFF";

/// Mutes the messages of a step whose failure its caller reports.
class MutedStep {
 public:
  MutedStep() { muteAllMessages += 1; }
  MutedStep(const MutedStep&) = delete;
  MutedStep& operator=(const MutedStep&) = delete;
  ~MutedStep() { muteAllMessages -= 1; }
};

std::u16string_view escapeOf(char16_t c) {
  switch (c) {
    case u'&':
      return u"&amp;";
    case u'<':
      return u"&lt;";
    case u'>':
      return u"&gt;";
    case u'"':
      return u"&quot;";
    case u'\'':
      return u"&apos;";
    default:
      return {};
  }
}

}  // namespace

// TextSink

i32 TextSink::WriteLine(const char16_t* text, bool newline) {
  return WriteData(text, static_cast<i32>(std::char_traits<char16_t>::length(text)), newline);
}

i32 TextSink::WriteString(const eString& text, i32 indent, bool newline) {
  return WriteIndented(text.c_str(), text.length(), indent, newline);
}

i32 TextSink::WriteIndented(const char16_t* text, i32 count, i32 indent, bool newline) {
  constexpr i32 kNothingWritten = -1;
  if (count <= 0) {
    return kNothingWritten;
  }
  const i32 blanks = rawMode_ ? 0 : std::max(indent, 0);
  indented_.assign(static_cast<std::size_t>(blanks), u' ');
  indented_.append(text, static_cast<std::size_t>(count));
  return WriteData(indented_.c_str(), count + blanks, newline);
}

i32 TextSink::WriteData(const char16_t* text, i32 count, bool newline, bool asMarkup) {
  const bool endsLine = newline && !rawMode_;
  if (count <= 0 && !endsLine) {
    return 0;
  }
  const std::u16string_view content(text, static_cast<std::size_t>(std::max(count, 0)));
  lineBuffer_.clear();
  if (xmlMode_ && !asMarkup) {
    appendEscaped(content);
  } else {
    lineBuffer_.append(content);
  }
  if (endsLine) {
    lineBuffer_.append(lineEnd());
  }
  return deliver(lineBuffer_);
}

void TextSink::appendEscaped(std::u16string_view text) {
  constexpr std::u16string_view kSectionStart = u"<![CDATA[";
  constexpr std::u16string_view kSectionEnd = u"]]>";
  while (!text.empty()) {
    if (insideCData_ || text.starts_with(kSectionStart)) {
      const std::size_t end = text.find(kSectionEnd);
      insideCData_ = end == text.npos;
      const std::size_t length = insideCData_ ? text.size() : end + kSectionEnd.size();
      lineBuffer_.append(text.substr(0, length));
      text.remove_prefix(length);
      continue;
    }
    const std::u16string_view escape = escapeOf(text.front());
    lineBuffer_.append(escape.empty() ? text.substr(0, 1) : escape);
    text.remove_prefix(1);
  }
}

namespace {

void writeTag(TextSink* sink, const char16_t* format, const char16_t* name) {
  if (sink != nullptr) {
    eString tag;
    tag.Format(format, name);
    sink->WriteData(tag.c_str(), tag.length(), true, true);
  }
}

}  // namespace

void StartElement(TextSink* sink, const char16_t* name) { writeTag(sink, u"<%ls>", name); }

void EndElement(TextSink* sink, const char16_t* name) { writeTag(sink, u"</%ls>", name); }

// FileSink

bool FileSink::openFile(i32 encodingId, bool wantsMark) {
  encodingId_ = encodingId;
  errno = ENOENT;  // for an empty name
  // Unbuffered: what is written stays written however the run ends, and a line that is lost is told
  // where that happens.
  constexpr i32 kFlags = open_flags::kWrite | open_flags::kCreate | open_flags::kUnbuffered;
  failed_ = name().isEmpty() || !file_.Open(name(), kFlags, false);
  if (!failed_ && wantsMark && isUtf16(encodingId)) {
    failed_ = !write(encodingId == encoding_id::kUtf16Be ? kBigEndianMark : kLittleEndianMark);
  }
  return !failed_;
}

bool FileSink::write(std::string_view bytes) {
  const MutedStep muted;
  return file_.Write(bytes.data(), static_cast<i32>(bytes.size())) != 0;
}

i32 FileSink::deliver(std::u16string_view text) {
  if (failed_) {
    return 0;
  }
  const std::string_view bytes = converter_.ConvertFromWide(text);
  errno = 0;
  if (bytes.empty() || !write(bytes)) {
    reportFailure(errno);
    return 0;
  }
  return static_cast<i32>(bytes.size());
}

void FileSink::reportFailure(int errorNumber) {
  if (!failed_) {
    failed_ = true;
    Report(MessageNumber::kSinkWriteFailed, name(), systemErrorText(errorNumber));
  }
}

void FileSink::Flush() {
  errno = 0;
  if (file_.stream() != nullptr && std::fflush(file_.stream()) != 0) {
    reportFailure(errno);
  }
}

void FileSink::Close() {
  if (file_.isOpen()) {
    file_.Close();
  }
}

// StreamSink

StreamSink::StreamSink(std::ostream& stream, const eString& name, i32 encodingId)
    : TextSink(SinkKind::kStream, name), stream_(stream) {
  converter_.SetEncoding(encodingId);
}

// Without a converter the text goes out as it is, at two bytes a character.
i32 StreamSink::deliver(std::u16string_view text) {
  const std::string_view bytes =
      converter_.isOpen()
          ? converter_.ConvertFromWide(text)
          : std::string_view(reinterpret_cast<const char*>(text.data()), 2 * text.size());
  stream_.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  return stream_.good() ? static_cast<i32>(bytes.size()) : 0;
}

// ConsoleSink

i32 ConsoleSink::deliver(std::u16string_view text) {
  const std::string bytes = toNative(text);
  return static_cast<i32>(std::fwrite(bytes.data(), 1, bytes.size(), stdout));
}

void ConsoleSink::Flush() { std::fflush(stdout); }

// MemorySink and WideMemorySink

MemorySink::MemorySink() : TextSink(SinkKind::kMemory, eString()) {
  constexpr std::size_t kFirstReservation = 800;
  bytes_.reserve(kFirstReservation);
  converter_.SetEncoding(encoding_id::kUtf8);
}

i32 MemorySink::deliver(std::u16string_view text) {
  const std::string_view converted = converter_.ConvertFromWide(text);
  bytes_.append(converted);
  return static_cast<i32>(converted.size());
}

i32 WideMemorySink::deliver(std::u16string_view text) {
  const std::size_t room = block_.size() - writePosition_;
  const std::size_t taken = std::min(room, text.size());
  std::copy_n(text.begin(), taken, block_.begin() + static_cast<std::ptrdiff_t>(writePosition_));
  writePosition_ += taken;
  return taken == text.size() ? static_cast<i32>(2 * taken) : 0;
}

}  // namespace rvf
