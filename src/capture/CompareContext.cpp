#include "capture/CompareContext.h"

#include <cstring>

#include "pagemodel/DrawListReader.h"

namespace rvf {

namespace {

constexpr i32 kSmallestPlacedList = kSmallestDrawList + 2 * static_cast<i32>(sizeof(i32));
constexpr i32 kFirstVersionWithFourTables = 2;

}  // namespace

void CompareContext::FetchPage(i32 customerIndex, i32 position) {
  const bool isHere = position == cachedPagePosition;
  cachedCustomer = customerIndex;
  if (isHere) {
    return;
  }
  cachedPagePosition = position;
  emptyPage();
  if (position < 0) {
    return;
  }
  // The pages of a file are similar in size: a block as large as the last page usually holds all of
  // this one.
  static_cast<void>(window().hold(position, bodyLength_));
  eArchive archive(*file, eArchive::Mode::kLoad, eArchive::kCaptureWindowSize);
  archive.setWideStrings(doubleByteText);
  archive.Seek(position);
  readBody(archive);
  bodyLength_ = archive.failed() ? 0 : archive.GetPosition() - position;
  if (archive.failed()) {
    pageFailure_ = PageFailure{archive.failureOffset(), archive.newerRecord()};
    // Two files with the same damage must not be reported as identical, whatever was left of the
    // page.
    archive.markDamaged();
  }
}

ReadWindow& CompareContext::window() const {
  return file->readWindow(eArchive::kCaptureWindowSize);
}

std::span<const std::byte> CompareContext::bodyBytes() const {
  if (cachedPagePosition < 0 || bodyLength_ == 0) {
    return {};
  }
  const std::byte* start = window().find(cachedPagePosition);
  const bool isWhole = start != nullptr && cachedPagePosition + bodyLength_ <= window().endOffset();
  return isWhole ? std::span(start, static_cast<std::size_t>(bodyLength_))
                 : std::span<const std::byte>();
}

bool CompareContext::hasBytesAt(i32 position, std::span<const std::byte> bytes) {
  const std::byte* held = window().hold(position, static_cast<i64>(bytes.size()));
  return held != nullptr && std::memcmp(held, bytes.data(), bytes.size()) == 0;
}

void CompareContext::forgetPage() {
  emptyPage();
  cachedPagePosition = -1;
  bodyLength_ = 0;
}

void CompareContext::emptyPage() {
  pageFailure_.reset();
  resetList(pageList);
  staticCount = 0;
  staticPlacementX.clear();
  staticPlacementY.clear();
}

void CompareContext::readBody(eArchive& archive) {
  pageExtentA = archive.ReadI32();
  pageExtentB = archive.ReadI32();
  if (archive.failed()) {
    return;
  }
  readDrawList(pageList, archive, *this);
  if (!archive.failed()) {
    readPlacedLists(archive);
  }
}

void CompareContext::readPlacedLists(eArchive& archive) {
  const i32 count = archive.checkedCount(archive.ReadI32(), kSmallestPlacedList);
  for (i32 i = 0; i < count; ++i) {
    DrawList& list = placedListAt(i);
    resetList(list);
    readDrawList(list, archive, *this);
    if (archive.failed()) {
      return;
    }
    const i32 x = archive.ReadI32();
    const i32 y = archive.ReadI32();
    if (archive.failed()) {
      return;
    }
    staticPlacementX.push_back(x);
    staticPlacementY.push_back(y);
    staticCount = i + 1;
  }
}

DrawList& CompareContext::placedListAt(i32 index) {
  const auto position = static_cast<std::size_t>(index);
  if (position >= placedLists_.size()) {
    placedLists_.push_back(std::make_unique<DrawList>());
  }
  return *placedLists_[position];
}

void CompareContext::ReadStaticTables(eArchive& archive, i32 fileVersion) {
  forgetPage();  // its references point into the tables
  // In file order, which is not that of the type numbers.
  StaticTable* const tables[] = {&type21Statics_, &type24Statics_, &type23Statics_,
                                 &type175Statics_};
  for (StaticTable* table : tables) {
    table->clear();
  }
  for (StaticTable* table : tables) {
    if (table == &type175Statics_ && fileVersion < kFirstVersionWithFourTables) {
      return;
    }
    const i32 count = archive.checkedCount(archive.ReadI32(), kSmallestStatic);
    for (i32 i = 0; i < count && !archive.failed(); ++i) {
      table->push_back(std::make_unique<DrawStatic>());
      readDrawStatic(*table->back(), archive);
    }
  }
}

const CompareContext::StaticTable* CompareContext::tableOf(i32 objectType) const {
  switch (objectType) {
    case 21:
      return &type21Statics_;
    case 23:
      return &type23Statics_;
    case 24:
      return &type24Statics_;
    case 175:
      return &type175Statics_;
    default:
      return nullptr;
  }
}

i32 CompareContext::staticObjectCount(i32 objectType) const {
  const StaticTable* table = tableOf(objectType);
  return table == nullptr ? 0 : static_cast<i32>(table->size());
}

const DrawStatic* CompareContext::FindStatic(i32 objectType, i32 index) const {
  const bool isHeld = index >= 0 && index < staticObjectCount(objectType);
  return isHeld ? (*tableOf(objectType))[static_cast<std::size_t>(index)].get() : nullptr;
}

}  // namespace rvf
