#include "text/encoding/RecordReader.h"

#include <algorithm>
#include <new>
#include <utility>

namespace rvf {

namespace {

constexpr std::size_t kChunkSize = 4096;
// No encoding in the table needs more bytes for one 16-bit character, shifts included.
constexpr std::size_t kMostBytesPerCharacter = 4;

constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
constexpr std::string_view kLittleEndianMark = "\xFF\xFE";
constexpr std::string_view kBigEndianMark = "\xFE\xFF";

struct ErrorText {
  i32 code;
  const char16_t* text;
};

constexpr ErrorText kErrorTexts[] = {
    {record_error::kUnexpectedMark,
     u"UTF-8 Byte-order Mark Found but selected Character Set is not UTF-8"},
    {record_error::kTruncatedCharacter, u"Truncated Character Found in UTF-8 File"},
    {record_error::kRecordTooLong, u"Internal Buffer Full - End of Record Not Found"},
    {record_error::kCorruptData, u"Corrupt Data Detected"},
    {record_error::kOutOfMemory, u"Memory Allocation Error"},
    {record_error::kNoConverter, u"Unable to Open ICU Library"},
    {record_error::kNoTemporaryFile, u"Tempory File Allocation Error"},
    {record_error::kWrongMark, u"Incorrect Byte-Order Mark Found in UTF Encoded File"},
    {record_error::kUnsupportedCharacter, u"Unsupported Data Character (> 64k) Found in UTF-8"},
};

i32 textOf(i32 code, bool isWanted, eString& text) {
  const auto* row = std::ranges::find(kErrorTexts, code, &ErrorText::code);
  const bool isFound = isWanted && row != std::end(kErrorTexts);
  text = eString(isFound ? row->text : u"");
  return code;
}

// The class that the name implies. Other encodings shift only if their converter switches between
// widths.
ShiftClass shiftClassOf(std::u16string_view name) {
  if (name.starts_with(u"JEF")) {
    return ShiftClass::kJef;
  }
  if (name.starts_with(u"jips")) {
    return ShiftClass::kJips;
  }
  return name.starts_with(u"ISO_2022") ? ShiftClass::kIso2022 : ShiftClass::kNone;
}

}  // namespace

ShiftBytes shiftBytes(ShiftClass shiftClass) {
  switch (shiftClass) {
    case ShiftClass::kDoubleByte:
      return {"\x0E", "\x0F"};
    case ShiftClass::kJef:
      return {"(", ")"};
    case ShiftClass::kJips:
      return {"\x1A\x71", "\x1A\x70"};
    case ShiftClass::kNone:
    case ShiftClass::kIso2022:
      break;
  }
  return {};
}

i32 RecordReader::GetErrorText(eString& text) const {
  return textOf(lastError_, hasFailed(), text);
}

i32 RecordReader::GetWarningText(eString& text) const {
  return textOf(lastError_, !hasFailed(), text);
}

i32 RecordReader::fail(i32 error) {
  lastError_ = error;
  return -1;
}

bool RecordReader::Open(const eString& encodingName, i32 encodingId, i32 maximumRecordLength) {
  maximumRecordLength_ = std::max(maximumRecordLength, 0);
  encoding_ = encodingId == encoding_id::kUtf16 ? encoding_id::kUtf16Le : encodingId;
  try {
    const auto characters = static_cast<std::size_t>(maximumRecordLength_);
    bytes_.resize(characters * kMostBytesPerCharacter + kChunkSize);
  } catch (const std::bad_alloc&) {
    fail(record_error::kOutOfMemory);
    return false;
  }
  isOpen_ = openConverter(encodingName);
  if (!isOpen_) {
    fail(record_error::kNoConverter);
  }
  return isOpen_;
}

bool RecordReader::openConverter(const eString& encodingName) {
  eString name = encodingName;
  if (name.isEmpty() && encoding_ == encoding_id::kNoDecoding) {
    return true;
  }
  if (name.isEmpty()) {
    GetEncodingName(encoding_, NameUse::kConverter, name);
  }
  isJefEncoding_ = name.view().starts_with(u"JEF-");
  shiftClass_ = shiftClassOf(name.view());
  if (!converter_.SetEncodingByName(name)) {
    return false;
  }
  if (!encodingName.isEmpty()) {
    encoding_ = converter_.encodingId();
  }
  if (!hasShiftBytes() && converter_.shiftsWidths()) {
    shiftClass_ = ShiftClass::kDoubleByte;
  }
  if (!isUtf16(encoding_)) {
    noteDelimiters();
  }
  return true;
}

// The delimiters in this encoding, without any shift sequences around them. In UTF-16 they are the
// ASCII bytes, each with a zero byte.
void RecordReader::noteDelimiters() {
  const std::string_view delimiters = converter_.ConvertFromWide(u"\n\r");
  if (delimiters.size() == 2) {
    lineFeed_ = delimiters[0];
    carriageReturn_ = delimiters[1];
  }
}

void RecordReader::useEncoding(i32 id) {
  if (id == encoding_) {
    return;
  }
  encoding_ = id;
  if (outputConverter_ != nullptr) {
    outputConverter_->SetEncoding(id);
  }
  if (!converter_.SetEncoding(id)) {
    fail(record_error::kNoConverter);
  }
}

// In a UTF-16 file the mark determines the byte order, whatever was selected. The mark of an
// encoding other than the selected one is an error. Encodings without a mark are not checked.
void RecordReader::checkMark() {
  const std::string_view start = unread();
  const bool isUtf8 = encoding_ == encoding_id::kUtf8;
  if (!isUtf8 && !isUtf16(encoding_)) {
    return;
  }
  const bool hasUtf8Mark = start.starts_with(kUtf8Mark);
  const bool isLittle = start.starts_with(kLittleEndianMark);
  const bool isBig = start.starts_with(kBigEndianMark);
  if (isUtf8 ? isLittle || isBig : hasUtf8Mark) {
    fail(record_error::kWrongMark);
  } else if (hasUtf8Mark) {
    readPosition_ += kUtf8Mark.size();
  } else if (isLittle || isBig) {
    readPosition_ += kLittleEndianMark.size();
    useEncoding(isBig ? encoding_id::kUtf16Be : encoding_id::kUtf16Le);
  }
}

// Adds a chunk to the unread bytes. False if the buffer has no room for one because the record in
// it is too long.
bool RecordReader::fill() {
  const std::size_t kept = fillPosition_ - readPosition_;
  if (kept + kChunkSize > bytes_.size()) {
    fail(record_error::kRecordTooLong);
    return false;
  }
  std::copy(bytes_.begin() + static_cast<std::ptrdiff_t>(readPosition_),
            bytes_.begin() + static_cast<std::ptrdiff_t>(fillPosition_), bytes_.begin());
  bufferOffset_ += static_cast<i64>(readPosition_);
  readPosition_ = 0;
  fillPosition_ = kept;
  const i32 got = file_->Read(bytes_.data() + kept, static_cast<i32>(kChunkSize));
  fillPosition_ += static_cast<std::size_t>(got);
  if (static_cast<std::size_t>(got) < kChunkSize) {
    atEnd_ = true;
    lastError_ = record_error::kShortRead;
    if (file_->errorState()) {
      fail(record_error::kCorruptData);
    }
  }
  if (std::exchange(firstRead_, false)) {
    checkMark();
  }
  // Half a character at the end of the file is completed with a zero byte.
  if (atEnd_ && (fillPosition_ - readPosition_) % static_cast<std::size_t>(unitSize()) != 0) {
    bytes_[fillPosition_++] = '\0';
  }
  return !hasFailed();
}

bool RecordReader::isUnitAt(std::string_view bytes, std::size_t offset, char character) const {
  if (unitSize() == 1) {
    return bytes[offset] == character;
  }
  const std::size_t low = encoding_ == encoding_id::kUtf16Be ? 1 : 0;
  return bytes[offset + low] == character && bytes[offset + 1 - low] == '\0';
}

std::size_t RecordReader::findLineFeed(std::string_view bytes, std::size_t from) const {
  const auto unit = static_cast<std::size_t>(unitSize());
  for (std::size_t i = from; i + unit <= bytes.size(); i += unit) {
    if (isUnitAt(bytes, i, lineFeed_)) {
      return i;
    }
  }
  return std::string_view::npos;
}

i32 RecordReader::ReadRecord(const char16_t*& text, i32& length) {
  text = u"";
  length = 0;
  if (hasFailed()) {
    return -1;
  }
  lastError_ = record_error::kNone;
  std::size_t scanned = 0;  // bytes of whole characters without a line feed
  for (;;) {
    const std::string_view bytes = unread();
    const auto unit = static_cast<std::size_t>(unitSize());
    const std::size_t found = firstRead_ ? bytes.npos : findLineFeed(bytes, scanned);
    if (found != bytes.npos) {
      recordPosition_ = position();
      readPosition_ += found + unit;
      const bool hasReturn = found >= unit && isUnitAt(bytes, found - unit, carriageReturn_);
      return decode(bytes.substr(0, hasReturn ? found - unit : found), text, length);
    }
    if (atEnd_ && bytes.empty()) {
      return -1;
    }
    if (atEnd_) {
      recordPosition_ = position();
      readPosition_ = fillPosition_;
      return decode(bytes, text, length);
    }
    scanned = bytes.size() / unit * unit;
    if (!fill()) {
      return -1;
    }
  }
}

i32 RecordReader::decode(std::string_view record, const char16_t*& text, i32& length) {
  if (isJefEncoding_) {
    cleaned_.assign(record);
    cleanJefRecord(cleaned_);
    record = cleaned_;
  }
  if (encoding_ == encoding_id::kNoDecoding) {
    wide_.assign(reinterpret_cast<const u8*>(record.data()),
                 reinterpret_cast<const u8*>(record.data()) + record.size());
  } else {
    wide_.assign(converter_.ConvertToWide(record));
    const bool isLast = atEnd_ && unread().empty();
    if (isLast && encoding_ == encoding_id::kUtf8 && converter_.wasTruncated()) {
      lastError_ = record_error::kTruncatedCharacter;
    }
  }
  if (wide_.size() > static_cast<std::size_t>(maximumRecordLength_)) {
    return fail(record_error::kRecordTooLong);
  }
  text = wide_.c_str();
  length = static_cast<i32>(wide_.size());
  return length;
}

namespace {

// The length of the JEF control sequence at `at`; 0 if there is none.
std::size_t jefSequenceLength(std::string_view record, std::size_t at) {
  constexpr u8 kLead = 0x30;
  constexpr u8 kLongForm = 0xFE;
  constexpr u8 kLongForms[] = {0xA2, 0xA3, 0xC0, 0xE2, 0xF0, 0xFE};
  if (static_cast<u8>(record[at]) != kLead || at + 1 >= record.size()) {
    return 0;
  }
  const auto next = static_cast<u8>(record[at + 1]);
  if (next == kLongForm) {
    const bool isLong = at + 2 < record.size() &&
                        std::ranges::count(kLongForms, static_cast<u8>(record[at + 2])) != 0;
    return isLong ? 3 : 0;
  }
  const auto isIn = [next](u8 first, u8 last) { return next >= first && next <= last; };
  const bool isShort = isIn(0xF5, 0xF8) || (isIn(0xE0, 0xE7) && next != 0xE3) || isIn(0xC0, 0xC1) ||
                       isIn(0xC4, 0xC7) || isIn(0xB0, 0xB2) || next == 0xB5;
  return isShort ? 2 : 0;
}

}  // namespace

void cleanJefRecord(std::string& record) {
  constexpr char kShiftOut = 0x28;
  constexpr char kOtherShiftOut = 0x38;
  constexpr char kShiftIn = 0x29;
  bool isDoubleByte = false;
  for (std::size_t i = 0; i < record.size();) {
    if (record[i] == kShiftOut || record[i] == kOtherShiftOut) {
      record[i] = kShiftOut;
      isDoubleByte = true;
    } else if (record[i] == kShiftIn) {
      isDoubleByte = false;
    } else if (const std::size_t length = jefSequenceLength(record, i); length > 0) {
      record.erase(i, length);
      continue;
    }
    i += isDoubleByte ? 2 : 1;
  }
}

}  // namespace rvf
