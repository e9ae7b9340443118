// A whole page-capture file: loads it and all of its pages. The first byte says how text is stored
// in a file too old to specify it, and whether the file is large: then everything after its front
// is moved to where offsets end, with zeroes in between.

#include "capture/RvfReader.h"
#include "support/LargeFile.h"
#include "support/PartChecks.h"

namespace rvf::fuzz {
namespace {

void checkPages(FileObject& file, bool dbcsMode) {
  constexpr int kMostPages = 64;
  CompareContext context;
  RvfReader reader(context, dbcsMode);
  reader.load(file);
  const bool isTooLarge = reader.loadResult().state == LoadState::kTooLarge;
  require(isTooLarge == (file.GetLength() > kLongestFile), "a file without offsets is refused");
  if (!reader.valid()) return;
  require(reader.pageCount > 0, "a valid file has pages");
  require(reader.customers.size() == static_cast<std::size_t>(reader.customerCount),
          "a valid file has all its customers");
  int fetched = 0;
  for (i32 c = 0; c < reader.customerCount; ++c) {
    const auto pages = static_cast<i32>(reader.customers[static_cast<std::size_t>(c)].pages.size());
    for (i32 p = 0; p < pages && fetched < kMostPages; ++p, ++fetched) {
      reader.currentCustomer = c;
      reader.currentPage = p;
      reader.loadCurrentPage();
      require(!context.pageFailure() || context.bodyBytes().empty(), "damage leaves no body");
      const auto placed = static_cast<std::size_t>(context.staticCount);
      require(
          context.staticPlacementX.size() == placed && context.staticPlacementY.size() == placed,
          "every placed list has its place");
      examineParts(context.pageList);
      for (i32 i = 0; i < context.staticCount; ++i) examineParts(context.staticList(i));
    }
  }
}

}  // namespace

void checkInput(FuzzInput input) {
  constexpr int kNarrowOrWide = 1, kLarge = 2;
  const int flags = input.take();
  if ((flags & kLarge) == 0) {
    InputFile capture(input.rest());
    return checkPages(capture.file, (flags & kNarrowOrWide) != 0);
  }
  const auto beforeEnd = input.take<i16>();
  const std::string_view front = input.takeBytes(input.take<u16>());
  LargeFile capture(front, kLongestFile - beforeEnd, input.rest());
  checkPages(capture, (flags & kNarrowOrWide) != 0);
}

}  // namespace rvf::fuzz
