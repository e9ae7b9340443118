// A whole page-capture file: loading it, and every page of it. The first byte tells how text is
// stored in a file too old to tell it itself.

#include <cstddef>

#include "capture/RvfReader.h"
#include "support/FuzzInput.h"
#include "support/FuzzRun.h"
#include "support/PartInvariants.h"

namespace rvf::fuzz {
namespace {

constexpr int kMostPages = 64;

void examinePage(const CompareContext& context) {
  const auto placed = static_cast<std::size_t>(context.staticCount);
  require(context.staticPlacementX.size() == placed && context.staticPlacementY.size() == placed,
          "every placed list has its place");
  examineParts(context.pageList);
  for (i32 i = 0; i < context.staticCount; ++i) {
    examineParts(context.staticList(i));
  }
}

void fetchPages(RvfReader& reader) {
  int fetched = 0;
  for (i32 c = 0; c < reader.customerCount; ++c) {
    const auto pages = reader.customers[static_cast<std::size_t>(c)].pages.size();
    for (std::size_t p = 0; p < pages && fetched < kMostPages; ++p, ++fetched) {
      reader.currentCustomer = c;
      reader.currentPage = static_cast<i32>(p);
      reader.loadCurrentPage();
      examinePage(reader.context());
    }
  }
}

void loadCapture(FuzzInput input) {
  const bool dbcsMode = (input.take() & 1) != 0;
  InputFile captureFile(input.rest());
  CompareContext context;
  RvfReader reader(context, dbcsMode);
  reader.load(captureFile.file());
  if (!reader.valid()) {
    return;
  }
  require(reader.pageCount > 0, "a valid file has pages");
  require(reader.customers.size() == static_cast<std::size_t>(reader.customerCount),
          "a valid file has all its customers");
  fetchPages(reader);
}

}  // namespace
}  // namespace rvf::fuzz

extern "C" int LLVMFuzzerTestOneInput(const rvf::u8* data, std::size_t size) {
  return rvf::fuzz::runOnce([=] { rvf::fuzz::loadCapture({data, size}); });
}
