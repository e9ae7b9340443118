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

/// Mutes the messages of a step whose failure the caller reports.
class MutedStep {
 public:
  MutedStep() { muteAllMessages += 1; }
  MutedStep(const MutedStep&) = delete;
  MutedStep& operator=(const MutedStep&) = delete;
  ~MutedStep() { muteAllMessages -= 1; }
};

// Unconverted text: two bytes per character.
std::string_view rawBytes(std::u16string_view text) {
  return {reinterpret_cast<const char*>(text.data()), text.size() * sizeof(char16_t)};
}

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

i32 TextSink::WriteLine(const char16_t* text, LineEnd end) {
  return WriteData(text, static_cast<i32>(std::char_traits<char16_t>::length(text)), end);
}

i32 TextSink::WriteString(const eString& text, i32 indent, LineEnd end) {
  return WriteIndented(text.c_str(), text.length(), indent, end);
}

i32 TextSink::WriteIndented(const char16_t* text, i32 count, i32 indent, LineEnd end) {
  constexpr i32 kNothingWritten = -1;
  if (count <= 0) {
    return kNothingWritten;
  }
  const i32 blanks = rawMode_ ? 0 : std::max(indent, 0);
  lineBuffer_.assign(static_cast<std::size_t>(blanks), u' ');
  const i32 length = AppendPending(text, count, blanks);
  return WriteData(lineBuffer_.c_str(), length, end);
}

i32 TextSink::WriteData(const char16_t* text, i32 count, LineEnd end, Conversion conversion,
                        TextRole role) {
  const bool endsLine = end == LineEnd::kWritten && !rawMode_;
  if (count <= 0 && !endsLine) {
    return 0;
  }
  const std::u16string_view content(text, static_cast<std::size_t>(std::max(count, 0)));
  outputBuffer_.clear();
  if (escapes(role)) {
    appendEscaped(content);
  } else {
    outputBuffer_.append(content);
  }
  if (endsLine) {
    outputBuffer_.append(lineEndText());
  }
  return deliver(outputBuffer_, conversion);
}

void TextSink::Reserve(i32 byteCount) {
  lineBuffer_.reserve((static_cast<std::size_t>(byteCount) + 1) / sizeof(char16_t));
}

i32 TextSink::AppendPending(const char16_t* text, i32 count, i32 position) {
  lineBuffer_.resize(static_cast<std::size_t>(position));
  lineBuffer_.append(text, static_cast<std::size_t>(count));
  return position + count;
}

bool TextSink::escapes(TextRole role) const {
  return xmlMode_ && role == TextRole::kContent && kind_ != SinkKind::kConsole &&
         kind_ != SinkKind::kWideMemory;
}

void TextSink::appendEscaped(std::u16string_view text) {
  constexpr std::u16string_view kSectionStart = u"<![CDATA[";
  constexpr std::u16string_view kSectionEnd = u"]]>";
  while (!text.empty()) {
    if (insideCData_ || text.starts_with(kSectionStart)) {
      const std::size_t end = text.find(kSectionEnd);
      insideCData_ = end == text.npos;
      const std::size_t length = insideCData_ ? text.size() : end + kSectionEnd.size();
      outputBuffer_.append(text.substr(0, length));
      text.remove_prefix(length);
      continue;
    }
    const std::u16string_view escape = escapeOf(text.front());
    outputBuffer_.append(escape.empty() ? text.substr(0, 1) : escape);
    text.remove_prefix(1);
  }
}

namespace {

void writeTag(TextSink* sink, const char16_t* format, const char16_t* name) {
  if (sink != nullptr) {
    eString tag;
    tag.Format(format, name);
    sink->WriteData(tag.c_str(), tag.length(), LineEnd::kWritten, Conversion::kConverted,
                    TextRole::kMarkup);
  }
}

}  // namespace

void StartElement(TextSink* sink, const char16_t* name) { writeTag(sink, u"<%ls>", name); }

void EndElement(TextSink* sink, const char16_t* name) { writeTag(sink, u"</%ls>", name); }

std::unique_ptr<TextSink> OpenSink(SinkKind kind, FileObject* file, const eString& name,
                                   i32 encodingId) {
  switch (kind) {
    case SinkKind::kFile:
      if (file != nullptr) {
        auto sink = std::make_unique<FileSink>(*file, name);
        if (sink->openFile(encodingId, ByteOrderMark::kWritten) && sink->connect()) {
          return sink;
        }
      }
      return nullptr;
    case SinkKind::kNothing1:
    case SinkKind::kNothing3:
      return std::make_unique<NullSink>(kind);
    case SinkKind::kMemory:
      return std::make_unique<MemorySink>();
    case SinkKind::kConsole:
      return std::make_unique<ConsoleSink>();
    case SinkKind::kStream:
    case SinkKind::kWideMemory:
      break;
  }
  return nullptr;
}

// FileSink

