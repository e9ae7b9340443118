// A whole page-capture file: loading it, and every page of it. The first byte tells how text is
// stored in a file too old to tell it itself.

#include "capture/RvfReader.h"
#include "support/PartChecks.h"

namespace rvf::fuzz {

void checkInput(FuzzInput input) {
  constexpr int kMostPages = 64;
  const bool dbcsMode = (input.take() & 1) != 0;
  InputFile capture(input.rest());
  CompareContext context;
  RvfReader reader(context, dbcsMode);
  reader.load(capture.file);
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
      const auto placed = static_cast<std::size_t>(context.staticCount);
      require(
          context.staticPlacementX.size() == placed && context.staticPlacementY.size() == placed,
          "every placed list has its place");
      examineParts(context.pageList);
      for (i32 i = 0; i < context.staticCount; ++i) examineParts(context.staticList(i));
    }
  }
}

}  // namespace rvf::fuzz
