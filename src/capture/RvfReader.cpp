#include "capture/RvfReader.h"

namespace rvf {

namespace {

// Frozen. There is no byte-order mark: a file of the other byte order matches none of them.
namespace magic_number {
constexpr i32 kNarrow = 12345679;   // the leading word is the index offset; one byte per character
constexpr i32 kWide = 97654321;     // the same; two bytes per character
constexpr i32 kTrailer = 87654321;  // the trailer has the index offset, followed by kNarrow
}  // namespace magic_number

constexpr i32 kLowestVersion = 1;
constexpr i32 kHighestVersion = 3;
constexpr i32 kFirstVersionThatTellsText = 3;
constexpr i32 kDefaultResolution = 300;
constexpr i32 kMagicOffset = 4;
constexpr i32 kVersionOffset = 8;
constexpr i32 kTrailerSize = 8;

StoredDate readDate(eArchive& archive) {
  StoredDate date;
  date.value = archive.ReadF64();
  date.status = archive.ReadI32();
  return date;
}

LoadResult failureOf(const eArchive& archive) {
  const bool isNewer = archive.newerRecord().has_value();
  return {isNewer ? LoadState::kRecordTooNew : LoadState::kDamaged, archive.failureOffset(),
          archive.newerRecord()};
}

}  // namespace

void RvfReader::load(FileObject& file) {
  customerCount = 0;
  pageCount = 0;
  resolution = kDefaultResolution;
  customers.clear();
  indexMemory_.release();
  damage_ = DamageRecord();
  hasTrailer = false;
  context_.file = &file;
  loadResult_ = readFile(file);
}

LoadResult RvfReader::readFile(FileObject& file) {
  const i64 length = file.readWindow(eArchive::kCaptureWindowSize).fileLength();
  if (length > kLongestFile) {
    return {LoadState::kTooLarge, length, {}};
  }
  i32 indexOffset = 0;
  i32 magic = 0;
  {
    eArchive archive(file, eArchive::Mode::kLoad, eArchive::kCaptureWindowSize);
    indexOffset = archive.ReadI32();
    magic = archive.ReadI32();
    if (archive.failed()) {
      return failureOf(archive);
    }
    if (magic == magic_number::kNarrow || magic == magic_number::kWide) {
      return readContents(archive, magic, indexOffset);
    }
  }
  hasTrailer = magic == magic_number::kTrailer;
  if (!hasTrailer) {
    return {LoadState::kNotCapture, kMagicOffset, {}};
  }
  if (LoadResult trailer = readTrailer(file, indexOffset); trailer.state != LoadState::kLoaded) {
    return trailer;
  }
  if (file.Seek(kVersionOffset, SeekOrigin::kStart) != kVersionOffset) {
    return {LoadState::kDamaged, kVersionOffset, {}};
  }
  eArchive archive(file, eArchive::Mode::kLoad, eArchive::kCaptureWindowSize);
  return readContents(archive, magic_number::kNarrow, indexOffset);
}

LoadResult RvfReader::readTrailer(FileObject& file, i32& indexOffset) const {
  const i32 start = file.Seek(-kTrailerSize, SeekOrigin::kEnd);
  if (start < 0) {
    return {LoadState::kDamaged, 0, {}};
  }
  eArchive archive(file, eArchive::Mode::kLoad, eArchive::kCaptureWindowSize);
  indexOffset = archive.ReadI32();
  const i32 magic = archive.ReadI32();
  if (archive.failed()) {
    return failureOf(archive);
  }
  const bool isTrailer = magic == magic_number::kNarrow;
  return {isTrailer ? LoadState::kLoaded : LoadState::kBadTrailer, start, {}};
}

// Values from a failed archive are meaningless, so the first failure ends the load.
LoadResult RvfReader::readContents(eArchive& archive, i32 magic, i32 indexOffset) {
  version = archive.ReadI32();
  if (archive.failed()) {
    return failureOf(archive);
  }
  if (version < kLowestVersion || version > kHighestVersion) {
    return {LoadState::kUnsupportedVersion, kVersionOffset, {}};
  }
  context_.doubleByteText =
      version < kFirstVersionThatTellsText ? dbcsMode_ : magic != magic_number::kNarrow;
  archive.setWideStrings(context_.doubleByteText);
  resolution = archive.ReadI32();
  context_.ReadStaticTables(archive, version);
  if (archive.failed()) {
    return failureOf(archive);
  }
  tablesEnd = archive.GetPosition();
  indexPosition = indexOffset;
  archive.Seek(indexPosition);
  readIndex(archive);
  if (archive.failed()) {
    return failureOf(archive);
  }
  indexEnd = archive.GetPosition();
  countPages();
  return {pageCount == 0 ? LoadState::kNoPages : LoadState::kLoaded, archive.GetPosition(), {}};
}

void RvfReader::readIndex(eArchive& archive) {
  archive.ReadString(fileLabel);
  firstDate = readDate(archive);
  secondDate = readDate(archive);
  customerCount = archive.checkedCount(archive.ReadI32(), kSmallestCustomerRecord);
  for (i32 i = 0; i < customerCount && !archive.failed(); ++i) {
    customers.emplace_back(indexMemory_).read(archive, pageNames);
  }
}

void RvfReader::countPages() {
  firstPagePosition = 0;
  currentCustomer = 0;
  for (i32 c = 0; c < customerCount; ++c) {
    const CustomerRecord& customer = customers[static_cast<std::size_t>(c)];
    pageCount += static_cast<i32>(customer.pages.size());
    for (const PageRecord& page : customer.pages) {
      if (firstPagePosition != 0) {
        break;
      }
      firstPagePosition = page.filePosition;
      // Setting the page to the customer's index has no effect: the walk sets both before it asks
      // for a page.
      currentPage = c;
    }
  }
}

void RvfReader::loadCurrentPage() {
  constexpr i32 kNoPage = -1;
  const CustomerRecord& customer = customers[static_cast<std::size_t>(currentCustomer)];
  const i32 position = customer.pageCount <= 0
                           ? kNoPage
                           : customer.pages[static_cast<std::size_t>(currentPage)].filePosition;
  const bool isHere = position == context_.cachedPagePosition;
  context_.FetchPage(currentCustomer, position);
  const std::optional<PageFailure>& failure = context_.pageFailure();
  if (isHere || !failure || failure->newer) {
    return;
  }
  damage_.count += 1;
  if (damage_.places.size() < DamageRecord::kMostPlaces) {
    damage_.places.push_back({currentCustomer, currentPage, failure->offset});
  }
}

}  // namespace rvf
