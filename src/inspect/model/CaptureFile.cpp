#include "inspect/model/CaptureFile.h"

#include "inspect/model/Trouble.h"
#include "text/NativeText.h"

namespace rvf::inspect {

namespace {

std::string inWords(const NewerRecord& newer) {
  return "a record is from a newer engine: " + toNative(eString(newer.label).view()) + " version " +
         std::to_string(newer.version) + ", the newest known is " + std::to_string(newer.highest);
}

std::string atOffset(const char* text, i64 offset) {
  return std::string(text) + " at offset " + std::to_string(offset);
}

}  // namespace

std::string inWords(const LoadResult& result) {
  switch (result.state) {
    case LoadState::kNotCapture:
      return "not a page-capture file";
    case LoadState::kUnsupportedVersion:
      return "its version is not supported; 1, 2 and 3 are";
    case LoadState::kBadTrailer:
      return atOffset("the trailer with the index offset is damaged", result.offset);
    case LoadState::kNoPages:
      return "it has no pages";
    case LoadState::kRecordTooNew:
      return result.newer ? inWords(*result.newer) : "a record is from a newer engine";
    case LoadState::kTooLarge:
      return "it is larger than 2147483647 bytes";
    case LoadState::kDamaged:
      if (result.offset < 0) {
        return "its index offset, " + std::to_string(result.offset) + ", is outside the file";
      }
      return atOffset("damaged in its header, tables or index,", result.offset);
    default:
      return "";
  }
}

std::string inWords(const PageFailure& failure) {
  return failure.newer ? inWords(*failure.newer) : atOffset("damaged", failure.offset);
}

CaptureFile::CaptureFile(const std::string& path, OldText oldText, Acceptance acceptance)
    : path_(path), reader_(context_, oldText == OldText::kTwoBytes) {
  if (!file_.Open(fromNative(path), open_flags::kRead | open_flags::kUnbuffered,
                  FileContent::kBinary)) {
    throw Trouble(path, toNative(file_.failure().view()));
  }
  reader_.load(file_);
  if (!reader_.valid() && acceptance == Acceptance::kRequired) {
    throw Trouble(path, inWords(reader_.loadResult()));
  }
}

const std::optional<PageFailure>& CaptureFile::loadPage(i32 customer, i32 page) {
  reader_.currentCustomer = customer;
  reader_.currentPage = page;
  reader_.loadCurrentPage();
  return context_.pageFailure();
}

}  // namespace rvf::inspect