bool FileSink::openFile(i32 encodingId, ByteOrderMark mark) {
  encodingId_ = encodingId;
  converterName_.Empty();
  return createFile(mark);
}

bool FileSink::openFile(const TextConverter& model, ByteOrderMark mark) {
  converterName_ = model.converterName();
  GetEncodingId(converterName_, encodingId_);
  return createFile(mark);
}

bool FileSink::createFile(ByteOrderMark mark) {
  openFailure_.Empty();
  if (name().isEmpty()) {
    failed_ = true;
    openFailure_ = systemErrorText(ENOENT);
    return false;
  }
  // Unbuffered, so that lines survive however the run ends and a lost line is reported at once.
  constexpr i32 kFlags = open_flags::kWrite | open_flags::kCreate | open_flags::kUnbuffered;
  failed_ = !file_.Open(name(), kFlags, FileContent::kBinary);
  if (!failed_ && mark == ByteOrderMark::kWritten && isUtf16(encodingId_)) {
    failed_ = !write(encodingId_ == encoding_id::kUtf16Be ? kBigEndianMark : kLittleEndianMark);
  }
  if (failed_) {
    openFailure_ = file_.failure();
  }
  return !failed_;
}

bool FileSink::connect() {
  return converterName_.isEmpty() ? converter_.SetEncoding(encodingId_)
                                  : converter_.SetEncodingByName(converterName_);
}

bool FileSink::write(std::string_view bytes) {
  const MutedStep muted;
  return file_.Write(bytes.data(), static_cast<i32>(bytes.size())) != 0;
}

i32 FileSink::deliver(std::u16string_view text, Conversion conversion) {
  if (failed_) {
    return 0;
  }
  const std::string_view bytes = conversion == Conversion::kNone && !isUtf16(encodingId_)
                                     ? rawBytes(text)
                                     : converter_.ConvertFromWide(text);
  if (bytes.empty()) {
    reportFailure(systemErrorText(0));
    return 0;
  }
  if (!write(bytes)) {
    reportFailure(file_.failure());
    return 0;
  }
  return static_cast<i32>(bytes.size());
}

void FileSink::reportFailure(const eString& reason) {
  if (!failed_) {
    failed_ = true;
    Report(MessageNumber::kSinkWriteFailed, name(), reason);
  }
}

void FileSink::Flush() {
  if (file_.stream() != nullptr && std::fflush(file_.stream()) != 0) {
    reportFailure(systemErrorText(errno));
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

i32 StreamSink::deliver(std::u16string_view text, Conversion conversion) {
  const bool isRaw = conversion == Conversion::kNone && !isUtf16(converter_.encodingId());
  const std::string_view bytes =
      isRaw || !converter_.isOpen() ? rawBytes(text) : converter_.ConvertFromWide(text);
  stream_.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  return stream_.good() ? static_cast<i32>(bytes.size()) : 0;
}

// ConsoleSink

i32 ConsoleSink::deliver(std::u16string_view text, Conversion) {
  const std::string bytes = toNative(text);
  return static_cast<i32>(std::fwrite(bytes.data(), 1, bytes.size(), stdout));
}

void ConsoleSink::Flush() { std::fflush(stdout); }

// MemorySink and WideMemorySink

MemorySink::MemorySink(MemoryContent content) : TextSink(SinkKind::kMemory, eString()) {
  if (content == MemoryContent::kUtf8) {
    converter_.SetEncoding(encoding_id::kUtf8);
  }
  Reserve(0);
}

// Reserves more than requested, so that the block does not move with every line.
void MemorySink::Reserve(i32 byteCount) {
  constexpr std::size_t kReserveStep = 800;
  const std::size_t room = static_cast<std::size_t>(byteCount) + kReserveStep;
  if (converter_.isOpen()) {
    bytes_.reserve(bytes_.size() + room);
  } else {
    wideText_.reserve(wideText_.size() + room / sizeof(char16_t));
  }
}

const void* MemorySink::GetBuffer() const {
  return converter_.isOpen() ? static_cast<const void*>(bytes_.data() + bytes_.size())
                             : wideText_.data() + wideText_.size();
}

i32 MemorySink::deliver(std::u16string_view text, Conversion) {
  if (!converter_.isOpen()) {
    wideText_.append(text);
    return static_cast<i32>(text.size() * sizeof(char16_t));
  }
  const std::string_view converted = converter_.ConvertFromWide(text);
  bytes_.append(converted);
  return static_cast<i32>(converted.size());
}

i32 WideMemorySink::deliver(std::u16string_view text, Conversion) {
  const std::size_t room = block_.size() - writePosition_;
  const std::size_t taken = std::min(room, text.size());
  std::copy_n(text.begin(), taken, block_.begin() + static_cast<std::ptrdiff_t>(writePosition_));
  writePosition_ += taken;
  return taken == text.size() ? static_cast<i32>(text.size() * sizeof(char16_t)) : 0;
}

}  // namespace rvf
