#include "messages/catalogue/MessageCatalogue.h"

#include <algorithm>
#include <memory>
#include <utility>

#include "messages/catalogue/CatalogueSearch.h"
#include "messages/catalogue/MessageLine.h"
#include "storage/DiskFile.h"
#include "text/encoding/RecordReader.h"

namespace rvf {

namespace {

constexpr std::u16string_view kComment = u"//";
constexpr std::u16string_view kDefine = u"#define ";
constexpr std::u16string_view kVersionDefine = u"#define MESS_SYMB_VER";
constexpr i32 kVersion = 1602008;
constexpr std::size_t kVersionColumn = kVersionDefine.size() + 1;

constexpr std::size_t kShortestLine = 20;
constexpr std::size_t kShortestVersionLine = 28;
/// Lines of this length and above are skipped.
constexpr std::size_t kLineTooLong = 4096;
constexpr i32 kMaximumRecordLength = 32767;

/// Numbers below this one are spread evenly enough for bisection; the others come in clusters.
constexpr i32 kFirstScannedNumber = 10000;

void print(std::FILE* console, const char16_t* format, const eString& fileName) {
  eString text;
  text.Format(format, fileName);
  printNative(console, text.view());
}

/// The lines of a file in one encoding.
class FileLines {
 public:
  FileLines(FileObject& file, i32 encoding) {
    reader_.Attach(&file);
    isOpen_ = reader_.Open(eString(), encoding, kMaximumRecordLength);
  }

  /// Reads the next line, which may be empty; false at the end of the file and on failure.
  bool next() {
    if (!isOpen_) {
      return false;
    }
    const char16_t* text = nullptr;
    i32 length = 0;
    if (reader_.ReadRecord(text, length) < 0) {
      return false;
    }
    line_ = std::u16string_view(text, static_cast<std::size_t>(length));
    return true;
  }
  [[nodiscard]] std::u16string_view line() const { return line_; }
  [[nodiscard]] bool failed() const { return reader_.GetErrorCode() >= record_error::kFirstFatal; }

