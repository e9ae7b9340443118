// Prints every field of every part on the pages of a page-capture file.

#include <iostream>

#include "capture/RvfReader.h"
#include "storage/DiskFile.h"
#include "support/NamedFields.h"
#include "text/NativeText.h"

int main(int argc, char** argv) {
  rvf::eDiskFile file;
  rvf::CompareContext context;
  rvf::RvfReader reader(context, /*dbcsMode=*/false);
  if (argc != 2 ||
      !file.Open(rvf::fromNative(argv[1]), rvf::open_flags::kRead, rvf::FileContent::kBinary))
    return 1;
  reader.load(file);
  for (auto& c = reader.currentCustomer; reader.valid() && c < reader.customerCount; ++c) {
    const auto pages =
        static_cast<rvf::i32>(reader.customers[static_cast<std::size_t>(c)].pages.size());
    for (reader.currentPage = 0; reader.currentPage < pages; ++reader.currentPage) {
      reader.loadCurrentPage();
      for (const rvf::DrawPart& part : context.pageList.parts()) {
        for (const std::string& row : rvf::test::fieldsOf(part)) std::cout << row << '\n';
      }
    }
  }
  return reader.valid() && reader.damage().count == 0 ? 0 : 1;
}