 private:
  RecordReader reader_;
  bool isOpen_ = false;
  std::u16string_view line_;
};

}  // namespace

bool MessageCatalogue::LoadCatalogue(std::FILE* console, Comments comments) {
  if (state_ != State::kNotLoaded) {
    return false;
  }
  state_ = State::kStarted;
  commentsWanted_ = comments;
  eDiskFile file;
  if (!file.Open(findCatalogue(fileName_), open_flags::kRead, FileContent::kBinary)) {
    print(console, u"The error message file - %ls - could not be found.\n", fileName_);
    return false;
  }
  loadFailed_ = false;
  if (!readLines(file)) {
    print(console, u"The error message file - %ls - was opened but could not be read.\n",
          fileName_);
    dropContent();
    return false;
  }
  if (!versionMatched_) {
    print(console,
          u"\n\nThe version of the MsgResource file is not the same as the Engine.\n"
          u"!!This can cause undesired operation!!\n"
          u"-->Please obtain the correct MsgResource file.\n\n",
          fileName_);
  }
  if (!loadFailed_) {
    fallbackRecord_ = parseMessageRecord(static_cast<i32>(MessageNumber::kFallback),
                                         u"W|||Message |1| not found. |2| |3| |4| |5|", separator_);
  }
  buildBuckets();
  state_ = State::kLoaded;
  return true;
}

bool MessageCatalogue::readLines(FileObject& file) {
  auto lines = std::make_unique<FileLines>(file, encoding_);
  if (!lines->next() || !lines->line().starts_with(kComment)) {
    encoding_ = encoding_ == encoding_id::kUtf16Le ? encoding_id::kLatin1 : encoding_id::kUtf16Le;
    file.Seek(0, SeekOrigin::kStart);
    lines = std::make_unique<FileLines>(file, encoding_);
    if (!lines->next() || !lines->line().starts_with(kComment)) {
      return false;
    }
  }
  do {
    if (lines->line().size() < kLineTooLong) {
      parseLine(lines->line());
    }
  } while (!loadFailed_ && lines->next());
  return !lines->failed();
}

void MessageCatalogue::parseLine(std::u16string_view line) {
  line = skipFieldBlanks(line.substr(0, line.find(u'\0')));
  if (line.size() < kShortestLine) {
    return;
  }
  if (line.size() >= kShortestVersionLine && line.starts_with(kVersionDefine)) {
    if (leadingDecimal(line.substr(kVersionColumn)) == kVersion) {
      versionMatched_ = true;
    }
    return;
  }
  if (line.starts_with(kComment) && commentsWanted_ == Comments::kKeep) {
    comments_.emplace_back(line);
  } else if (line.starts_with(kDefine)) {
    parseMessageLine(line.substr(kDefine.size()));
  }
}

void MessageCatalogue::parseMessageLine(std::u16string_view definition) {
  definition = skipFieldBlanks(definition);
  definition.remove_prefix(std::min(definition.find_first_of(kFieldBlanks), definition.size()));
  definition = skipFieldBlanks(definition);
  const std::size_t slash = definition.find(u'/');
  if (slash == std::u16string_view::npos) {
    return;
  }
  const std::u16string_view recordText =
      definition.substr(std::min(slash + kComment.size(), definition.size()));
  std::optional<MessageRecord> record =
      parseMessageRecord(leadingDecimal(definition), skipFieldBlanks(recordText), separator_);
  if (record) {
    currentNumber_ = record->number;
    records_.push_back(*std::move(record));
  } else {
    loadFailed_ = true;
  }
}

void MessageCatalogue::buildBuckets() {
  std::ranges::stable_sort(records_, {}, &MessageRecord::number);
  i32 next = 0;  // the first bucket that is not filled
  i32 index = 0;
  for (const MessageRecord& record : records_) {
    const i32 bucket = record.number / kBucketWidth;
    if (bucket >= kBucketCount) {
      break;
    }
    for (; next <= bucket; ++next) {
      buckets_[static_cast<std::size_t>(next)] = index;
    }
    index += 1;
  }
  for (; next < kBucketCount; ++next) {
    buckets_[static_cast<std::size_t>(next)] = index;
  }
}

i32 MessageCatalogue::FindMessage(i32 number) {
  const auto count = static_cast<i32>(records_.size());
  if (number == lastNumber_ && lastIndex_ >= 0) {
    return lastIndex_;
  }
  if (count == 0) {
    return -1;
  }
  const i32 bucket = std::clamp(number / kBucketWidth, 0, kBucketCount - 1);
  const i32 first = buckets_[static_cast<std::size_t>(bucket)];
  i32 found = -1;
  if (number < kFirstScannedNumber) {
    i32 end = count;
    if (const i32 following = buckets_[static_cast<std::size_t>(bucket) + 1]; following > first) {
      end = following + 1;
    }
    found = bisect(number, first - 1, end);
  } else {
    const auto record = std::find_if(records_.begin() + first, records_.end(),
                                     [=](const MessageRecord& r) { return r.number == number; });
    found = record == records_.end() ? -1 : static_cast<i32>(record - records_.begin());
  }
  if (found >= 0) {
    lastNumber_ = number;
    lastIndex_ = found;
  }
  return found;
}

/// Searches between `low` and `high`, both exclusive. Which of several records with one number is
/// found depends on the exact steps, so they are frozen. `high` may be one past the last record,
/// which is treated as a higher number.
i32 MessageCatalogue::bisect(i32 number, i32 low, i32 high) const {
  for (i32 middle = (low + high) / 2;;) {
    const bool isBehindLast = middle >= static_cast<i32>(records_.size());
    const i32 here = isBehindLast ? 0 : records_[static_cast<std::size_t>(middle)].number;
    if (!isBehindLast && here == number) {
      return middle;
    }
    if (!isBehindLast && here < number) {
      low = middle;
      middle = std::max((low + high) / 2, low + 1);
      if (middle >= high) {
        return -1;
      }
    } else {
      high = middle;
      middle = (low + high) / 2;
      if (middle == high) {
        middle -= 1;
      }
      if (middle <= low) {
        return -1;
      }
    }
  }
}

MessageRecord* MessageCatalogue::findRecord(i32 number) {
  if (!isLoaded()) {
    return nullptr;
  }
  if (const i32 index = FindMessage(number); index >= 0) {
    return &records_[static_cast<std::size_t>(index)];
  }
  return fallbackRecord_ ? &*fallbackRecord_ : nullptr;
}

const MessageRecord* MessageCatalogue::currentRecord() const {
  // It is the last one of its number, since those keep the order of the file.
  const auto behind =
      std::ranges::upper_bound(records_, currentNumber_, {}, &MessageRecord::number);
  return records_.empty() ? nullptr : &*(behind - 1);
}

void MessageCatalogue::dropContent() {
  records_.clear();
  comments_.clear();
}

void MessageCatalogue::SetMessageFile(const eString& name) {
  if (name == fileName_) {
    return;
  }
  dropContent();
  fallbackRecord_.reset();
  versionMatched_ = false;
  lastIndex_ = -1;
  state_ = State::kNotLoaded;
  fileName_ = name;
}

}  // namespace rvf
